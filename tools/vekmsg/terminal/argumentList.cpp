#include "tools/vekmsg/terminal/argumentList.hpp"

#include <CLI/CLI.hpp>

#include <limits>
#include <type_traits>

namespace vek::tool {

template <typename value_t>
void argumentList_t::add(value_t &value, const argumentWords_t &words) {
    CLI::Option *option = app.add_option(words.names, value, words.about)->required(words.isRequired);
    if (words.type != nullptr)
        option->type_name(words.type);
    if (words.isAlone)
        option->expected(1);
    if (words.separator != '\0')
        option->delimiter(words.separator);
    if (!words.oneOf.empty())
        option->check(CLI::IsMember(words.oneOf));
    if constexpr (std::is_arithmetic_v<value_t>)
        if (words.least) {
            const auto most = words.most ? static_cast<value_t>(*words.most) : std::numeric_limits<value_t>::max();
            option->check(CLI::Range(static_cast<value_t>(*words.least), most, words.most ? "" : "NONNEGATIVE"));
        }
    if (std::is_same_v<value_t, std::vector<std::string>> && words.names[0] == '-')
        option->allow_extra_args(false); // what follows its value is the next argument
}

template void argumentList_t::add(std::string &, const argumentWords_t &);
template void argumentList_t::add(std::vector<std::string> &, const argumentWords_t &);
template void argumentList_t::add(std::optional<std::string> &, const argumentWords_t &);
template void argumentList_t::add(std::optional<std::int32_t> &, const argumentWords_t &);
template void argumentList_t::add(std::optional<std::uint64_t> &, const argumentWords_t &);
template void argumentList_t::add(int &, const argumentWords_t &);
template void argumentList_t::add(std::size_t &, const argumentWords_t &);
template void argumentList_t::add(double &, const argumentWords_t &);

void argumentList_t::addFlag(bool &value, const char *names, const char *about) {
    app.add_flag(names, value, about);
}

} // namespace vek::tool
