// What goes from the readers of inputs to the commands: item_t, a message with where it stands, and task_t, what a
// command does with each of them.
//
// An item and what it views are valid during task_t::take() only. A task and its output belong to one thread; when
// several read a file, every piece of it has a task of its own, and these are joined in the file's order.
#pragma once

#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/log/logScanner.hpp"
#include "vek/inspect/message/tree.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace vek::tool {

/// A tree that is only made when it is asked for, and keeps its memory from message to message.
class lazyTree_t {
public:
    void reset(std::string_view text) {
        text_ = text;
        isMade_ = false;
    }
    const inspect::tree_t &get() {
        if (!isMade_)
            tree_.read(text_);
        isMade_ = true;
        return tree_;
    }

private:
    std::string_view text_;
    inspect::tree_t tree_;
    bool isMade_ = false;
};

struct item_t : inspect::foundMessage_t {
    std::string_view file;     ///< as the user named it
    std::uint64_t stretch = 0; ///< bytes it takes in the input
    std::string_view whole;    ///< the message with what stands around it in a file that holds it alone
    bool isRaw = false;        ///< the form that it was read from wants it as it is
    bool mayGrow = false;      ///< the last one in a file of a log, whose end is not certain unless it stands there
    inspect::form_t form = inspect::form_t::none; ///< it was read from; `none` in a log
    lazyTree_t *lazy = nullptr;

    /// Of the whole.
    const inspect::tree_t &tree() const { return lazy->get(); }
    /// "a.log:3:17"
    std::string place() const;
};

class task_t {
public:
    virtual ~task_t() = default;

    virtual void take(const item_t &item) = 0;

    /// Of a followed log nothing more has come for now.
    virtual void pause() {}

    /// Whether the output has colours of its own; messages' bytes in it are then quoted where they could be taken for
    /// some.
    virtual bool hasColours() const { return false; }

    /// A task for another piece of the input; null when pieces can't be done apart.
    virtual std::unique_ptr<task_t> fork() const { return nullptr; }
    /// Takes over what the task of the following piece has gathered, but its output.
    virtual void join(task_t &) {}
    /// Whether the items of a piece have their lines' numbers in the file, which takes a pass over it in front; else
    /// these are counted from the piece on, and when it is joined, `linesInFront` tells what they lack.
    virtual bool needsLines() const { return true; }

    std::string out; ///< for standard output; taken away from time to time
    std::uint64_t linesInFront = 0;

protected:
    task_t() = default;
    task_t(const task_t &) = delete; // a piece's task begins with nothing gathered
    task_t &operator=(const task_t &) = delete;
};

} // namespace vek::tool
