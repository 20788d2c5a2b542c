// reader_t: hands every message of the inputs that passes the filter to a task, and writes what the task puts out.
//
// Inputs are read block by block, so memory does not grow with their size. Used by one thread; of a large file it
// starts others while that is read, each with a task of its own. (What stands open as standard input has one place, and
// one reader.)
#pragma once

#include "tools/vekmsg/reading/filter.hpp"
#include "tools/vekmsg/reading/input.hpp"
#include "tools/vekmsg/reading/task.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "tools/vekmsg/terminal/progress.hpp"
#include "vek/inspect/log/logScanner.hpp"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace vek::tool {

/// The messages that were longer than --longest, and not looked into: how many, and where and how long the first one
/// is.
struct passedOver_t {
    std::uint64_t count = 0;
    std::string_view file; // the reader's
    std::uint64_t line = 0, column = 0;
    std::size_t size = 0, largest = 0;

    /// Puts later ones behind these.
    void join(const passedOver_t &later);
};

/// Makes items of what a log scanner finds.
class itemSink_t final : public inspect::messageSink_t {
public:
    itemSink_t(std::string_view file, const filter_t &filter, task_t &task, std::uint64_t most = UINT64_MAX)
        : file_(file), filter_(filter), task_(task), most_(most), isFiltered_(filter.isActive()) {}

    void message(const inspect::foundMessage_t &found) override;
    void message(item_t &item);

    /// Only what begins in front of this offset counts.
    void endAt(std::uint64_t offset) { end_ = offset; }
    /// How many were found, and how many of them the task took.
    std::uint64_t found() const { return found_; }
    std::uint64_t taken() const { return taken_; }
    const passedOver_t &passedOver() const { return passedOver_; }
    bool isFull() const { return taken_ >= most_; }
    void limit(std::uint64_t most) { most_ = most; }
    /// Where the last message ended, and its line's beginning when that is behind the end that was set.
    std::uint64_t lastEnd() const { return lastEnd_; }
    const std::string &overhang() const { return overhang_; }
    inspect::form_t form = inspect::form_t::none;
    bool mayGrow = false; ///< what comes now
    /// A file that holds one message and nothing in front of it: all of it.
    std::string_view whole;

private:
    std::string_view file_;
    const filter_t &filter_;
    task_t &task_;
    std::uint64_t most_;
    const bool isFiltered_;
    std::uint64_t end_ = UINT64_MAX;
    std::uint64_t found_ = 0, taken_ = 0;
    std::uint64_t lastEnd_ = 0;
    std::string overhang_;
    passedOver_t passedOver_;
    lazyTree_t lazy_;
};

class reader_t {
public:
    reader_t(const readingOptions_t &options, task_t &task) : options_(options), filter_(options), task_(task) {}

    /// Reads all inputs. What is wrong with one of them is said on standard error, and the others are read.
    void run();
    /// The same of one input, block by block: opens it, then takes a block a step. False when there is no more.
    bool open();
    bool step();
    void flush();

    /// exitUsage when an input could not be read, exitDifferences when one held nothing that could be, else exitFine.
    exitCode_t status() const { return status_; }
    std::uint64_t found() const { return found_; }
    std::uint64_t taken() const { return taken_; }
    const filter_t &filter() const { return filter_; }
    /// Says that there was no message, or none that was asked for; then exitDifferences, else the status.
    exitCode_t statusWithMessages() const;

private:
    void begin(const std::string &name);
    bool takeBlock();
    void end();
    void readAll(const std::string &name);
    void lookForWhole(std::size_t skipped);
    void takeMeant();
    void lookForEncoding(std::uint64_t found);
    void takeForms(bool isLast);
    void takePiece(std::string_view piece);
    void fail(const usageError_t &error);
    void tell(const passedOver_t &passedOver);
    void readSplit(const std::string &name, unsigned threads);
    class followed_t;
    void follow();
    std::uint64_t most() const {
        return options_.head ? *options_.head - std::min(*options_.head, taken_) : UINT64_MAX;
    }

    const readingOptions_t &options_;
    filter_t filter_;
    task_t &task_;
    // The input that is being read.
    struct input_t {
        input_t(const std::string &name, const filter_t &filter, task_t &task, std::uint64_t most)
            : source(openSource(name)), sink(name, filter, task, most) {}
        std::unique_ptr<source_t> source;
        itemSink_t sink;
        inspect::logScanner_t scanner;
        std::string start;      // the first block
        std::string whole;      // of a file that holds one message alone: all that stands in it
        std::string pending;    // of a form: what is not complete yet
        std::uint64_t size = 0; // that was taken
        item_t position;        // of a form: where `pending` begins
        bool isForm = false, isDump = false;
    };

    progress_t progress_;
    std::unique_ptr<input_t> input_;
    exitCode_t status_ = exitFine;
    std::uint64_t found_ = 0, taken_ = 0;
    std::string_view encoding_; // of an input without messages
};

struct splitCounts_t {
    std::uint64_t found = 0, taken = 0;
    passedOver_t passedOver;
};

/// Reads a plain file in pieces on several threads: the output is the same as on one, in the same order, whatever the
/// size of the pieces; by default they fit into a processor's cache, as what comes of them. `output` is called with
/// what is to be written and how many bytes of the file are done, one call at a time.
splitCounts_t splitFile(const std::string &name, unsigned jobs, const filter_t &filter, task_t &task,
                        const std::function<void(std::string &out, std::uint64_t done)> &output,
                        std::size_t pieceSize = std::size_t{1} << 18);

} // namespace vek::tool
