// rewriter_t: a file in which messages are replaced, with every other byte as it was.
//
// The file is replaced as a whole and atomically, by commit(); until then it is as it was. Owns both files.
#pragma once

#include "tools/vekmsg/reading/task.hpp"
#include "tools/vekmsg/terminal/platform.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vek::tool {

class rewriter_t {
public:
    /// Throws usageError_t for standard input and packed files.
    explicit rewriter_t(const std::string &name);

    /// Puts a text in the place of an item of this file. Items come in order.
    void replace(const item_t &item, std::string_view text);
    /// Replaces the file, when something in it changed; throws usageError_t when another took its name meanwhile. Of
    /// the old one a copy is kept, as FILE.bak, when it is wanted.
    void commit(bool keepsBackup = false);

private:
    void copyUntil(std::uint64_t offset);

    std::optional<rawFile_t> original_; // closed before it is replaced, which Windows wants
    fileIdentity_t identity_;
    replacement_t replacement_;
    std::uint64_t done_ = 0; // of the original
    bool isChanged_ = false;
};

} // namespace vek::tool
