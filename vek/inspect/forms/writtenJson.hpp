// JSON of messages with nothing wrong with them, in less time than their trees take.
#pragma once

#include "vek/inspect/forms/jsonAppender.hpp"
#include "vek/inspect/message/written.hpp"

namespace vek::inspect {

/// The members that appendJsonMembers() puts for a message's tree, of one as plainlyClean() gives it. Throws
/// std::bad_alloc.
void appendWrittenMembers(jsonAppender_t &json, const writtenMessage_t &message);

} // namespace vek::inspect
