// Writes the envelope around a body.
#pragma once

#include "vek/api/envelope.hpp"
#include "vek/text/bodyWriter.hpp"

#include <cstddef>
#include <cstdint>

namespace vek {

/// Writes what stands in front of the body, with these very numbers. The length has a placeholder, whose position is
/// returned. Throws std::bad_alloc.
std::size_t beginEnvelope(bodyWriter_t &out, const envelopeNumbers_t &numbers);

/// Writes what stands behind the body, the NUL included, and patches the length; of a length of 100,000 and more only
/// the first five digits. Throws std::bad_alloc.
void endEnvelope(bodyWriter_t &out, std::size_t lengthPosition);

/// Puts other header numbers into a whole message, and patches the length again. Throws std::bad_alloc.
void renumberEnvelope(bodyWriter_t &out, std::size_t lengthPosition, std::int32_t echoTag, std::int32_t sequenceNumber);

} // namespace vek
