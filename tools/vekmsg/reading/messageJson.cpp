#include "tools/vekmsg/reading/messageJson.hpp"

#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/forms/writtenJson.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

void appendPlace(inspect::jsonAppender_t &json, const messagePlace_t &place) {
    json.open('{');
    json.member("file", place.file);
    json.member("line", place.line);
    json.member("offset", place.offset);
    json.memberIfAny("before", place.before);
    if (place.time)
        json.member("time", place.time->inWords());
}

} // namespace

void appendMessageJson(std::string &out, const messagePlace_t &place, const inspect::tree_t &tree,
                       std::span<const inspect::finding_t> findings) {
    inspect::jsonAppender_t json(out);
    appendPlace(json, place);
    if (!findings.empty()) // that of the worst, for viewers of logs
        json.member("severity", severityName(std::ranges::max(findings, {}, &inspect::finding_t::severity).severity));
    appendJsonMembers(json, tree, {.findings = findings});
    json.close('}');
    out += '\n';
}

void appendMessageJson(std::string &out, const messagePlace_t &place, const inspect::writtenMessage_t &message) {
    inspect::jsonAppender_t json(out);
    appendPlace(json, place);
    appendWrittenMembers(json, message);
    json.close('}');
    out += '\n';
}

} // namespace vek::tool
