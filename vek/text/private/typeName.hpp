// The name of a type as it is declared, without its namespace, for descriptions.
#pragma once

#include <string_view>

namespace vek {

template <class T>
constexpr std::string_view typeName() {
    // "... [with T = vek::media_t; ...]" by g++, "... [T = vek::media_t]" by clang++
    std::string_view name = __PRETTY_FUNCTION__;
    name.remove_prefix(name.find("T = ") + 4);
    name = name.substr(0, name.find_first_of(";]"));
    const std::size_t scope = name.rfind("::", name.find('<'));
    return scope == std::string_view::npos ? name : name.substr(scope + 2);
}

} // namespace vek
