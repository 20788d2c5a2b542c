// command_t: a command of vekmsg. Each stands in a file of its own: its arguments in a struct, what it does, and at the
// end the one object that enters it in the list of all commands:
//
//     const commandOf_t<getArguments_t> getCommand({.order = 40, .name = "get", ...}, runGet);
#pragma once

#include "tools/vekmsg/terminal/argumentList.hpp"

#include <memory>
#include <vector>

namespace vek::tool {

struct commandWords_t {
    int order; ///< the help shows smaller ones first
    const char *name, *about;
    const char *examples = nullptr; ///< null: the help does not show the command
};

class command_t {
public:
    command_t(const command_t &) = delete;
    command_t &operator=(const command_t &) = delete;

    const commandWords_t &words() const { return words_; }
    virtual void declare(argumentList_t &list) = 0;
    /// Runs to the command's end, and gives the exit code. Throws usageError_t when it can't go on.
    virtual int run() const = 0;

    /// All there are, in the order of the help.
    static std::vector<command_t *> all();

protected:
    explicit command_t(const commandWords_t &words) noexcept : words_(words), next_(first_) { first_ = this; }
    ~command_t() = default;

private:
    const commandWords_t words_;
    command_t *const next_;
    static inline constinit command_t *first_ = nullptr;
};

/// A command whose arguments are of a type that declares itself.
template <typename arguments_t>
class commandOf_t final : public command_t {
public:
    using run_t = int (*)(const arguments_t &arguments);

    commandOf_t(const commandWords_t &words, run_t runs) noexcept : command_t(words), run_(runs) {}

    void declare(argumentList_t &list) override {
        arguments_ = std::make_unique<arguments_t>();
        arguments_->declare(list);
    }
    int run() const override { return run_(*arguments_); }

private:
    const run_t run_;
    std::unique_ptr<arguments_t> arguments_;
};

} // namespace vek::tool
