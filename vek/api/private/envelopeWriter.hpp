// Writing the envelope, and the process-wide header numbers.
#pragma once

#include "vek/api/envelope.hpp"
#include "vek/text/bodyWriter.hpp"

#include <cstddef>
#include <cstdint>

namespace vek {

/// The header numbers of this process: set when the library is loaded, then by every message read or written. Not
/// guarded: one thread at a time. The id in them is not used.
extern envelopeNumbers_t headerNumbers;

/// Writes what stands in front of the body and counts the sequence number up, from the largest value to the smallest.
/// The length has a placeholder, whose position is returned. Throws std::bad_alloc.
std::size_t beginEnvelope(bodyWriter_t &out, std::int32_t id, envelopeNumbers_t &numbers);

/// Writes what stands behind the body, the NUL included, and patches the length; of a length of 100,000 and more only
/// the first five digits. Throws std::bad_alloc.
void endEnvelope(bodyWriter_t &out, std::size_t lengthPosition);

} // namespace vek
