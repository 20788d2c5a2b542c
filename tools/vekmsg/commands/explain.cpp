// vekmsg explain: what a finding is, by an example, what a host makes of it, and how to write it right.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/findingNames.hpp"
#include "tools/vekmsg/commands/optionGroups.hpp"
#include "tools/vekmsg/terminal/wrapping.hpp"
#include "vek/inspect/change/explanation.hpp"
#include "vek/inspect/words/words.hpp"

namespace vek::tool {

namespace {

using inspect::findingKind_t;

struct explainArguments_t {
    colorOption_t color;
    std::vector<std::string> names;

    void declare(argumentList_t &list) {
        list.add(names, {.names = "NAME",
                         .about = "What stands in [] behind a finding of vekmsg check; none: all in a line each",
                         .pages = {"findings"}});
        color.declare(list);
    }
};

class explanations_t {
public:
    explicit explanations_t(const colours_t &colours) : colours_(colours) {}

    void inShort(const findingKind_t &kind) {
        title(kind, wrapped(inspect::joined({kind.name, "  ", kind.about}), width_, 4));
    }

    void whole(const findingKind_t &kind) {
        const inspect::explanation_t explanation = inspect::explain(kind);
        title(kind,
              wrapped(inspect::joined({kind.name, "  ", severityName(kind.severity), ": ", kind.about}), width_, 4));
        paragraph(explanation.example, colours_.dim);
        paragraph(explanation.words, {});
        paragraph(inspect::plainWords(explanation.remedy) + (explanation.isMended ? " vekmsg fix does that." : ""),
                  colours_.green);
    }

    std::string out;

private:
    void title(const findingKind_t &kind, const std::string &words) {
        out.append(kind.severity == inspect::severity_t::error ? colours_.red : colours_.magenta);
        out.append(kind.name).append(colours_.reset).append(words, kind.name.size()).append("\n");
    }
    void paragraph(const std::string &words, std::string_view colour) {
        out.append(colour).append(wrapped("  " + words, width_, 2));
        out.append(colour.empty() ? std::string_view() : std::string_view(colours_.reset)).append("\n");
    }

    const colours_t &colours_;
    const std::size_t width_ = pageWidth();
};

int runExplain(const explainArguments_t &arguments) {
    const colours_t colours = arguments.color.colours();
    explanations_t explanations(colours);
    if (arguments.names.empty())
        for (const findingKind_t &kind : inspect::findingKinds)
            explanations.inShort(kind);
    for (const std::string &name : arguments.names)
        explanations.whole(inspect::findingKind(findingCalled(name, {})));
    writeAll(1, explanations.out);
    return exitFine;
}

const commandOf_t<explainArguments_t>
    explainCommand({.order = 165,
                    .name = "explain",
                    .about = "What a finding is, by an example, and how to write it right",
                    .examples = "  vekmsg explain decimal-comma\n"
                                "  vekmsg explain"},
                   runExplain);

} // namespace

} // namespace vek::tool
