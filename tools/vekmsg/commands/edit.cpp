// vekmsg edit: a message in an editor, in its readable form, until it is right.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "tools/vekmsg/reading/rewriter.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/words/trimming.hpp"

#include <cstdio>
#include <fstream>

namespace vek::tool {

namespace {

struct editArguments_t {
    readingOptions_t reading;

    void declare(argumentList_t &list) {
        list.add(reading.files, {.names = "FILE",
                                 .about = "The file, with one message (or one chosen by the options)",
                                 .isRequired = true,
                                 .isAlone = true});
        reading.declare(list, false, false);
    }
};

constexpr std::string_view invitation =
    "# Change values, save, and leave the editor. Lines like this one don't count.\n"
    "# Leave without changing anything, or with nothing, and the message stays as it was.\n";

// The one message of a file, with what is needed to put another in its place.
class pickTask_t final : public task_t {
public:
    void take(const item_t &item) override {
        ++count;
        if (count > 1)
            return;
        text = item.text;
        whole = item.whole;
        place = item;
        place.lazy = nullptr;
        place.text = text;
        place.whole = whole;
    }

    std::uint64_t count = 0;
    std::string text, whole;
    item_t place;
};

// A draft, kept when the user gives up with changes in it, and when what was written comes nowhere else.
class draft_t {
public:
    draft_t() : name_(makeDraft()) {}
    ~draft_t() {
        if (!isKept)
            std::remove(name_.c_str());
    }
    draft_t(const draft_t &) = delete;
    draft_t &operator=(const draft_t &) = delete;

    const std::string &name() const { return name_; }
    std::string words() const { return isKept ? "; your draft is " + name_ : ""; }
    void write(const std::string &text) const {
        std::ofstream file(name_, std::ios::binary | std::ios::trunc);
        file << text;
        file.close();
        if (!file)
            failOnFile("write", name_);
    }
    std::string read() const {
        std::ifstream file(name_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    bool isKept = false;

private:
    const std::string name_;
};

std::string editor() {
    for (const char *name : {"VISUAL", "EDITOR"})
        if (const std::optional<std::string> value = environment(name))
            return *value;
#ifdef _WIN32
    return "notepad";
#else
    return "vi";
#endif
}

std::string readable(const std::string &text) {
    std::string form(invitation);
    const inspect::tree_t tree(text);
    const std::vector<inspect::finding_t> findings = inspect::check(tree);
    inspect::showOptions_t shown;
    shown.findings = findings;
    inspect::appendShow(form, tree, shown);
    return form;
}

// What is wrong with what the user saved, a line each; `sealed` receives the message when nothing is.
std::vector<std::string> problemsOf(const std::string &form, std::string &sealed) {
    inspect::formResult_t result = inspect::seal(form);
    if (result.isRead()) {
        sealed = std::move(result.text);
        return {};
    }
    std::vector<std::string> problems;
    result.further.insert(result.further.begin(), {result.error, result.offset});
    for (const inspect::refusal_t &refusal : result.further) {
        const std::string_view before = std::string_view(form).substr(0, refusal.offset);
        problems.push_back("line " + std::to_string(std::count(before.begin(), before.end(), '\n') + 1) + ": " +
                           refusal.words);
    }
    return problems;
}

std::string withoutProblems(const std::string &form) {
    std::string rest;
    for (std::size_t at = 0; at < form.size();) {
        const std::size_t end = std::min(form.find('\n', at), form.size() - 1) + 1;
        if (form.compare(at, 3, "#! ") != 0)
            rest.append(form, at, end - at);
        at = end;
    }
    return rest;
}

std::string withProblems(const std::string &form, const std::vector<std::string> &problems) {
    std::string text = "#! Not saved yet; leave without changing anything to give up:\n";
    for (const std::string &problem : problems)
        text += "#! " + problem + "\n";
    return text + form;
}

// Whether only comments are left.
bool isEmptied(std::string_view form) {
    while (!(form = inspect::trimmed(form)).empty() && form.starts_with('#'))
        form.remove_prefix(std::min(form.find('\n'), form.size()));
    return form.empty();
}

// The edited message; nothing when the user gave up.
std::optional<std::string> edited(const std::string &text, draft_t &draft) {
    std::string offered = readable(text);
    for (bool isFirst = true;; isFirst = false) {
        draft.write(offered);
        if (!runEditor(editor(), draft.name())) {
            draft.isKept = !isFirst || draft.read() != offered;
            throw usageError_t("the editor " + editor() +
                               " ended with an error; set VISUAL or EDITOR to one that works" + draft.words());
        }
        const std::string saved = draft.read();
        if (saved == offered) {
            draft.isKept = !isFirst;
            return std::nullopt;
        }
        const std::string form = withoutProblems(saved);
        if (isEmptied(form))
            return std::nullopt;
        std::string sealed;
        const std::vector<std::string> problems = problemsOf(form, sealed);
        if (problems.empty())
            return sealed;
        offered = withProblems(form, problems);
    }
}

int runEdit(const editArguments_t &arguments) {
    const std::string &file = arguments.reading.files.front();
    if (file == "-")
        throw usageError_t("edit needs one file: vekmsg edit FILE");
    rewriter_t rewriter(file);
    pickTask_t task;
    reader_t reader(arguments.reading, task);
    reader.run();
    const exitCode_t status = reader.statusWithMessages();
    if (status != exitFine)
        return status;
    if (task.count > 1)
        throw usageError_t(file + " holds " + std::to_string(task.count) +
                           " messages; choose one with --id, --where or --since");
    draft_t draft;
    const std::optional<std::string> text = edited(task.text, draft);
    if (!text) {
        complain(file + " stays as it was" + draft.words());
        return draft.isKept ? exitDifferences : exitFine;
    }
    draft.isKept = true;
    try {
        rewriter.replace(task.place, *text);
        rewriter.commit();
    } catch (const usageError_t &error) {
        throw usageError_t(error.what() + draft.words());
    }
    draft.isKept = false;
    return exitFine;
}

const commandOf_t<editArguments_t>
    editCommand({.order = 60,
                 .name = "edit",
                 .about = "Edit a message in its readable form, until it is right; then seal it in its place",
                 .examples = "  vekmsg edit focus.txt\n"
                             "  EDITOR=nano vekmsg edit device.log --id FocusValue --where @seq=41"},
                runEdit);

} // namespace

} // namespace vek::tool
