// The commands: each runs to its end and gives the exit code. Their words, options and order are in commandLine.cpp.
//
// They throw usageError_t when they can't go on.
#pragma once

#include "tools/vekmsg/commands/options.hpp"

namespace vek::tool {

int runShow(const options_t &options);
int runCheck(const options_t &options);
int runSeal(const options_t &options);
int runGet(const options_t &options);
int runSet(const options_t &options);
int runEdit(const options_t &options);
int runJson(const options_t &options);
int runFlat(const options_t &options);
int runTable(const options_t &options);
int runLast(const options_t &options);
int runSummary(const options_t &options);
int runDiff(const options_t &options);
int runLoad(const options_t &options);
int runSchema(const options_t &options);
int runList(const options_t &options);
int runDescribe(const options_t &options);
int runNew(const options_t &options);

} // namespace vek::tool
