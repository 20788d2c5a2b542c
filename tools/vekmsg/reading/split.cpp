// A plain file in pieces, a piece a thread, the output in the file's order.
//
// A piece is the lines that begin in its part of the file. Its scanner starts at a line; a message that the piece
// before it carries on into it (one that was wrapped in lines) shows when its turn comes, and it is then read again
// from there.
#include "tools/vekmsg/reading/reader.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/words/lineCount.hpp"
#include "vek/inspect/words/trimming.hpp"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace vek::tool {

namespace {

constexpr std::size_t stepSize = std::size_t{1} << 16;

class split_t {
public:
    split_t(const std::string &name, const filter_t &filter, task_t &task,
            const std::function<void(std::string &, std::uint64_t)> &output, std::size_t pieceSize)
        : name_(name), size_(rawFile_t(name).identity().size), pieceSize_(pieceSize), filter_(filter), task_(task),
          output_(output) {}

    splitCounts_t run(unsigned jobs) {
        std::vector<std::thread> threads;
        for (unsigned i = 0; i < jobs; ++i)
            threads.emplace_back([this] { work(); });
        for (std::thread &thread : threads)
            thread.join();
        if (failure_)
            std::rethrow_exception(failure_);
        return counts_;
    }

private:
    // What a thread reads its pieces with: a piece's part of the file, and what follows it step by step.
    struct window_t {
        window_t(const std::string &name, std::size_t pieceSize)
            : file(name), part(pieceSize + 1, '\0'), step(std::min(stepSize, pieceSize), '\0') {}

        std::string_view read(std::string &buffer, std::uint64_t offset) {
            file.seek(offset);
            std::size_t got = 0;
            while (got < buffer.size()) {
                const std::size_t size = file.read(buffer.data() + got, buffer.size() - got);
                if (size == 0)
                    break;
                got += size;
            }
            return {buffer.data(), got};
        }

        rawFile_t file;
        std::string part, step;
        std::string out; // the memory of what was put out before, for the next piece
    };

    // A piece and its result, which waits for its turn.
    struct piece_t {
        std::string_view lines;    // its lines, as far as they are in its part of the file
        std::uint64_t start = 0;   // of these
        std::uint64_t partEnd = 0; // where the part ends; the last line may go on
        std::uint64_t line = 1;    // the number of the first one, where that is needed
        std::uint64_t lineCount = 0;
        std::unique_ptr<task_t> task;
        std::uint64_t last = 0; // where its last message ends
        std::string lineHead;   // in front of that one, when it goes on behind the piece
        splitCounts_t counts;
    };

    void work() {
        try {
            window_t window(name_, pieceSize_);
            while (true) {
                std::uint64_t number;
                {
                    const std::lock_guard lock(mutex_);
                    number = next_++;
                }
                if (number * pieceSize_ >= size_)
                    return;
                read(window, number);
            }
        } catch (...) {
            const std::lock_guard lock(mutex_);
            failure_ = failure_ ? failure_ : std::current_exception();
            changed_.notify_all();
        }
    }

