#include "tools/vekmsg/figures/chart.hpp"

#include "tools/vekmsg/terminal/platform.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace vek::tool {

namespace {

constexpr std::size_t mostBars = 12;

// The least of 1, 2, 5, 10... and 0.5, 0.2, 0.1... that is not below.
double roundAbove(double width) {
    const double power = std::pow(10.0, std::floor(std::log10(width)));
    for (const double step : {1.0, 2.0, 5.0})
        if (power * step >= width)
            return power * step;
    return power * 10;
}

} // namespace

bool hasBlocks() {
#ifdef _WIN32
    return true; // see prepareStreams()
#else
    std::string locale;
    for (const char *name : {"LC_ALL", "LC_CTYPE", "LANG"})
        if (const std::optional<std::string> value = environment(name)) {
            locale = *value;
            break;
        }
    for (const char *name : {"UTF-8", "utf-8", "UTF8", "utf8"})
        if (locale.find(name) != std::string::npos)
            return environment("TERM") != "dumb";
    return false;
#endif
}

std::string numberText(double number) {
    constexpr double mostInteger = 1e15;
    char digits[32];
    char *end = std::round(number) == number && std::abs(number) < mostInteger
                    ? std::to_chars(digits, digits + sizeof digits, static_cast<std::int64_t>(number)).ptr
                    : std::to_chars(digits, digits + sizeof digits, number, std::chars_format::general, 7).ptr;
    return {digits, end};
}

std::vector<bar_t> histogramOf(const spread_t &spread) {
    const std::vector<spread_t::counted_t> numbers = spread.numbers();
    std::vector<bar_t> bars;
    const double width = roundAbove(spread.most() / mostBars - spread.least() / mostBars);
    if (numbers.size() <= mostBars || !(width > 0)) {
        for (const spread_t::counted_t &one : numbers)
            bars.push_back({one.number, one.number, one.count});
        return bars;
    }
    const double first = std::floor(spread.least() / width), last = std::floor(spread.most() / width);
    for (double place = first; place <= last && bars.size() <= mostBars + 1; ++place)
        bars.push_back({place * width, (place + 1) * width});
    for (const spread_t::counted_t &one : numbers) {
        const double place = std::clamp(std::floor(one.number / width) - first, 0.0, last - first);
        bars[std::min(static_cast<std::size_t>(place), bars.size() - 1)].count += one.count;
    }
    return bars;
}

std::string barText(double part, std::size_t columns, bool isOfBlocks) {
    constexpr const char *eighths[] = {"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
    const double all = part * static_cast<double>(columns);
    const auto whole = static_cast<std::size_t>(all);
    if (!isOfBlocks)
        return std::string(std::max<std::size_t>(whole, 1), '#');
    std::string bar;
    for (std::size_t i = 0; i < whole; ++i)
        bar += "█";
    const auto rest = static_cast<std::size_t>((all - static_cast<double>(whole)) * 8);
    return bar + eighths[whole == 0 ? std::max<std::size_t>(rest, 1) : rest];
}

std::string reachText(const spread_t &spread, double scaleLeast, double scaleMost, std::size_t columns,
                      bool isOfBlocks) {
    const double range = scaleMost / 2 - scaleLeast / 2; // of any two numbers
    const auto column = [&](double number) {
        const double part = range > 0 ? (number / 2 - scaleLeast / 2) / range : 0;
        return static_cast<std::size_t>(std::lround(part * static_cast<double>(columns - 1)));
    };
    std::string line;
    const std::size_t least = column(spread.least()), most = column(spread.most()), mean = column(spread.mean());
    for (std::size_t i = 0; i <= most; ++i)
        line += i < least ? " " : i == mean ? (isOfBlocks ? "█" : "#") : isOfBlocks ? "░" : "-";
    return line;
}

} // namespace vek::tool
