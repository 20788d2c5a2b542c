// The methods that the server knows.
#pragma once

#include "tools/vekmsg/lsp/server.hpp"

#include <string_view>

namespace vek::tool::lsp {

struct server_t::method_t {
    std::string_view name;
    void (server_t::*handler)(const json_t &params, result_t &result);
    bool isRequest = true; ///< one is answered
};

} // namespace vek::tool::lsp
