// The calls of the packages for other languages.
#include "tools/bindings/core/vekBindings.h"

#include "vek/api/private/catalogue.hpp"
#include "vek/api/private/envelopeWriter.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/forms/growingLog.hpp"
#include "vek/inspect/log/logScanner.hpp"
#include "vek/inspect/log/logTime.hpp"
#include "vek/vek_std/std_sys/private/vek_floatingPoint.hpp"

#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace {

using namespace vek;
using namespace vek::inspect;

constexpr std::int32_t failure = -1;
constexpr std::size_t largestText = std::size_t{1} << 30;

// The message that a host would write of what it read.
std::string asHostReads(std::string_view text) {
    const envelope_t envelope = readEnvelope(withoutNul(text));
    const envelopeNumbers_t numbers = envelope.numbersForHost({});
    bodyBuffer_t buffer(text.size() + 1);
    bodyWriter_t out(buffer);
    const std::size_t lengthPosition = beginEnvelope(out, numbers);
    const catalogueRow_t *row = findInCatalogue(numbers.id);
    if (const conversion_t *conversion = row == nullptr ? nullptr : row->conversion; conversion != nullptr) {
        const std::unique_ptr<void, void (*)(void *)> structure(conversion->create(), conversion->destroy);
        conversion->parse(structure.get(), envelope.body);
        out = conversion->print(structure.get(), out);
    }
    endEnvelope(out, lengthPosition);
    return std::string(withoutNul(out.text()));
}

// A real that JSON's readers might take for infinite, or that is, stands as a text there: rare enough to be told.
bool isTextInJson(const node_t &node) {
    constexpr std::size_t mostDigits = 300;
    const std::size_t size = node.value.end - node.value.start;
    return isReal(node.valueKind()) && (size > mostDigits || size <= std::string_view("-inf").size());
}

void appendMembers(jsonAppender_t &json, const tree_t &tree, std::span<const finding_t> findings) {
    if (std::any_of(tree.nodes().begin(), tree.nodes().end(), isTextInJson))
        json.member("unbounded", true);
    appendJsonMembers(json, tree, {.findings = findings});
}

// What check() finds nothing in comes back as it is.
void appendRead(jsonAppender_t &json, std::string_view text) {
    const tree_t tree(text);
    if (isClean(tree))
        return appendMembers(json, tree, {});
    const std::string read = asHostReads(text);
    appendMembers(json, tree_t(read), check(tree));
}

class log_t final : private messageSink_t {
public:
    void take(std::string_view block) {
        found_.clear();
        if (!block.empty())
            return scanner_.feed(log_.take(block), *this);
        scanner_.feed(log_.finish(), *this);
        scanner_.finish(*this);
    }
    const std::string &found() const { return found_; }

private:
    void message(const foundMessage_t &found) override {
        jsonAppender_t json(found_);
        json.open('{');
        json.member("line", found.line);
        json.member("offset", found.offset);
        json.memberIfAny("before", found.before);
        if (const std::optional<logTime_t> time = timeIn(found.lineHead))
            json.member("time", time->inWords());
        json.member("source", found.text);
        appendRead(json, found.text);
        json.close('}');
        found_ += '\n';
    }

    growingLog_t log_;
    logScanner_t scanner_;
    std::string found_;
};

std::int32_t sizeOf(const std::string &result) {
    return result.size() > INT32_MAX ? failure : static_cast<std::int32_t>(result.size());
}

// No exception leaves the calls, and nothing that they use ends the process.
template <class Make>
std::int32_t handOut(char *buffer, std::size_t room, const Make &make) {
    const floatingPointGuard_t guard;
    std::string_view why = "out of memory";
    try {
        throwWithoutMemory();
        std::string result;
        const bool isResult = make(result);
        if (room > 0)
            buffer[std::string_view(result).copy(buffer, room - 1)] = '\0';
        return isResult ? sizeOf(result) : failure;
    } catch (const std::bad_alloc &) {
    } catch (const std::exception &) {
        why = "the library failed";
    }
    if (room > 0)
        buffer[why.copy(buffer, room - 1)] = '\0';
    return failure;
}

} // namespace

extern "C" {

std::int32_t VEK_BINDINGS_CALL vekBindingsRead(const char *text, std::size_t size, char *buffer, std::size_t room) {
    return handOut(buffer, room, [&](std::string &result) {
        if (size > largestText) {
            result = "the text is larger than 1 GB";
            return false;
        }
        jsonAppender_t json(result);
        json.open('{');
        appendRead(json, {text, size});
        json.close('}');
        return true;
    });
}

std::int32_t VEK_BINDINGS_CALL vekBindingsWrite(const char *json, std::size_t size, char *buffer, std::size_t room) {
    return handOut(buffer, room, [&](std::string &result) {
        formResult_t read = readJson({json, size});
        result = read.isRead() ? std::move(read.text) : read.error;
        for (const refusal_t &further : read.further)
            result.append("\n").append(further.words);
        return read.isRead();
    });
}

void *VEK_BINDINGS_CALL vekBindingsOpenLog() {
    return new (std::nothrow) log_t;
}

std::int32_t VEK_BINDINGS_CALL vekBindingsTakeLog(void *log, const char *block, std::size_t size) {
    return handOut(nullptr, 0,
                   [&](std::string &) {
                       static_cast<log_t *>(log)->take({block, size});
                       return true;
                   }) == failure
               ? failure
               : sizeOf(static_cast<log_t *>(log)->found());
}

const char *VEK_BINDINGS_CALL vekBindingsFound(const void *log) {
    return static_cast<const log_t *>(log)->found().c_str();
}

void VEK_BINDINGS_CALL vekBindingsCloseLog(void *log) {
    delete static_cast<log_t *>(log);
}

} // extern "C"
