// A line a value. It is read by the reader of the readable form, of which it is the simplest kind.
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
        forEachLeaf(tree_, [this](const std::string &path, const node_t &node) { writeLeaf(path, node); });
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

    void writeLeaf(const std::string &path, const node_t &node) {
        out_ += path;
        out_ += " = ";
        if (const std::optional<std::string> wide = wideText(tree_, node))
            appendWideValue(out_, *wide);
        else
            appendScalar(out_, tree_, node);
        out_ += '\n';
    }

    std::string &out_;
    const tree_t &tree_;
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