    void read(window_t &window, std::uint64_t number) {
        piece_t piece = cut(window, number);
        scan(window, piece, 0);

        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return failure_ || turn_ == number; });
        if (failure_)
            return;
        if (covered_ > piece.start) // the message in front goes on into this piece
            scan(window, piece, static_cast<std::size_t>(covered_ - piece.start));
        if (piece.last > covered_) {
            covered_ = piece.last;
            lineHead_ = std::move(piece.lineHead);
        }
        counts_.found += piece.counts.found;
        counts_.taken += piece.counts.taken;
        if (!task_.needsLines()) {
            piece.task->linesInFront = lines_;
            piece.counts.passedOver.line += lines_;
            lines_ += piece.lineCount;
        }
        counts_.passedOver.join(piece.counts.passedOver);
        task_.join(*piece.task);
        output_(piece.task->out, std::min(size_, (number + 1) * pieceSize_));
        window.out.swap(piece.task->out);
        ++turn_;
        changed_.notify_all();
    }

    // Reads a piece, and finds the lines that begin in it.
    piece_t cut(window_t &window, std::uint64_t number) {
        const std::uint64_t from = number * pieceSize_, before = from == 0 ? 0 : from - 1;
        std::string_view part = window.read(window.part, before);
        part = part.substr(0, static_cast<std::size_t>(from + pieceSize_ - before));
        std::size_t first = 0;
        if (from == 0)
            first = part.size() - inspect::withoutByteOrderMark(part).size();
        else
            first = std::min(part.find('\n'), part.size() - 1) + 1;

        piece_t piece;
        piece.lines = part.substr(first);
        piece.start = before + first;
        piece.partEnd = before + part.size();
        if (task_.needsLines())
            takeNumber(piece, number);
        return piece;
    }

    // Waits for the number of the first line, which is known once all pieces before it have counted theirs.
    void takeNumber(piece_t &piece, std::uint64_t number) {
        const std::uint64_t count = linesOf(piece);
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return failure_ || counted_ == number; });
        piece.line = lines_ + 1;
        lines_ += count;
        ++counted_;
        changed_.notify_all();
    }

    // How many there are, with the one that goes on behind the part.
    static std::uint64_t linesOf(const piece_t &piece) {
        const bool goesOn = !piece.lines.empty() && !piece.lines.ends_with('\n');
        return inspect::countLines(piece.lines) + (goesOn ? 1 : 0);
    }

    // Scans a piece's lines; `skipped` bytes of them belong to the message of the piece before.
    void scan(window_t &window, piece_t &piece, std::size_t skipped) const {
        piece.task = task_.fork();
        piece.task->out.swap(window.out);
        piece.task->out.clear();
        piece.counts = {};
        piece.last = 0;
        if (piece.lines.empty())
            return;
        const std::string_view front = piece.lines.substr(0, skipped);
        const std::uint64_t start = piece.start + skipped;
        itemSink_t sink(name_, filter_, *piece.task);
        inspect::logScanner_t scanner({start, piece.line + inspect::countLines(front),
                                       skipped - (front.rfind('\n') + 1) + 1, // npos is in front of 0
                                       skipped > 0 ? lineHead_ : std::string(), skipped > 0});
        scanner.feed(piece.lines.substr(front.size()), sink);
        // The last line may go on behind the part, and its last message behind that.
        std::uint64_t offset = piece.partEnd, end = piece.lines.ends_with('\n') ? offset : UINT64_MAX;
        while (offset < size_ && scanner.decided() < end) {
            std::string_view step = window.read(window.step, offset);
            if (end == UINT64_MAX) {
                const std::size_t place = step.find('\n');
                step = step.substr(0, place == std::string_view::npos ? place : place + 1);
                end = place == std::string_view::npos ? end : offset + step.size();
            }
            if (step.empty())
                break;
            sink.endAt(end);
            const std::uint64_t before = std::min<std::uint64_t>(step.size(), start - std::min(start, offset));
            scanner.feed(step.substr(static_cast<std::size_t>(before)), sink);
            offset += step.size();
        }
        if (offset >= size_)
            scanner.finish(sink);
        if (!task_.needsLines()) // the scanner has counted them, unless it had to go on behind them
            piece.lineCount = scanner.decided() == end ? scanner.line() - piece.line : linesOf(piece);
        piece.counts = {sink.found(), sink.taken(), sink.passedOver()};
        piece.last = sink.lastEnd();
        piece.lineHead = sink.overhang();
    }

    const std::string &name_;
    const std::uint64_t size_;
    const std::size_t pieceSize_;
    const filter_t &filter_;
    task_t &task_;
    const std::function<void(std::string &, std::uint64_t)> &output_;

    std::mutex mutex_; // of all below
    std::condition_variable changed_;
    std::exception_ptr failure_;
    std::uint64_t next_ = 0, counted_ = 0, turn_ = 0;
    std::uint64_t lines_ = 0, covered_ = 0;
    std::string lineHead_; // of what is covered
    splitCounts_t counts_;
};

} // namespace

splitCounts_t splitFile(const std::string &name, unsigned jobs, const filter_t &filter, task_t &task,
                        const std::function<void(std::string &, std::uint64_t)> &output, std::size_t pieceSize) {
    return split_t(name, filter, task, output, pieceSize).run(jobs);
}

} // namespace vek::tool
