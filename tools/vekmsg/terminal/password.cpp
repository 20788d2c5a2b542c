#include "tools/vekmsg/terminal/password.hpp"

#include <algorithm>

namespace vek::tool {

std::string_view passwordIn(std::string_view address) {
    constexpr std::string_view mark = "://";
    const std::size_t scheme = address.find(mark), at = address.rfind('@');
    const std::size_t colon = scheme == std::string_view::npos ? scheme : address.find(':', scheme + mark.size());
    return colon == std::string_view::npos || at == std::string_view::npos || colon > at
               ? std::string_view()
               : address.substr(colon + 1, at - colon - 1);
}

std::string withoutPassword(std::string address) {
    const std::string_view password = passwordIn(address);
    return password.empty()
               ? address
               : address.replace(static_cast<std::size_t>(password.data() - address.data()), password.size(), "...");
}

void hidePasswords(int argc, char **argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i], password = passwordIn(argument);
        if (!password.empty())
            std::fill_n(argv[i] + (password.data() - argument.data()), password.size(), 'x');
    }
}

} // namespace vek::tool
