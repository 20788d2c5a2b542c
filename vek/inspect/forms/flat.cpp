#include "vek/inspect/forms/forms.hpp"

#include "vek/inspect/forms/lineForm.hpp"
#include "vek/inspect/forms/private/formText.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/words/quoting.hpp"

namespace vek::inspect {

namespace {

class flatWriter_t {
public:
    flatWriter_t(std::string &out, const tree_t &tree) : out_(out), tree_(tree) {}

    void write() {
        const envelopeParts_t &envelope = tree_.envelope();
        writeNumber("id", envelope.id, true);
        writeNumber("length", envelope.length, false);
        writeNumber("echo", envelope.echoTag, false);
        writeNumber("seq", envelope.sequenceNumber, false);
        if (!isSaidByItsWords(tree_)) {
            out_ += "@text = ";
            appendQuoted(out_, tree_.text());
            out_ += '\n';
        }
        writeChildren(tree_.body());
    }

private:
    void writeNumber(std::string_view name, const envelopeNumber_t &number, bool isAlwaysThere) {
        if (!number.isThere && !isAlwaysThere)
            return;
        out_ += '@';
        out_ += name;
        out_ += " = ";
        out_ += number.isThere ? std::to_string(number.value) : "none";
        out_ += '\n';
    }

    // The path grows and shrinks on the way, so that a deep message costs no more than its size.
    void writeChildren(const node_t &parent) {
        for (const node_t &node : tree_.children(parent)) {
            const std::size_t length = path_.size();
            if (!path_.empty() && (node.index < 0 || node.use == pairUse_t::duplicate))
                path_ += '.';
            appendName(path_, tree_, node);
            writeNode(node);
            path_.resize(length);
        }
    }

    void writeNode(const node_t &node) {
        const std::optional<std::string> wide = node.isBody ? wideText(tree_, node) : std::nullopt;
        if (node.isBody && !wide && node.childCount > 0)
            return writeChildren(node);
        out_ += path_;
        out_ += " = ";
        if (wide)
            appendWideValue(out_, *wide);
        else
            appendScalar(out_, tree_, node);
        out_ += '\n';
    }

    std::string &out_;
    const tree_t &tree_;
    std::string path_;
};

} // namespace

void appendFlat(std::string &out, const tree_t &tree) {
    flatWriter_t(out, tree).write();
}

formResult_t readFlat(std::string_view form, const readOptions_t &options) {
    return messageOf(readLines(form), options, &appendFlat, &readLines);
}

formResult_t readShow(std::string_view form, const readOptions_t &options) {
    return messageOf(
        readLines(form), options, [](std::string &out, const tree_t &tree) { appendShow(out, tree); }, &readLines);
}

} // namespace vek::inspect
