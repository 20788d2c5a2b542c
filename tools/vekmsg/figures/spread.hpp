// spread_t: how numbers are spread, in bounded memory: how many there are, the least, the largest, mean and
// percentiles.
//
// Numbers are counted in cells. A cell is one number, until there are more different ones than `mostCells`: then all
// cells are made twice as wide, relative to the numbers in them, as often as it takes. So percentiles are exact for up
// to `mostCells` different numbers, and beyond that off by at most error(), a part of the number. That is the sketch of
// Masson, Rim and Lee, "DDSketch: A fast and fully-mergeable quantile sketch with relative-error guarantees" (PVLDB 12,
// 2019), with its cells linear between powers of two. However numbers are shared out and joined, the cells are the
// same.
//
// One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vek::tool {

class spread_t {
public:
    static constexpr std::size_t mostCells = 8192;

    /// So many cells at most from now on: powers of two, of 16 bytes each.
    void limitTo(std::size_t cells);
    /// Takes a finite number.
    void add(double number);
    void join(const spread_t &other);

    // The rest is asked when there is a number.
    std::uint64_t count() const { return count_; }
    double least() const { return least_; }
    double most() const { return most_; }
    double mean() const;
    /// The least number that has so many percent, 0 to 100, of all numbers at or below it.
    double percentile(double percent) const;
    /// How far percentiles may be off, as a part of the number; 0: they are exact.
    double error() const;

    /// How many numbers there are of which: of one in the middle of a cell.
    struct counted_t {
        double number;
        std::uint64_t count;
    };
    std::vector<counted_t> numbers() const;

private:
    struct cell_t {
        std::int64_t place;
        std::uint64_t count;
    };

    void count(std::int64_t place, std::uint64_t times);
    void widen(unsigned bits);
    double numberOf(std::int64_t place) const;
    void sum(double number);

    std::vector<cell_t> cells_; // by place
    std::size_t limit_ = mostCells;
    unsigned bits_ = 0; // of numbers' patterns that cells leave out
    std::uint64_t count_ = 0;
    double least_ = 0, most_ = 0;
    double sum_ = 0, lost_ = 0; // and what its roundings have lost
};

} // namespace vek::tool
