#!/usr/bin/env python3
"""Draws what bench/growth measured: cost against size, a line for each message, as SVG on standard output.

    plotGrowth.py FILE > growth.svg
"""
import csv
import math
import sys
from collections import defaultdict

WIDTH, HEIGHT, MARGIN = 480, 340, 50
SMALLEST, LARGEST = 800, 105000
COLOURS = ["#1f77b4", "#ff7f0e", "#2ca02c", "#d62728", "#9467bd", "#8c564b", "#e377c2", "#7f7f7f", "#bcbd22",
           "#17becf", "#000000", "#5050ff", "#ff5050"]


def apart(places, least, lowest):
    """The places of labels, from the top, moved so that none is nearer to the next than `least`, nor below `lowest`."""
    moved = []
    for place in places:
        moved.append(max(place, moved[-1] + least) if moved else place)
    moved.append(lowest + least)
    for number in range(len(moved) - 2, -1, -1):
        moved[number] = min(moved[number], moved[number + 1] - least)
    return moved[:-1]


def panel(title, left, lines, step):
    """One diagram; `lines` are points (bytes, nanoseconds a byte) by message id, `step` is between the lines of cost."""
    steps = math.ceil(max(cost for points in lines.values() for _, cost in points) / step)

    def x(size):
        return left + MARGIN + (WIDTH - 2 * MARGIN) * math.log(size / SMALLEST) / math.log(LARGEST / SMALLEST)

    def y(cost):
        return HEIGHT - MARGIN - (HEIGHT - 2 * MARGIN) * cost / (steps * step)

    yield f'<text x="{left + WIDTH / 2}" y="25" text-anchor="middle">{title}</text>'
    for size in (1000, 10000, 100000):
        yield f'<line x1="{x(size):.1f}" y1="{y(0):.1f}" x2="{x(size):.1f}" y2="{y(steps * step):.1f}" stroke="#ddd"/>'
        yield f'<text x="{x(size):.1f}" y="{y(0) + 18:.1f}" text-anchor="middle">{size // 1000} kB</text>'
    for number in range(steps + 1):
        cost = number * step
        yield f'<line x1="{x(SMALLEST):.1f}" y1="{y(cost):.1f}" x2="{x(LARGEST):.1f}" y2="{y(cost):.1f}" stroke="#ddd"/>'
        yield f'<text x="{x(SMALLEST) - 5:.1f}" y="{y(cost) + 4:.1f}" text-anchor="end">{cost:g}</text>'
    ordered = sorted(lines.items(), key=lambda line: -line[1][-1][1])
    labels = apart([y(points[-1][1]) for _, points in ordered], 12, y(0))
    for (message, points), label in zip(ordered, labels):
        colour = COLOURS[sorted(lines).index(message)]
        path = " ".join(f"{x(size):.1f},{y(cost):.1f}" for size, cost in points)
        yield f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="1.5"/>'
        yield f'<text x="{x(points[-1][0]) + 6:.1f}" y="{label + 4:.1f}" fill="{colour}">{message}</text>'


def main():
    costs = defaultdict(lambda: defaultdict(list))
    with open(sys.argv[1], newline="", encoding="ascii") as file:
        for direction, message, size, cost in csv.reader(file):
            costs[direction][message].append((int(size), float(cost)))
    print(f'<svg xmlns="http://www.w3.org/2000/svg" width="{2 * WIDTH}" height="{HEIGHT}" '
          'font-family="sans-serif" font-size="11"><rect width="100%" height="100%" fill="white"/>')
    for number, (direction, lines) in enumerate(sorted(costs.items())):
        step = {"reading": 1, "writing": 0.2}[direction]
        print("\n".join(panel(f"{direction}: nanoseconds a byte", number * WIDTH, lines, step)))
    print("</svg>")


main()
