// The command line: every command, option and word of help is declared here once, for --help, the manual page and the
// shells' completion.
#pragma once

#include "tools/vekmsg/commands/options.hpp"

#include <CLI/CLI.hpp>

#include <memory>
#include <string>

namespace vek::tool {

class commandLine_t {
public:
    commandLine_t();
    commandLine_t(const commandLine_t &) = delete;
    commandLine_t &operator=(const commandLine_t &) = delete;

    /// Runs what the arguments say; gives the exit code.
    int run(int argc, char **argv);

private:
    using command_t = int (*)(const options_t &);

    CLI::App *command(const std::string &name, const std::string &about, command_t runs, const std::string &examples);
    void reading(CLI::App *app, bool isStream = true, bool canSplit = true);
    void files(CLI::App *app, const std::string &name = "FILE");
    void color(CLI::App *app);
    void header(CLI::App *app);
    void source(CLI::App *app);
    void inPlace(CLI::App *app);
    void declareViews();
    void declareChanges();
    void declareForms();
    void declareLogs();
    void declareTables();
    void declareCatalogue();
    int complainAbout(const CLI::ParseError &error, int argc, char **argv);
    int writePage() const;
    void sortWords();

    options_t options_;
    CLI::App app_;
    command_t chosen_ = nullptr;
};

/// Pages made from the declarations.
std::string manualPage(const CLI::App &app);
std::string bashCompletion(const CLI::App &app);
std::string zshCompletion(const CLI::App &app);

} // namespace vek::tool
