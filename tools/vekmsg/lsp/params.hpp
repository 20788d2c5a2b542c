// What stands in the parameters of a message of the protocol; what is missing or of another type throws.
#pragma once

#include "tools/vekmsg/lsp/document.hpp"

#include <nlohmann/json.hpp>

#include <stdexcept>
#include <string>
#include <string_view>

namespace vek::tool::lsp {

/// An error that is answered with its number.
class rpcError_t : public std::runtime_error {
public:
    static constexpr int parseError = -32700, invalidRequest = -32600, methodNotFound = -32601, invalidParams = -32602,
                         notInitialized = -32002, requestCancelled = -32800, requestFailed = -32803;

    rpcError_t(int number, const std::string &words) : std::runtime_error(words), code(number) {}

    const int code;
};

/// JSON of any bytes, as deep and of as many values as the protocol may need; those that are no UTF-8 come back in
/// textIn(). Throws rpcError_t.
nlohmann::json parsed(const std::string &text);

const nlohmann::json &memberOf(const nlohmann::json &object, const char *name);
/// Null when there is none, whatever the parent is.
const nlohmann::json *findMember(const nlohmann::json &object, std::initializer_list<const char *> path);
std::string textIn(const nlohmann::json &object, const char *name);
std::int64_t numberIn(const nlohmann::json &object, const char *name);
position_t positionIn(const nlohmann::json &object, const char *name);
range_t rangeIn(const nlohmann::json &object, const char *name);

} // namespace vek::tool::lsp
