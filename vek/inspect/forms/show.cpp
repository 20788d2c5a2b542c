// Puts out the lines of a message, with findings and changes as comments behind those that they belong to.
#include "vek/inspect/forms/forms.hpp"

#include "vek/inspect/forms/lineForm.hpp"
#include "vek/inspect/forms/private/showLines.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/words/quoting.hpp"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

namespace vek::inspect {

namespace {

using kind_t = showLine_t::kind_t;

class showWriter_t {
public:
    showWriter_t(std::string &out, const tree_t &tree, const showOptions_t &options)
        : out_(out), tree_(tree), options_(options) {}

    void write() {
        for (const finding_t &finding : options_.findings)
            findings_.emplace(finding.path, &finding);
        if (options_.other != nullptr)
            for (showLine_t &line : showLines(*options_.other, true))
                if (line.kind != kind_t::group)
                    others_.emplace(line.path, valueInOneLine(line));
        std::vector<showLine_t> lines = showLines(tree_, !findings_.empty() || options_.other != nullptr);
        if (options_.onlyChanges && options_.other != nullptr)
            keepChanges(lines);
        writeTitle();
        writeFindings({});
        writeOwnText();
        align(lines);
        for (std::size_t i = 0; i < lines.size(); ++i)
            writeLine(lines[i], widths_[i]);
        writeRest();
    }

private:
    void styled(std::string_view style, std::string_view text) {
        out_ += style;
        out_ += text;
        out_ += style.empty() ? "" : options_.styles.reset;
    }

    void writeTitle() {
        const envelopeParts_t &envelope = tree_.envelope();
        styled(options_.styles.title, tree_.record() != nullptr ? tree_.record()->name : unknownName);
        if (envelope.id.isThere) {
            out_ += ' ';
            styled(options_.styles.number, std::to_string(envelope.id.value));
        }
        const std::pair<std::string_view, const envelopeNumber_t *> numbers[] = {
            {"length", &envelope.length}, {"echo", &envelope.echoTag}, {"sequence", &envelope.sequenceNumber}};
        for (const auto &[name, number] : numbers) {
            if (!number->isThere)
                continue;
            out_ += ", ";
            out_ += name;
            out_ += ' ';
            styled(options_.styles.number, std::to_string(number->value));
        }
        out_ += '\n';
    }

    // Left out where the form is not to be read back.
    void writeOwnText() {
        if (isSaidByItsWords(tree_) || options_.onlyChanges)
            return;
        out_ += "  @text = ";
        std::string text;
        appendQuoted(text, tree_.text());
        styled(options_.styles.comment, text);
        out_ += '\n';
    }

    void comment(std::string_view style, std::string_view text) {
        std::string words = "# ";
        for (const char c : text) // a comment ends with its line
            words += c == '\n' || c == '\r' ? ' ' : c;
        styled(style, words);
    }

    std::string_view styleOf(const finding_t &finding) const {
        return finding.severity == severity_t::error ? options_.styles.error : options_.styles.warning;
    }

    // The findings of the envelope or, at the end, those that no line showed, a line each.
    void writeFindings(const std::string &path) {
        for (auto [at, end] = findings_.equal_range(path); at != end; at = findings_.erase(at)) {
            out_ += "  ";
            comment(styleOf(*at->second), at->second->inWords());
            out_ += '\n';
        }
    }

    void keepChanges(std::vector<showLine_t> &lines) const {
        std::vector<showLine_t> kept;
        std::uint16_t needed = 0; // from behind: groups above what is kept are kept
        for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
            const bool isGroup = line->kind == kind_t::group;
            if (isGroup ? line->depth < needed : isChanged(*line)) {
                needed = line->depth;
                kept.push_back(std::move(*line));
            }
        }
        lines.assign(std::move_iterator(kept.rbegin()), std::move_iterator(kept.rend()));
    }

    bool isChanged(const showLine_t &line) const {
        const auto other = others_.find(line.path);
        return other == others_.end() || other->second != valueInOneLine(line);
    }

