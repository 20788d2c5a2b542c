// vekmsg describe: the keys of messages, or the messages that have a key.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/optionGroups.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "tools/vekmsg/terminal/wrapping.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/nearest.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

struct describeArguments_t {
    colorOption_t color;
    std::vector<std::string> words; ///< ids, names of messages, and keys

    void declare(argumentList_t &list) {
        list.add(words, {.names = "ID|NAME|KEY",
                         .about = "An id, the name of a message, or a key",
                         .isRequired = true,
                         .pages = {"names", "keys"}});
        color.declare(list);
    }
};

using inspect::fieldSchema_t;
using inspect::messageSchema_t;
using inspect::recordSchema_t;

class description_t {
public:
    explicit description_t(const colours_t &colours) : colours_(colours) {}

    void message(const messageSchema_t &message) {
        const std::string_view name = message.record != nullptr ? message.record->name : "no structure";
        const std::string title = inspect::joined({std::to_string(message.id), " ", name});
        std::string rest = message.constant.empty() ? "" : inspect::joined({"  ", message.constant});
        if (message.record != nullptr)
            rest += inspect::joined({"  structure ", message.record->structure});
        out.append(colours_.bold).append(title).append(colours_.reset);
        out.append(wrapped(title + rest, width_, 4), title.size()).append("\n");
        if (message.record == nullptr)
            return sentence("The calls take this id, but no structure belongs to it.");
        if (!message.record->about.empty())
            sentence(message.record->about);
        keys(*message.record, 2);
    }

    void use(const inspect::keyUse_t &use) {
        const std::string kind = kindOf(*use.field);
        const bool hasRoom = 32 + use.path.size() + kind.size() <= width_;
        const bool isLong = !hasRoom && 6 + use.path.size() + kind.size() > width_;
        out.append(colours_.bold).append(std::to_string(use.message->id)).append(colours_.reset).append(" ");
        out.append(padded(use.message->record->name, hasRoom ? 24 : 0)).append(hasRoom ? " " : "\n    ");
        out.append(colours_.cyan).append(use.path).append(colours_.reset).append(isLong ? "\n      " : "  ");
        out.append(kind).append("\n");
        notes(*use.field, hasRoom ? 30 : 6);
    }

    std::string out;

private:
    void sentence(std::string_view words) {
        out.append(wrapped(inspect::joined({"  ", words}), width_, 2)).append("\n");
    }

    // The kind without what is to be said of it besides.
    static std::string kindOf(const fieldSchema_t &field) {
        const std::string words = inspect::kindInWords(field);
        return words.substr(0, words.find("; "));
    }

    void keys(const recordSchema_t &record, std::size_t indent) {
        std::size_t keyWidth = 0, kindWidth = 0, presetWidth = 0, memberWidth = 0;
        for (const fieldSchema_t &field : record.fields) {
            keyWidth = std::max(keyWidth, field.key.size());
            kindWidth = std::max(kindWidth, kindOf(field).size());
            presetWidth = std::max(presetWidth, inspect::defaultInWords(field).size());
            memberWidth = std::max(memberWidth, field.member.path.size());
        }
        const bool hasRoom = indent + keyWidth + kindWidth + presetWidth + memberWidth + 8 <= width_;
        if (!hasRoom) // the rest of a row stands below its key, and what is too long for that below
            keyWidth = kindWidth = presetWidth = 0;
        const std::size_t below = indent + (hasRoom ? keyWidth + 2 : 2);
        for (const fieldSchema_t &field : record.fields) {
            out.append(indent, ' ').append(colours_.cyan).append(padded(field.key, keyWidth)).append(colours_.reset);
            const std::string kind = kindOf(field);
            const std::string_view preset = inspect::defaultInWords(field);
            std::size_t column = below + kind.size();
            const auto gap = [&](std::string_view next) {
                const bool isBelow = !hasRoom && column + 2 + next.size() > width_;
                column = (isBelow ? below : column + 2) + next.size();
                return isBelow ? "\n" + std::string(below, ' ') : std::string("  ");
            };
            out.append(hasRoom ? "  " : "\n" + std::string(below, ' ')).append(padded(kind, kindWidth));
            out.append(preset.empty() ? std::string(hasRoom ? 4 : 0, ' ') : gap(inspect::joined({"= ", preset})) + "= ")
                .append(colours_.green);
            out.append(padded(preset, presetWidth)).append(colours_.reset);
            if (!field.member.path.empty())
                out.append(gap(field.member.path))
                    .append(colours_.dim)
                    .append(field.member.path)
                    .append(colours_.reset);
            out.erase(out.find_last_not_of(' ') + 1);
            out += '\n';
            notes(field, below);
            if (field.record() != nullptr)
                keys(*field.record(), indent + (hasRoom ? 4 : 2));
        }
    }

    // In lines of their own: what limits a list, and the names of an enumeration.
    void notes(const fieldSchema_t &field, std::size_t indent) {
        const std::string words = inspect::kindInWords(field);
        if (const std::size_t place = words.find("; "); place != std::string::npos)
            out.append(wrapped(std::string(indent, ' ') + words.substr(place + 2), width_, indent)).append("\n");
        if (field.words().names.empty())
            return;
        std::string names(indent, ' ');
        for (const char *name : field.words().names)
            names.append(name == field.words().names.front() ? "" : ", ").append(name);
        out.append(colours_.magenta).append(wrapped(names, width_, indent)).append(colours_.reset).append("\n");
    }

    const colours_t &colours_;
    const std::size_t width_ = pageWidth();
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
