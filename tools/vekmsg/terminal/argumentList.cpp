#include "tools/vekmsg/terminal/argumentList.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <map>
#include <type_traits>

namespace vek::tool {

namespace {

// The type of a number, also of one that may be missing; void of texts.
template <typename value_t>
struct plain_t {
    using type = std::conditional_t<std::is_arithmetic_v<value_t>, value_t, void>;
};
template <typename value_t>
struct plain_t<std::optional<value_t>> : plain_t<value_t> {};

// The library of arguments takes "-1" for the largest number, and what is too large for the largest.
template <typename number_t>
std::string whyNoNumber(const std::string &value, std::optional<std::uint64_t> least,
                        std::optional<std::uint64_t> most) {
    number_t number{};
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    const bool isRead = error == std::errc() && end == value.data() + value.size();
    if (isRead && (!least || number >= static_cast<number_t>(*least)) &&
        (!most || number <= static_cast<number_t>(*most)))
        return {};
    const std::string from = least ? " from " + std::to_string(*least) : "",
                      to = most ? " to " + std::to_string(*most) : "";
    return value + " is no number" + from + (to.empty() && least ? " on" : to);
}

std::vector<std::string> wordsBetween(char separator, const std::string &given) {
    return separator == '\0' ? std::vector{given} : CLI::detail::split(given, separator);
}

// A variable that the shell does not know is no value. The library of arguments leaves out the words that are empty in
// a list, and takes what comes next when nothing is left.
std::string whyNoValue(const std::string &given, char separator) {
    if (given.empty())
        return "the value is empty";
    const std::vector<std::string> words = wordsBetween(separator, given);
    return std::ranges::find(words, std::string()) == words.end()
               ? std::string()
               : given + ": a value is empty; it is written A" + separator + "B";
}

// The library has no room for it in an option.
std::map<const CLI::Option *, std::string> &allShellWords() {
    static std::map<const CLI::Option *, std::string> words;
    return words;
}

} // namespace

std::string shellWords(const CLI::Option &option) {
    const auto found = allShellWords().find(&option);
    return found != allShellWords().end() ? found->second : std::string();
}

template <typename value_t>
void argumentList_t::add(value_t &value, const argumentWords_t &words) {
    CLI::Option *option;
    if constexpr (std::is_same_v<value_t, std::vector<std::string>>)
        option = app.add_option_function<value_t>(
            words.names,
            [&value, separator = words.separator](const value_t &given) {
                value.clear();
                for (const std::string &some : given)
                    std::ranges::move(wordsBetween(separator, some), std::back_inserter(value));
            },
            words.about);
    else
        option = app.add_option(words.names, value, words.about);
    option->required(words.isRequired);
    if (words.type != nullptr)
        option->type_name(words.type);
    if (words.isAlone)
        option->expected(1);
    option->check(
        CLI::Validator([separator = words.separator](const std::string &given) { return whyNoValue(given, separator); },
                       std::string()));
    if (!words.oneOf.empty())
        option->check(CLI::IsMember(words.oneOf));
    std::string &offered = allShellWords()[option];
    for (const std::vector<std::string> &some : {words.oneOf, words.such})
        for (const std::string &word : some)
            offered += (offered.empty() ? "" : " ") + word;
    for (const std::string &page : words.pages)
        offered += (offered.empty() ? "$(vekmsg page " : " $(vekmsg page ") + page + ')';
    if constexpr (!std::is_same_v<typename plain_t<value_t>::type, void>)
        option->check(CLI::Validator(
            [least = words.least, most = words.most](const std::string &given) {
                return whyNoNumber<typename plain_t<value_t>::type>(given, least, most);
            },
            std::string()));
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