    // The "=" of neighbouring lines stand below each other, unless a name is long.
    void align(const std::vector<showLine_t> &lines) {
        constexpr std::size_t widest = 32;
        widths_.assign(lines.size(), 0);
        for (std::size_t start = 0; start < lines.size();) {
            std::size_t end = start, width = 0;
            for (; end < lines.size() && lines[end].depth == lines[start].depth && lines[end].kind != kind_t::group;
                 ++end)
                width = std::max(width, lines[end].name.size());
            std::fill(widths_.begin() + static_cast<std::ptrdiff_t>(start),
                      widths_.begin() + static_cast<std::ptrdiff_t>(end), std::min(width, widest));
            start = std::max(end, start + 1);
        }
    }

    void writeLine(const showLine_t &line, std::size_t width) {
        out_.append(2 * std::size_t{line.depth}, ' ');
        styled(options_.styles.key, line.name);
        if (line.kind != kind_t::group) {
            out_.append(width > line.name.size() ? width - line.name.size() : 0, ' ');
            out_ += " = ";
            line.kind == kind_t::list ? writeList(line) : styled(styleOf(*line.node), line.value);
            writeChange(line);
        }
        writeLineFindings(line);
        out_ += '\n';
    }

    std::string_view styleOf(const node_t &node) const {
        switch (node.field != nullptr ? node.field->kind : fieldKind_t::record) {
        case fieldKind_t::text:
        case fieldKind_t::text16:
            return options_.styles.text;
        case fieldKind_t::enumeration:
        case fieldKind_t::boolean:
            return options_.styles.name;
        case fieldKind_t::record:
            return options_.styles.warning; // unknown
        default:
            return options_.styles.number;
        }
    }

    void writeList(const showLine_t &line) {
        const std::size_t indent = 2 * std::size_t{line.depth} + 4;
        std::size_t column = indent + line.name.size();
        out_ += '[';
        for (std::size_t i = 0; i < line.items.size(); ++i) {
            out_ += i > 0 ? "," : "";
            if (i > 0 && column + line.items[i].size() + 2 > options_.width) {
                out_ += '\n';
                out_.append(indent, ' ');
                column = indent;
            } else {
                out_ += i > 0 ? " " : "";
            }
            styled(styleOf(*line.node), line.items[i]);
            column += line.items[i].size() + 2;
        }
        out_ += ']';
    }

    void writeChange(const showLine_t &line) {
        if (!options_.noteChanges || options_.other == nullptr || !isChanged(line))
            return;
        const auto other = others_.find(line.path);
        out_ += "  ";
        comment(options_.styles.comment, other == others_.end() ? "was not there" : "was " + other->second);
    }

    // Those of the line itself; of a list, of all its elements too.
    void writeLineFindings(const showLine_t &line) {
        if (findings_.empty())
            return;
        for (auto at = findings_.lower_bound(line.path); at != findings_.end();) {
            const std::string &path = at->first;
            const bool isOfElement = line.kind != kind_t::group && path.size() > line.path.size() &&
                                     path.starts_with(line.path) &&
                                     (path[line.path.size()] == '[' || path[line.path.size()] == '.');
            if (path != line.path && !isOfElement)
                break;
            out_ += "  ";
            comment(styleOf(*at->second), at->second->inWords());
            at = findings_.erase(at);
        }
    }

    void writeRest() {
        while (!findings_.empty())
            writeFindings(std::string(findings_.begin()->first));
        if (!options_.noteChanges || options_.other == nullptr)
            return;
        std::set<std::string> there;
        for (const showLine_t &line : showLines(tree_, true))
            there.insert(line.path);
        for (const showLine_t &line : showLines(*options_.other, true))
            if (line.kind != kind_t::group && !there.contains(line.path)) {
                out_ += "  ";
                comment(options_.styles.comment, line.path + " is gone, was " + valueInOneLine(line));
                out_ += '\n';
            }
    }

    std::string &out_;
    const tree_t &tree_;
    const showOptions_t &options_;
    std::multimap<std::string, const finding_t *> findings_; // not shown yet, by path
    std::unordered_map<std::string, std::string> others_;    // what the other message has, by path
    std::vector<std::size_t> widths_;
};

} // namespace

void appendShow(std::string &out, const tree_t &tree, const showOptions_t &options) {
    showWriter_t(out, tree, options).write();
}

} // namespace vek::inspect
