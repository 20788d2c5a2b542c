// Options that several commands have in common, a struct for what belongs together: a command that has one holds it,
// and lets it declare itself. Those of commands that read messages are in reading/readingOptions.hpp.
#pragma once

#include "tools/vekmsg/terminal/argumentList.hpp"
#include "tools/vekmsg/terminal/colours.hpp"

namespace vek::tool {

struct colorOption_t {
    std::string color = "auto";

    void declare(argumentList_t &list) {
        list.add(color, {.names = "--color",
                         .about = "Colours: auto (on a terminal, unless NO_COLOR is set), always, never",
                         .type = "WHEN",
                         .oneOf = {"auto", "always", "never"}});
    }
    colours_t colours(int descriptor = 1) const { return colours_t::of(color, descriptor); }
};

/// The numbers of a message that is made.
struct headerOptions_t {
    std::optional<std::int32_t> echoTag, sequenceNumber;

    void declare(argumentList_t &list) {
        list.add(echoTag, {"--echo", "The echo tag to write", "N"});
        list.add(sequenceNumber, {"--seq", "The sequence number to write", "N"});
    }
};

struct inPlaceOption_t {
    bool isInPlace = false;

    void declare(argumentList_t &list) {
        list.addFlag(isInPlace, "-i,--in-place",
                     "Replace the messages in their files; everything else in them stays, and owner and mode too");
    }
};

} // namespace vek::tool
