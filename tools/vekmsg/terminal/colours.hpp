// Colours of a terminal. Neither black nor white, so that they are seen on any background.
#pragma once

#include "tools/vekmsg/terminal/platform.hpp"
#include "vek/inspect/forms/forms.hpp"

#include <string>
#include <string_view>

namespace vek::tool {

/// Sequences, or empty texts when there is to be no colour.
struct colours_t {
    explicit colours_t(bool isOn) {
        if (!isOn)
            return;
        bold = "\x1b[1m";
        dim = "\x1b[2m";
        red = "\x1b[1;31m";
        green = "\x1b[32m";
        yellow = "\x1b[33m";
        blue = "\x1b[34m";
        magenta = "\x1b[35m";
        cyan = "\x1b[36m";
        reset = "\x1b[0m";
    }
    /// For standard output or error, by --color (auto, always, never), NO_COLOR and the kind of terminal.
    static colours_t of(const std::string &option, int descriptor = 1) {
        const bool isPossible = isTerminal(descriptor) && !environment("NO_COLOR") && environment("TERM") != "dumb";
        return colours_t(option == "always" || (option == "auto" && isPossible));
    }

    inspect::showStyles_t styles() const {
        return {.title = bold,
                .key = cyan,
                .number = green,
                .text = yellow,
                .name = magenta,
                .comment = dim,
                .warning = magenta,
                .error = red,
                .reset = reset};
    }

    std::string_view bold, dim, red, green, yellow, blue, magenta, cyan, reset;
};

} // namespace vek::tool
