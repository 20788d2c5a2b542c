// vekmsg describe: the keys of messages, or the messages that have a key.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/optionGroups.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "tools/vekmsg/terminal/wrapping.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/nearest.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

struct describeArguments_t {
    colorOption_t color;
    std::vector<std::string> words; ///< ids, names of messages, and keys

    void declare(argumentList_t &list) {
        list.add(words,
                 {.names = "ID|NAME|KEY", .about = "An id, the name of a message, or a key", .isRequired = true});
        color.declare(list);
    }
};

using inspect::fieldSchema_t;
using inspect::messageSchema_t;
using inspect::recordSchema_t;

std::string_view defaultInWords(const fieldSchema_t &field) {
    switch (field.defaultKind) {
    case inspect::defaultKind_t::value:
        return field.defaultText;
    case inspect::defaultKind_t::zero:
        return "all zero";
    case inspect::defaultKind_t::null:
        return "(null)";
    case inspect::defaultKind_t::notSet:
        return "(not set)";
    default:
        return "";
    }
}

class description_t {
public:
    explicit description_t(const colours_t &colours) : colours_(colours) {}

    void message(const messageSchema_t &message) {
        const std::string_view name = message.record != nullptr ? message.record->name : "no structure";
        out.append(colours_.bold).append(std::to_string(message.id)).append(" ").append(name).append(colours_.reset);
        if (!message.constant.empty())
            out.append("  ").append(message.constant);
        if (message.record == nullptr) {
            out += "\n  The calls take this id, but no structure belongs to it.\n";
            return;
        }
        out.append("  structure ").append(message.record->structure).append("\n");
        if (!message.record->about.empty())
            out.append("  ").append(message.record->about).append("\n");
        keys(*message.record, 2);
    }

    void use(const inspect::keyUse_t &use) {
        out.append(colours_.bold).append(std::to_string(use.message->id)).append(colours_.reset).append(" ");
        out.append(padded(use.message->record->name, 24)).append(" ").append(colours_.cyan).append(use.path);
        out.append(colours_.reset).append("  ").append(kindOf(*use.field)).append("\n");
        notes(*use.field, 30);
    }

    std::string out;

private:
    // The kind without what is to be said of it besides.
    static std::string kindOf(const fieldSchema_t &field) {
        const std::string words = inspect::kindInWords(field);
        return words.substr(0, words.find("; "));
    }

    void keys(const recordSchema_t &record, std::size_t indent) {
        std::size_t keyWidth = 0, kindWidth = 0, presetWidth = 0;
        for (const fieldSchema_t &field : record.fields) {
            keyWidth = std::max(keyWidth, field.key.size());
            kindWidth = std::max(kindWidth, kindOf(field).size());
            presetWidth = std::max(presetWidth, defaultInWords(field).size());
        }
        for (const fieldSchema_t &field : record.fields) {
            out.append(indent, ' ').append(colours_.cyan).append(padded(field.key, keyWidth));
            out.append(colours_.reset).append("  ").append(padded(kindOf(field), kindWidth));
            const std::string_view preset = defaultInWords(field);
            out.append(preset.empty() ? "    " : "  = ").append(colours_.green).append(padded(preset, presetWidth));
            out.append(colours_.reset);
            if (!field.member.path.empty())
                out.append(colours_.dim).append("  ").append(field.member.path).append(colours_.reset);
            out.erase(out.find_last_not_of(' ') + 1);
            out += '\n';
            notes(field, indent + keyWidth + 2);
            if (field.record != nullptr)
                keys(*field.record, indent + 4);
        }
    }

    // In lines of their own: what limits a list, and the names of an enumeration.
    void notes(const fieldSchema_t &field, std::size_t indent) {
        const std::string words = inspect::kindInWords(field);
        if (const std::size_t place = words.find("; "); place != std::string::npos)
            out.append(indent, ' ').append(words, place + 2).append("\n");
        if (field.names.empty())
            return;
        std::string names(indent, ' ');
        for (const char *name : field.names)
            names.append(name == field.names.front() ? "" : ", ").append(name);
        out.append(colours_.magenta).append(wrapped(names, pageWidth(), indent)).append(colours_.reset).append("\n");
    }

    const colours_t &colours_;
};

int runDescribe(const describeArguments_t &arguments) {
    const colours_t colours = arguments.color.colours();
    description_t description(colours);
    for (const std::string &word : arguments.words) {
        const auto messages = inspect::schema().findNamed(word);
        const auto uses = inspect::schema().usesOf(word);
        for (const messageSchema_t *message : messages)
            description.message(*message);
        for (const inspect::keyUse_t &use : uses)
            description.use(use);
        if (!messages.empty() || !uses.empty())
            continue;
        std::vector<std::string_view> candidates = inspect::schema().keys();
        for (const messageSchema_t &message : inspect::schema().messages())
            if (message.record != nullptr)
                candidates.insert(candidates.end(), {message.record->name, message.record->structure});
        throw usageError_t("neither a message nor a key is called " + word + "; " +
                           inspect::didYouMean(word, candidates, "vekmsg list shows all messages"));
    }
    writeAll(1, description.out);
    return exitFine;
}

const commandOf_t<describeArguments_t>
    describeCommand({.order = 160,
                     .name = "describe",
                     .about = "The keys of a message with their kinds, names and defaults; or all messages "
                              "that have a key",
                     .examples = "  vekmsg describe 4112\n"
                                 "  vekmsg describe FocusValue\n"
                                 "  vekmsg describe MEDIA_NAME"},
                    runDescribe);

} // namespace

} // namespace vek::tool
