// argumentList_t: where a command declares what it takes, with the words of its help. Each value is put where the
// declaration says; what was not given stays as it is.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace vek::tool {

struct argumentWords_t {
    const char *names; ///< "-n,--head", or "FILE" of what has no name
    const char *about;
    const char *type = nullptr; ///< what the help calls the value
    bool isRequired = false;
    bool isAlone = false;                ///< of a list without a name: it has one value
    char separator = '\0';               ///< between the values of a list
    std::vector<std::string> oneOf = {}; ///< the values there are
    std::vector<std::string> pages = {}; ///< of `vekmsg page`: their words are values, and others may be
    std::vector<std::string> such = {};  ///< values beside those of the pages
    std::optional<std::uint64_t> least = {}, most = {};
};

class argumentList_t {
public:
    explicit argumentList_t(CLI::App &command) : app(command) {}

    /// A text, a number, an optional one of them, or a list of texts.
    template <typename value_t>
    void add(value_t &value, const argumentWords_t &words);
    void addFlag(bool &value, const char *names, const char *about);

    CLI::App &app;
};

/// What a shell offers for the value of an option, as words of the shell's; empty when that can be anything.
std::string shellWords(const CLI::Option &option);

} // namespace vek::tool
