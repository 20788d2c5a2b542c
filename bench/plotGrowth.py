#!/usr/bin/env python3
"""Draws what bench/growth measured: cost against size, a line for each message, as SVG on standard output.

    plotGrowth.py FILE > growth.svg
"""
import csv
import math
import sys
from collections import defaultdict

WIDTH, HEIGHT, MARGIN = 480, 320, 50
COLOURS = ["#1f77b4", "#ff7f0e", "#2ca02c", "#d62728", "#9467bd", "#8c564b", "#e377c2", "#7f7f7f", "#bcbd22",
           "#17becf", "#000000", "#5050ff", "#ff5050"]


def panel(title, left, lines, highest):
    """One diagram; `lines` are points (bytes, nanoseconds a byte) by message id."""
    def x(size):
        return left + MARGIN + (WIDTH - 2 * MARGIN) * math.log(size / 900) / math.log(110000 / 900)

    def y(cost):
        return HEIGHT - MARGIN - (HEIGHT - 2 * MARGIN) * cost / highest

    yield f'<text x="{left + WIDTH / 2}" y="25" text-anchor="middle">{title}</text>'
    for size in (1000, 10000, 100000):
        yield f'<line x1="{x(size):.1f}" y1="{y(0):.1f}" x2="{x(size):.1f}" y2="{y(highest):.1f}" stroke="#ddd"/>'
        yield f'<text x="{x(size):.1f}" y="{y(0) + 18:.1f}" text-anchor="middle">{size // 1000} kB</text>'
    for tenth in range(0, 11, 2):
        cost = highest * tenth / 10
        yield f'<line x1="{x(900):.1f}" y1="{y(cost):.1f}" x2="{x(110000):.1f}" y2="{y(cost):.1f}" stroke="#ddd"/>'
        yield f'<text x="{x(900) - 5:.1f}" y="{y(cost) + 4:.1f}" text-anchor="end">{cost:.2f}</text>'
    for (message, points), colour in zip(sorted(lines.items()), COLOURS):
        path = " ".join(f"{x(size):.1f},{y(cost):.1f}" for size, cost in points)
        yield f'<polyline points="{path}" fill="none" stroke="{colour}"/>'
        yield f'<text x="{x(points[-1][0]) + 4:.1f}" y="{y(points[-1][1]) + 4:.1f}" fill="{colour}">{message}</text>'


def main():
    costs = defaultdict(lambda: defaultdict(list))
    with open(sys.argv[1], newline="", encoding="ascii") as file:
        for direction, message, size, cost in csv.reader(file):
            costs[direction][message].append((int(size), float(cost)))
    print(f'<svg xmlns="http://www.w3.org/2000/svg" width="{2 * WIDTH}" height="{HEIGHT}" '
          'font-family="sans-serif" font-size="11"><rect width="100%" height="100%" fill="white"/>')
    for number, (direction, lines) in enumerate(sorted(costs.items())):
        highest = 1.2 * max(cost for points in lines.values() for _, cost in points)
        print("\n".join(panel(f"{direction}: nanoseconds a byte", number * WIDTH, lines, highest)))
    print("</svg>")


main()
