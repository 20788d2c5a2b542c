#include "tools/vekmsg/commands/commandLine.hpp"

#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/terminal/password.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "tools/vekmsg/terminal/wrapping.hpp"
#include "vek/inspect/words/nearest.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace vek::tool {

std::vector<command_t *> command_t::all() {
    std::vector<command_t *> commands;
    for (command_t *command = first_; command != nullptr; command = command->next_)
        commands.push_back(command);
    std::ranges::sort(commands, {}, [](const command_t *command) { return command->words_.order; });
    return commands;
}

namespace {

constexpr const char *about =
    "Shows, checks, mends, changes and compares the text messages of a laser exposure device. Wherever messages are "
    "read, they may stand in a log amid other words, in a file of their own, in the readable form, in JSON or in the "
    "flat form; as they are or packed with gzip or zstd.";

// A page of help with its long lines broken, in the column where the words of options and commands begin; below their
// names where there is no room for two columns.
std::string wrappedPage(const std::string &page, std::size_t width) {
    constexpr std::size_t column = 30, narrow = 60, indent = 6;
    std::string out;
    for (std::size_t at = 0; at < page.size();) {
        const std::size_t end = std::min(page.find('\n', at), page.size());
        std::string line = page.substr(at, end - at);
        at = end + 1;
        const bool hasColumn = line.size() > column && line.starts_with("  ") && line.compare(column - 2, 2, "  ") == 0;
        if (hasColumn && width < narrow) {
            const std::size_t nameEnd = line.find_last_not_of(' ', column - 1) + 1;
            out += nameEnd == 0 ? "" : wrapped(line.substr(0, nameEnd), width, indent) + "\n";
            line.replace(0, column, indent, ' ');
        }
        out += wrapped(line, width, !hasColumn ? 0 : width < narrow ? indent : column) + "\n";
    }
    return out;
}

constexpr const char *exitCodes = "Exit code: 0 fine; 1 differences, invalid messages or none; 2 usage or files.";

CLI::App *declare(CLI::App &app, command_t &command) {
    const commandWords_t &words = command.words();
    CLI::App *own = app.add_subcommand(words.name, words.about);
    if (words.examples != nullptr)
        own->footer(std::string("Examples:\n") + words.examples);
    else
        own->group("");
    argumentList_t list(*own);
    command.declare(list);
    return own;
}

// Null when there is none.
const CLI::App *commandNamed(const CLI::App &app, const std::string &name) {
    const auto found = app.get_subcommands([&](const CLI::App *command) { return command->get_name() == name; });
    return found.empty() ? nullptr : found.front();
}

std::string noCommand(const std::string &word) {
    std::vector<std::string_view> names;
    for (const command_t *command : command_t::all())
        names.emplace_back(command->words().name);
    return word + " is no command; " + inspect::didYouMean(word, names, "vekmsg --help shows all");
}

int complainAbout(const CLI::App &app, const CLI::ParseError &error, int argc, char **argv) {
    if (error.get_exit_code() == 0) { // help and version
        std::string text =
            dynamic_cast<const CLI::CallForVersion *>(&error) != nullptr ? std::string(error.what()) : std::string();
        const std::vector<CLI::App *> chosen = app.get_subcommands();
        if (text.empty())
            text = helpOf(app, chosen.empty() ? std::string() : chosen.front()->get_name());
        writeAll(1, text);
        return exitFine;
    }
    const std::string word = argc > 1 ? argv[1] : "", what = error.what();
    const std::size_t surplus = what.find(": At Most 1 required"); // the words of the library of arguments
    if (commandNamed(app, word) != nullptr)
        complain((surplus != std::string::npos ? what.substr(0, surplus) + " takes one value, and stands there twice"
                                               : what) +
                 "; vekmsg " + word + " --help shows what it takes");
    else if (word.empty())
        complain("which command? vekmsg --help shows all; vekmsg show FILE is a good first one");
    else if (identityOf(word))
        complain(word + " is a file; which command? vekmsg show " + word + " is a good first one");
    else
        complain(noCommand(word));
    return exitUsage;
}

} // namespace

std::string helpOf(const CLI::App &all, const std::string &command) {
    const CLI::App *one = command.empty() ? &all : commandNamed(all, command);
    if (one == nullptr)
        throw usageError_t(noCommand(command));
    return wrappedPage(command.empty() ? all.help() : one->help("vekmsg"), pageWidth());
}

int runCommandLine(int argc, char **argv) {
    CLI::App app(about, "vekmsg");
    app.require_subcommand(1);
    app.set_version_flag("--version", "vekmsg " VEK_VERSION, "The version");
    app.set_help_flag("-h,--help", "This help; after a command, its own");
    app.footer(std::string(exitCodes) + "\nvekmsg help COMMAND says more, with examples.");
    app.failure_message([](const CLI::App *, const CLI::Error &error) { return std::string(error.what()); });
    const command_t *chosen = nullptr;
    for (command_t *command : command_t::all())
        declare(app, *command)->callback([&chosen, command] { chosen = command; });
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return complainAbout(app, error, argc, argv);
    }
    hidePasswords(argc, argv);
    return chosen->run();
}

} // namespace vek::tool
