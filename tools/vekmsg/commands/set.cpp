// vekmsg set and unset: values changed and taken away, every other byte as it was.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/optionGroups.hpp"
#include "tools/vekmsg/reading/columns.hpp"
#include "tools/vekmsg/reading/messageOutput.hpp"
#include "vek/inspect/change/change.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

struct setArguments_t {
    readingOptions_t reading;
    inPlaceOption_t inPlace;
    std::vector<std::string> words; ///< what to change, then the files
    bool isForced = false, isQuiet = false;

    void declare(argumentList_t &list) {
        list.add(words, {.names = "PATH=VALUE",
                         .about = "What to change; then the files, - or none for standard input",
                         .isRequired = true,
                         .pages = {"keys"}});
        inPlace.declare(list);
        declareFlags(list, isForced, isQuiet);
        reading.declare(list, true, false);
    }
    static void declareFlags(argumentList_t &list, bool &isForced, bool &isQuiet) {
        list.addFlag(isForced, "--force", "Write what a host would read as something else, too");
        list.addFlag(isQuiet, "-q,--quiet", "Don't say what changed");
    }
};

struct unsetArguments_t {
    readingOptions_t reading;
    inPlaceOption_t inPlace;
    std::string path;
    bool isForced = false, isQuiet = false;

    void declare(argumentList_t &list) {
        list.add(path, {.names = "PATH",
                        .about = "The key, or the element of a list, to take away",
                        .isRequired = true,
                        .pages = {"keys"}});
        reading.declareFiles(list);
        inPlace.declare(list);
        setArguments_t::declareFlags(list, isForced, isQuiet);
        reading.declare(list, true, false);
    }
};

struct assignment_t {
    std::string path;
    std::optional<std::string> value; ///< none: it is taken away
};

class setTask_t final : public messageTask_t {
public:
    setTask_t(std::vector<assignment_t> assignments, bool isForced, bool isQuiet)
        : assignments_(std::move(assignments)), isForced_(isForced), isQuiet_(isQuiet) {}

private:
    std::optional<std::string> made(const item_t &item) override {
        std::string text(item.text), words;
        std::size_t oldLength = 0, newLength = 0;
        for (const assignment_t &assignment : assignments_) {
            const inspect::tree_t tree(text);
            inspect::change_t change = assignment.value
                                           ? inspect::changed(tree, assignment.path, *assignment.value, isForced_)
                                           : inspect::removed(tree, assignment.path, isForced_);
            if (!change.isDone()) {
                complain(item.place() + ": error: " + change.error);
                return std::nullopt;
            }
            oldLength = words.empty() ? change.oldLength : oldLength;
            newLength = change.newLength;
            words += (words.empty() ? "" : ", ") + assignment.path + " " +
                     (change.oldValue.empty() ? "(nothing)" : change.oldValue) + " -> " +
                     (change.newValue.empty() ? "(nothing)" : change.newValue);
            text = std::move(change.text);
        }
        if (!isQuiet_)
            complain((item.form == inspect::form_t::none ? item.place() + ": " : "") + words + ", length " +
                     std::to_string(oldLength) + " -> " + std::to_string(newLength));
        return text;
    }

    const std::vector<assignment_t> assignments_;
    const bool isForced_, isQuiet_;
};

int runSet(const setArguments_t &arguments) {
    readingOptions_t reading = arguments.reading;
    std::vector<assignment_t> assignments;
    std::vector<std::string> files;
    for (const std::string &word : arguments.words)
        if (const std::size_t place = word.find('='); place != std::string::npos && !identityOf(word))
            assignments.push_back({word.substr(0, place), word.substr(place + 1)});
        else
            files.push_back(word);
    if (assignments.empty() || std::ranges::any_of(assignments, &std::string::empty, &assignment_t::path))
        throw usageError_t("what is to be set? Write PATH=VALUE in front of the file, for example FOCUS_VALUE=3.5");
    if (!files.empty())
        reading.files = std::move(files);
    setTask_t task(std::move(assignments), arguments.isForced, arguments.isQuiet);
    return writeMessages(reading, arguments.inPlace.isInPlace, task);
}

int runUnset(const unsetArguments_t &arguments) {
    checkIsNoFile("unset", arguments.path);
    setTask_t task({{arguments.path, std::nullopt}}, arguments.isForced, arguments.isQuiet);
    return writeMessages(arguments.reading, arguments.inPlace.isInPlace, task);
}

const commandOf_t<setArguments_t>
    setCommand({.order = 50,
                .name = "set",
                .about = "Change values and seal; every other byte stays",
                .examples = "  vekmsg set FOCUS_VALUE=3.5 focus.txt > new.txt\n"
                            "  vekmsg set --in-place 'ARRAY_CASSETTE[0].NAME=Plates' @seq=12 cassettes.txt"},
               runSet);

const commandOf_t<unsetArguments_t> unsetCommand({.order = 55,
                                                  .name = "unset",
                                                  .about = "Take values away and seal; every other byte stays",
                                                  .examples = "  vekmsg unset MEDIA_NAME focus.txt > new.txt\n"
                                                              "  vekmsg unset --in-place 'MSGS[1]' status.txt"},
                                                 runUnset);

} // namespace

} // namespace vek::tool
