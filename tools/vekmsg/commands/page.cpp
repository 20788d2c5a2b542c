// vekmsg page: the manual page and the shells' completion, from the declarations of all commands.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/check/check.hpp"
#include "vek/inspect/schema/schema.hpp"
#include "vek/inspect/words/words.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace vek::tool {

namespace {

using inspect::joined;

struct pageArguments_t {
    const CLI::App *all = nullptr;
    std::string kind;

    void declare(argumentList_t &list) {
        all = list.app.get_parent();
        list.add(kind, {.names = "KIND", .about = "", .isRequired = true});
    }
};

// A text for roff: no line begins a request, no backslash is read as an escape.
std::string roff(const std::string &text) {
    std::string out;
    for (const char c : text) {
        if ((c == '.' || c == '\'') && (out.empty() || out.back() == '\n'))
            out += "\\&";
        if (c == '\\')
            out += "\\e";
        else if (c == '-')
            out += "\\-";
        else
            out += c;
    }
    return out;
}

std::vector<const CLI::App *> commandsOf(const CLI::App &app) {
    std::vector<const CLI::App *> commands;
    for (const CLI::App *command : app.get_subcommands([](const CLI::App *) { return true; }))
        if (!command->get_group().empty())
            commands.push_back(command);
    return commands;
}

bool isPositional(const CLI::Option *option) {
    return option->get_lnames().empty() && option->get_snames().empty();
}

std::string optionNames(const CLI::Option *option) {
    std::string names;
    for (const std::string &name : option->get_snames())
        names += (names.empty() ? "-" : ", -") + name;
    for (const std::string &name : option->get_lnames())
        names += (names.empty() ? "--" : ", --") + name;
    return names;
}

bool takesValue(const CLI::Option *option) {
    return option->get_items_expected_max() > 0;
}

std::string synopsis(const CLI::App &command) {
    std::string words = "\\fBvekmsg " + command.get_name() + "\\fR [\\fIOPTION\\fR...]";
    for (const CLI::Option *option : command.get_options()) {
        if (!isPositional(option))
            continue;
        const bool isMany = option->get_items_expected_max() > 1;
        const std::string name = "\\fI" + roff(option->get_name(true)) + "\\fR" + (isMany ? "..." : "");
        words += option->get_required() ? " " + name : " [" + name + "]";
    }
    return words;
}

std::string withoutHeading(const std::string &footer) {
    return footer.substr(footer.find('\n') + 1);
}

std::string manualPage(const CLI::App &app) {
    std::string page = ".\\\" Made by vekmsg from the declarations of its command line.\n"
                       ".TH VEKMSG 1 \"\" \"vekmsg " VEK_VERSION "\" \"User commands\"\n"
                       ".SH NAME\nvekmsg \\- messages of a laser exposure device for people\n.SH SYNOPSIS\n";
    for (const CLI::App *command : commandsOf(app))
        page += synopsis(*command) + "\n.br\n";
    page += ".SH DESCRIPTION\n" + roff(app.get_description()) + "\n.SH COMMANDS\n";
    for (const CLI::App *command : commandsOf(app)) {
        page += ".SS " + synopsis(*command) + "\n" + roff(command->get_description()) + ".\n";
        for (const CLI::Option *option : command->get_options()) {
            page += ".TP\n\\fB" + roff(isPositional(option) ? option->get_name(true) : optionNames(option)) + "\\fR";
            if (!isPositional(option) && takesValue(option))
                page += " \\fI" + roff(option->get_type_name()) + "\\fR";
            page += "\n" + roff(option->get_description()) + "\n";
        }
        page += ".PP\nExamples:\n.PP\n.nf\n" + roff(withoutHeading(command->get_footer())) + "\n.fi\n";
    }
    page += ".SH EXIT STATUS\n0 fine; 1 differences, invalid messages, or none; 2 usage or files.\n"
            ".SH ENVIRONMENT\n.TP\n\\fBNO_COLOR\\fR\nNo colours unless \\-\\-color=always.\n"
            ".TP\n\\fBVISUAL\\fR, \\fBEDITOR\\fR\nThe editor of \\fBvekmsg edit\\fR.\n";
    return page;
}

std::string bashCompletion(const CLI::App &app) {
    std::string commands, cases, values;
    for (const CLI::Option *option : app.get_options())
        for (const std::string &name : option->get_lnames())
            commands += " --" + name;
    for (const CLI::App *command : commandsOf(app)) {
        const std::string name = command->get_name();
        commands += " " + name;
        cases += joined({"    ", name, ") options='"});
        for (const CLI::Option *option : command->get_options()) {
            std::string before = isPositional(option) ? joined({"'", name, " ", name, "'"}) : "";
            for (const std::string &longName : option->get_lnames()) {
                cases += joined({"--", longName, " "});
                before += joined({"'", name, " --", longName, "'"});
            }
            if (const std::string words = shellWords(*option); !words.empty())
                values += joined(
                    {"    ", before, isPositional(option) ? ") options+=\" " : ") options=\"", words, "\" ;;\n"});
        }
        cases += "' ;;\n";
    }
    return "# Completion of vekmsg for bash, made by vekmsg from the declarations of its command line.\n"
           "_vekmsg() {\n"
           "    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} options=\n"
           "    COMPREPLY=()\n"
           "    if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
           "        mapfile -t COMPREPLY < <(compgen -W '" +
           commands +
           "' -- \"$word\")\n"
           "        return\n"
           "    fi\n"
           "    case ${COMP_WORDS[1]} in\n" +
           cases +
           "    esac\n"
           "    case \"${COMP_WORDS[1]} $previous\" in\n" +
           values +
           "    esac\n"
           "    mapfile -t COMPREPLY < <(compgen -W \"$options\" -- \"$word\"; compgen -f -- \"$word\")\n"
           "}\n"
           "complete -o filenames -F _vekmsg vekmsg\n";
}

// A text inside single quotes and brackets of _arguments.
std::string zshText(const std::string &text) {
    std::string out;
    for (const char c : text) {
        if (c == '\'')
            out += "'\\''";
        else if (c == '[' || c == ']' || c == ':')
            out += std::string("\\") + c;
        else
            out += c;
    }
    return out;
}

std::string zshValues(const CLI::Option &option) {
    const std::string words = shellWords(option);
    return words.empty() ? words : '(' + words + ')';
}

std::string optionsInZsh(const CLI::App &command) {
    std::string words;
    for (const CLI::Option *option : command.get_options())
        for (const std::string &name : option->get_lnames())
            words += " \\\n            '--" + name + (takesValue(option) ? "=" : "") + "[" +
                     zshText(option->get_description()) + "]" +
                     (takesValue(option) ? ":" + zshText(option->get_type_name()) + ":" + zshValues(*option) : "") +
                     "'";
    return words;
}

std::string zshCompletion(const CLI::App &app) {
    std::string commands, cases;
    for (const CLI::App *command : commandsOf(app)) {
        commands += "        '" + command->get_name() + ":" + zshText(command->get_description()) + "'\n";
        cases += "    " + command->get_name() + ")\n        _arguments";
        cases += optionsInZsh(*command);
        const auto options = command->get_options();
        const auto offering = std::find_if(options.begin(), options.end(), [](const CLI::Option *option) {
            return isPositional(option) && !shellWords(*option).empty();
        });
        if (offering != options.end())
            cases += " \\\n            '1:value:" + zshValues(**offering) + "'";
        cases += " \\\n            '*:file:_files'";
        cases += "\n        ;;\n";
    }
    return "#compdef vekmsg\n# Completion of vekmsg for zsh, made by vekmsg from the declarations of its command "
           "line.\n"
           "_vekmsg() {\n"
           "    local -a commands=(\n" +
           commands +
           "    )\n"
           "    if ((CURRENT == 2)); then\n"
           "        if [[ $PREFIX == -* ]]; then\n"
           "            _arguments" +
           optionsInZsh(app) +
           "\n"
           "        else\n"
           "            _describe command commands\n"
           "        fi\n"
           "        return\n"
           "    fi\n"
           "    local command=${words[2]}\n"
           "    shift words\n"
           "    ((CURRENT--))\n"
           "    case $command in\n" +
           cases +
           "    esac\n"
           "}\n"
           "_vekmsg \"$@\"\n";
}

int runPage(const pageArguments_t &arguments) {
    std::string page;
    if (arguments.kind == "man")
        page = manualPage(*arguments.all);
    else if (arguments.kind == "bash")
        page = bashCompletion(*arguments.all);
    else if (arguments.kind == "zsh")
        page = zshCompletion(*arguments.all);
    else if (arguments.kind == "names")
        for (const inspect::messageSchema_t &message : inspect::schema().messages())
            page += message.record != nullptr ? std::string(message.record->structure) + "\n" : std::string();
    else if (arguments.kind == "keys")
        for (const std::string_view key : inspect::schema().keys())
            page.append(key).append("\n");
    else if (arguments.kind == "findings")
        for (const inspect::findingKind_t &kind : inspect::findingKinds)
            page.append(kind.name).append("\n");
    else if (arguments.kind == "commands")
        for (const CLI::App *command : commandsOf(*arguments.all))
            page.append(command->get_name()).append("\n");
    else
        throw usageError_t("there are the pages man, bash, zsh, commands, names, keys and findings");
    writeAll(1, page);
    return exitFine;
}

const commandOf_t<pageArguments_t>
    pageCommand({.order = 1000, .name = "page", .about = "The manual page and completions"}, runPage);

} // namespace

} // namespace vek::tool
