// Envelopes and the process-wide header numbers.
#pragma once

#include "vek/api/envelope.hpp"
#include "vek/text/bodyWriter.hpp"
#include "vek/vek_std/std_sys/vek_processWide.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vek {

/// The header numbers of this process: set when the library is loaded, then by every message read or written. Any
/// thread may read and write messages. The numbers lie apart from other data, since threads that convert take turns at
/// them.
struct alignas(64) headerNumbers_t {
    processWide_t<std::int32_t> echoTag = envelopeNumbers_t().echoTag;
    processWide_t<std::int32_t> sequenceNumber = envelopeNumbers_t().sequenceNumber;
};
extern constinit headerNumbers_t headerNumbers;

/// Reads an envelope as vek/api/envelope.hpp does, into numbers of the caller's own, and then makes those of the
/// process what was read. What is wrong with an envelope is no failure: what could be read counts.
void readEnvelope(std::string_view text, std::int32_t &id, std::string_view &body);

/// The sequence number of a message that is being written: the process's, counted up, from the largest value to the
/// smallest. Of messages written at the same time each has its own. A number that is not kept is given back, unless
/// another message has taken the next one.
class takenNumber_t {
public:
    takenNumber_t();
    ~takenNumber_t();
    takenNumber_t(const takenNumber_t &) = delete;
    takenNumber_t &operator=(const takenNumber_t &) = delete;

    std::int32_t value() const { return value_; }
    void keep() { isKept_ = true; }

private:
    std::int32_t previous_;
    std::int32_t value_;
    bool isKept_ = false;
};

/// Writes what stands in front of the body, with these very numbers. The length has a placeholder, whose position is
/// returned. Throws std::bad_alloc.
std::size_t beginEnvelope(bodyWriter_t &out, const envelopeNumbers_t &numbers);

/// Writes what stands behind the body, the NUL included, and patches the length; of a length of 100,000 and more only
/// the first five digits. Throws std::bad_alloc.
void endEnvelope(bodyWriter_t &out, std::size_t lengthPosition);

} // namespace vek
