// source_t: the bytes of an input, whatever it is: a file, standard input, gzip, zstd or UTF-16 (told by their first
// bytes).
//
// A source owns its file and its one block of memory. One thread at a time.
#pragma once

#include "tools/vekmsg/terminal/platform.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace vek::tool {

class source_t {
public:
    /// Bytes that are read at once.
    static constexpr std::size_t blockSize = std::size_t{1} << 18;

    virtual ~source_t() = default;

    /// The next bytes, valid until the next call; empty at the end. Throws usageError_t.
    virtual std::string_view next() = 0;
    /// Whether the last block ended because there was no more at that moment.
    virtual bool isShort() const = 0;
    /// Bytes of the file that have been read, and its size (0 when unknown), for the progress.
    virtual std::uint64_t taken() const = 0;
    virtual std::uint64_t size() const = 0;
    /// Passes over bytes behind those that next() gave, without reading them; false when it can't.
    virtual bool skip(std::uint64_t) { return false; }
    /// Whether next() has something to tell before a moment of milliseconds(), be it the end.
    virtual bool comesUntil(std::uint64_t) { return false; }
    /// Whether the first block is all there is, and what a host would get.
    virtual bool isAllAtOnce() const { return false; }
    /// Whether the bytes are the file's own, so that places in them are places in the file.
    virtual bool isPlain() const { return true; }
    /// Whether only its end tells, by a checksum, that all of it is sound.
    virtual bool isPacked() const { return false; }
};

/// Opens a file, or standard input for "-"; a log in a wrapping is unwrapped. Throws usageError_t.
std::unique_ptr<source_t> openSource(const std::string &name);

} // namespace vek::tool
