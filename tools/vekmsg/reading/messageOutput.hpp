// Commands that make messages of messages, on standard output or in place: seal, set and fix.
//
// A single message goes out without a line end, unless to a terminal: what stands in a file is then what a host reads.
#pragma once

#include "tools/vekmsg/reading/reader.hpp"
#include "tools/vekmsg/reading/rewriter.hpp"

#include <optional>
#include <string>

namespace vek::tool {

class messageTask_t : public task_t {
public:
    void take(const item_t &item) final;

    /// The file that is rewritten at the moment; null when the messages go to standard output.
    rewriter_t *rewriter = nullptr;
    bool hasFailed = false; ///< a file with such a message stays as it was
    bool isFirst = true;
    exitCode_t status = exitFine; ///< of messages that were made nevertheless
    bool keepsBackup = false;     ///< of a file that is rewritten

protected:
    /// The message to write; nothing when there is none, which was said.
    virtual std::optional<std::string> made(const item_t &item) = 0;

    bool isAsItWas = false; ///< what was made last: it stays where it is
};

/// Reads the inputs, and writes what the task makes, to standard output or in place.
int writeMessages(const readingOptions_t &options, bool isInPlace, messageTask_t &task);

} // namespace vek::tool
