// vekmsg check: every departure from the format, as a compiler would say it.
#include "vek/inspect/check/check.hpp"
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/findingNames.hpp"
#include "tools/vekmsg/commands/optionGroups.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "tools/vekmsg/terminal/wrapping.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/words/nearest.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

struct checkArguments_t {
    readingOptions_t reading;
    colorOption_t color;
    std::vector<std::string> ignored; ///< names of findings
    bool isQuiet = false, isJson = false, isAll = false;

    void declare(argumentList_t &list) {
        reading.declareFiles(list);
        list.add(ignored, {.names = "--ignore",
                           .about = "Leave out findings of this name, which stands behind each in []",
                           .type = "NAME",
                           .separator = ',',
                           .pages = {"findings"}});
        list.addFlag(isQuiet, "-q,--quiet", "Only the exit code");
        list.addFlag(isJson, "--json", "A JSON object a finding");
        list.addFlag(isAll, "--all", "Every finding, not only the first 20 of a message");
        reading.declare(list);
        color.declare(list);
    }
};

using inspect::finding_t;
using inspect::joined;
using inspect::severity_t;

constexpr std::size_t tabWidth = 1; // control characters are shown as one column, so that the caret stays in its place

// Whether a byte begins a character of UTF-8, so takes a column.
bool isColumn(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

class checkTask_t final : public task_t {
public:
    checkTask_t(const checkArguments_t &arguments, const colours_t &colours)
        : arguments_(arguments), colours_(colours), width_(pageWidth()), wraps_(isTerminal(1)) {
        for (const std::string &name : arguments.ignored)
            options_.ignored[static_cast<std::size_t>(findingCalled(name, "--ignore "))] = true;
        constexpr std::size_t mostOfMessage = 20;
        options_.most = arguments.isQuiet ? 0 : arguments.isAll ? SIZE_MAX : mostOfMessage;
    }

    bool hasColours() const override { return true; }
    std::unique_ptr<task_t> fork() const override { return std::make_unique<checkTask_t>(arguments_, colours_); }
    void join(task_t &later) override {
        const auto &other = static_cast<checkTask_t &>(later);
        messages += other.messages;
        errors += other.errors;
        warnings += other.warnings;
    }
    bool needsLines() const override { return !arguments_.isQuiet; }

    void take(const item_t &item) override {
        ++messages;
        if (inspect::isPlainlyClean(item.whole))
            return;
        const inspect::tree_t &tree = item.tree();
        if (inspect::isClean(tree))
            return;
        const inspect::checkResult_t result = inspect::check(tree, options_);
        errors += result.errors;
        warnings += result.warnings;
        spots_t spots(item, tree.text());
        for (const finding_t &finding : result.findings)
            arguments_.isJson ? writeJson(item, tree, spots.of(finding), finding)
                              : write(item, spots.of(finding), finding);
        if (const std::size_t shown = result.findings.size(); shown > 0 && shown < result.count() && !arguments_.isJson)
            putLine(joined({item.place(), ": and ", std::to_string(result.count() - shown),
                            " more in this message; --all shows them"}));
    }

    std::uint64_t messages = 0, errors = 0, warnings = 0;

private:
    struct spot_t {
        std::uint64_t line, column;
        std::string_view text; // of the line, of the message's part
        std::size_t caret;     // in that text
    };
    // Where findings are, which come in the order of their places: each line is gone through once.
    class spots_t {
    public:
        spots_t(const item_t &item, std::string_view text) : text_(text), line_(item.line), column_(item.column) {
            findEnd();
        }

        spot_t of(const finding_t &finding) {
            for (; end_ < finding.place.start; findEnd()) {
                start_ = end_ + 1;
                ++line_;
                column_ = 1;
            }
            const std::size_t caret = finding.place.start - start_;
            return {line_, column_ + caret, text_.substr(start_, end_ - start_), caret};
        }

    private:
        void findEnd() { end_ = std::min(text_.find('\n', start_), text_.size()); }

        std::string_view text_;
        std::size_t start_ = 0, end_ = 0;
        std::uint64_t line_, column_;
    };

    void write(const item_t &item, const spot_t &spot, const finding_t &finding) {
        const bool isError = finding.severity == severity_t::error;
        const std::string_view consequence = finding.consequence;
        putLine(joined({colours_.bold,
                        item.file,
                        ":",
                        std::to_string(spot.line),
                        ":",
                        std::to_string(spot.column),
                        ": ",
                        colours_.reset,
                        isError ? colours_.red : colours_.magenta,
                        isError ? "error: " : "warning: ",
                        colours_.reset,
                        colours_.bold,
                        finding.message,
                        colours_.reset,
                        consequence.empty() ? "" : ": ",
                        consequence,
                        colours_.dim,
                        " [",
                        inspect::findingName(finding.code),
                        "]",
                        colours_.reset}));
        writeLine(spot, finding.place.size(), isError);
        std::string behind = finding.path.empty() ? std::string() : "in " + finding.path;
        if (!finding.suggestion.empty())
            behind += (behind.empty() ? "" : "; ") + inspect::didYouMean(finding.suggestion);
        if (!behind.empty())
            putLine(joined({"  ", colours_.dim, behind, colours_.reset}));
    }

    // Of a terminal no line is longer than it is wide; for other programs a line is a line.
    void putLine(std::string line) {
        constexpr std::size_t indent = 4;
        out.append(wraps_ ? wrapped(std::move(line), width_, indent) : line).append("\n");
    }

    // The line cut to a window, and a caret below.
    void writeLine(const spot_t &spot, std::size_t size, bool isError) {
        const std::size_t room = width_ - 8;
        std::size_t start = 0, end = spot.text.size();
        if (end > room) {
            start = spot.caret > room / 2 ? spot.caret - room / 2 : 0;
            end = std::min(start + room, spot.text.size());
            start = end - std::min(end, room);
            while (start > 0 && !isColumn(spot.text[start]))
                --start;
        }
        const std::string_view front = start > 0 ? "..." : "", behind = end < spot.text.size() ? "..." : "";
        out.append("  ").append(front);
        std::string under(2 + front.size(), ' ');
        std::size_t marks = 0;
        for (std::size_t i = start; i < end; ++i) {
            const auto byte = static_cast<unsigned char>(spot.text[i]);
            out += byte < 0x20 || byte == 0x7F ? ' ' : spot.text[i];
            if (isColumn(spot.text[i]) && i < spot.caret)
                under.append(tabWidth, ' ');
            else if (isColumn(spot.text[i]) && i > spot.caret && i < spot.caret + size)
                ++marks;
        }
        out.append(behind).append("\n").append(under).append(isError ? colours_.red : colours_.magenta).append("^");
        out.append(std::string(marks, '~')).append(colours_.reset).append("\n");
    }

    // The line and column are the finding's, and so are start and end, in the message that begins at the offset.
    void writeJson(const item_t &item, const inspect::tree_t &tree, const spot_t &spot, const finding_t &finding) {
        inspect::jsonAppender_t json(out);
        json.open('{');
        json.member("file", item.file);
        json.member("line", spot.line);
        json.member("column", spot.column);
        json.member("offset", item.offset);
        if (tree.envelope().id.isThere)
            json.member("id", tree.envelope().id.value);
        appendFinding(json, finding);
        json.close('}');
        out += '\n';
    }

    const checkArguments_t &arguments_;
    const colours_t &colours_;
    const std::size_t width_;
    const bool wraps_;
    inspect::checkOptions_t options_;
};

std::string counted(std::uint64_t count, const char *word) {
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

int runCheck(const checkArguments_t &arguments) {
    const colours_t colours = arguments.color.colours();
    checkTask_t task(arguments, colours);
    reader_t reader(arguments.reading, task);
    reader.run();
    const exitCode_t status = reader.statusWithMessages();
    if (!arguments.isQuiet && task.messages > 0)
        complain(counted(task.messages, "message") + ": " +
                 (task.errors + task.warnings == 0
                      ? std::string("nothing to report")
                      : counted(task.errors, "error") + ", " + counted(task.warnings, "warning")));
    return status == exitFine && task.errors > 0 ? exitDifferences : status;
}

const commandOf_t<checkArguments_t>
    checkCommand({.order = 20,
                  .name = "check",
                  .about = "Find every departure from the format, and say what a host makes of it",
                  .examples = "  vekmsg check focus.txt\n"
                              "  vekmsg check --ignore missing-key device.log.gz\n"
                              "  vekmsg check --quiet focus.txt && send focus.txt"},
                 runCheck);

} // namespace

} // namespace vek::tool
