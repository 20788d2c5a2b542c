// A library under comparison: it reads and writes the contents of a row, each in its own format.
//
// What is compared is whole: a structure or a text is made, filled and released each time.
#pragma once

#include "bench/content.hpp"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace bench {

/// What a row of the comparison converts. With several contents, each conversion takes the next.
struct row_t {
    std::string name;
    std::int32_t id;
    std::vector<content_t> contents;
};

/// The rows, of the sample messages.
std::vector<row_t> makeRows();

class peer_t {
public:
    virtual ~peer_t() = default;
    /// Converts content `index` once.
    virtual void read(std::size_t index) = 0;
    virtual void write(std::size_t index) = 0;
    /// The text of a content, for checks.
    virtual std::string text(std::size_t index) = 0;
    virtual bool canWrite() const { return true; }
};

/// Makes the peer for a row, which must outlive it; with its own texts of the contents, checked to come back the same.
using makePeer_t = std::unique_ptr<peer_t> (*)(const row_t &row);

std::unique_ptr<peer_t> makeLibrary(const row_t &row);
std::unique_ptr<peer_t> makeRapidJson(const row_t &row);
std::unique_ptr<peer_t> makeYyjson(const row_t &row);
std::unique_ptr<peer_t> makeSimdjson(const row_t &row);
std::unique_ptr<peer_t> makeNlohmann(const row_t &row);
std::unique_ptr<peer_t> makeProtobuf(const row_t &row);
/// Not a library: only the numbers of a content, with std::from_chars and std::to_chars.
std::unique_ptr<peer_t> makeFloor(const row_t &row);

/// The contents of a row as JSON.
std::vector<std::string> jsonTexts(const row_t &row);

/// Ends the program when a text that was read does not come back the same.
void check(const char *peer, const row_t &row, const std::string &expected, const std::string &got);

} // namespace bench
