#include "tools/vekmsg/figures/spread.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace vek::tool {

namespace {

// Numbers are summed up as so small a part of them that no sum is too large.
constexpr double part = 0x1p-64;

// The pattern of a number's bits as an integer that grows with the number, and back.
std::int64_t patternOf(double number) {
    const auto bits = std::bit_cast<std::int64_t>(number + 0.0); // there is one 0
    return bits < 0 ? bits ^ std::numeric_limits<std::int64_t>::max() : bits;
}
double numberWith(std::int64_t pattern) {
    return std::bit_cast<double>(pattern < 0 ? pattern ^ std::numeric_limits<std::int64_t>::max() : pattern);
}

} // namespace

void spread_t::add(double number) {
    least_ = count_ == 0 ? number : std::min(least_, number);
    most_ = count_ == 0 ? number : std::max(most_, number);
    ++count_;
    sum(number * part);
    count(patternOf(number) >> bits_, 1);
}

void spread_t::join(const spread_t &other) {
    if (other.count_ == 0)
        return;
    least_ = count_ == 0 ? other.least_ : std::min(least_, other.least_);
    most_ = count_ == 0 ? other.most_ : std::max(most_, other.most_);
    count_ += other.count_;
    sum(other.sum_);
    sum(other.lost_);
    if (other.bits_ > bits_)
        widen(other.bits_);
    for (const cell_t &cell : other.cells_) // which may widen these
        count(cell.place >> (bits_ - other.bits_), cell.count);
}

void spread_t::count(std::int64_t place, std::uint64_t times) {
    const auto at = std::ranges::lower_bound(cells_, place, {}, &cell_t::place);
    if (at != cells_.end() && at->place == place) {
        at->count += times;
        return;
    }
    if (cells_.size() < limit_) {
        cells_.insert(at, {place, times});
        return;
    }
    widen(bits_ + 1);
    count(place >> 1, times);
}

void spread_t::limitTo(std::size_t cells) {
    limit_ = cells;
    while (cells_.size() > limit_)
        widen(bits_ + 1);
    if (cells_.capacity() > limit_)
        cells_.shrink_to_fit();
}

void spread_t::widen(unsigned bits) {
    auto last = cells_.begin();
    for (auto cell = cells_.begin(); cell != cells_.end(); ++cell) {
        cell->place >>= bits - bits_;
        if (cell == last)
            continue;
        if (cell->place == last->place)
            last->count += cell->count;
        else
            *++last = *cell;
    }
    if (!cells_.empty())
        cells_.erase(last + 1, cells_.end());
    bits_ = bits;
}

// Neumaier's: the mean is then the same to its last digits, however numbers are shared out.
void spread_t::sum(double number) {
    const double whole = sum_ + number;
    lost_ += std::abs(sum_) >= std::abs(number) ? (sum_ - whole) + number : (number - whole) + sum_;
    sum_ = whole;
}

double spread_t::mean() const {
    return std::clamp((sum_ + lost_) / static_cast<double>(count_) / part, least_, most_);
}

double spread_t::numberOf(std::int64_t place) const {
    const std::int64_t half = bits_ == 0 ? 0 : std::int64_t{1} << (bits_ - 1);
    return std::clamp(numberWith(place * (std::int64_t{1} << bits_) + half), least_, most_);
}

double spread_t::percentile(double percent) const {
    const double rank = std::ceil(percent * static_cast<double>(count_) / 100);
    if (rank <= 1)
        return least_;
    if (rank >= static_cast<double>(count_))
        return most_;
    std::uint64_t passed = 0;
    for (const cell_t &cell : cells_)
        if (passed += cell.count; static_cast<double>(passed) >= rank)
            return numberOf(cell.place);
    return most_;
}

double spread_t::error() const {
    return bits_ == 0 ? 0.0 : std::ldexp(1.0, static_cast<int>(bits_) - 53);
}

std::vector<spread_t::counted_t> spread_t::numbers() const {
    std::vector<counted_t> numbers;
    for (const cell_t &cell : cells_)
        numbers.push_back({numberOf(cell.place), cell.count});
    return numbers;
}

} // namespace vek::tool
