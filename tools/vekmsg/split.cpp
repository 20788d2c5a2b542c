// --jobs: a plain file in pieces, a piece a thread, the output in the file's order.
//
// A piece is the lines that begin in its part of the file. Its scanner starts at a line; a message that the piece
// before it carries on into it (one that was wrapped in lines) shows when its turn comes, and it is then read again
// from there.
#include "tools/vekmsg/problem.hpp"
#include "tools/vekmsg/reader.hpp"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace vek::tool {

namespace {

constexpr std::uint64_t pieceSize = std::uint64_t{1} << 20;
constexpr std::size_t stepSize = std::size_t{1} << 16;

class split_t {
public:
    split_t(const std::string &name, const filter_t &filter, task_t &task,
            const std::function<void(std::string &, std::uint64_t)> &output)
        : name_(name), size_(rawFile_t(name).identity().size), filter_(filter), task_(task), output_(output) {}

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
    // What a thread reads its pieces with.
    struct window_t {
        explicit window_t(const std::string &name) : file(name), block(pieceSize, '\0') {}

        // Up to `room` bytes from an offset on.
        std::string_view at(std::uint64_t offset, std::size_t room) {
            file.seek(offset);
            std::size_t got = 0;
            while (got < room) {
                const std::size_t size = file.read(block.data() + got, room - got);
                if (size == 0)
                    break;
                got += size;
            }
            return {block.data(), got};
        }

        rawFile_t file;
        std::string block;
    };

    // A piece's result, which waits for its turn.
    struct piece_t {
        std::unique_ptr<task_t> task;
        std::uint64_t start = 0, end = 0;  // of its lines
        std::uint64_t first = 0, last = 0; // where its first message begins and its last one ends
        std::uint64_t lines = 0;
        splitCounts_t counts;
    };

    void work() {
        try {
            window_t window(name_);
            while (true) {
                std::uint64_t number;
                {
                    const std::lock_guard lock(mutex_);
                    number = next_++;
                }
                if (number * pieceSize >= size_)
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
        piece_t piece;
        const std::uint64_t from = number * pieceSize;
        piece.start = firstLine(window, from);
        const bool isEmpty = piece.start >= std::min(size_, from + pieceSize);
        piece.end = isEmpty ? piece.start : lineBehind(window, from + pieceSize - 1, size_);
        const std::uint64_t line = lineOf(window, piece, number);
        scan(window, piece, piece.start, line);

        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return failure_ || turn_ == number; });
        if (failure_)
            return;
        if (covered_ > piece.first) // the message in front goes on into this piece
            scan(window, piece, covered_, line + linesIn(window, piece.start, covered_));
        covered_ = std::max(covered_, piece.last);
        counts_.found += piece.counts.found;
        counts_.taken += piece.counts.taken;
        task_.join(*piece.task);
        output_(piece.task->out, std::min(size_, from + pieceSize));
        ++turn_;
        changed_.notify_all();
    }

    // Where the first line that begins in a piece starts; behind the piece when none does.
    std::uint64_t firstLine(window_t &window, std::uint64_t from) const {
        if (from == 0)
            return window.at(0, 3) == "\xef\xbb\xbf" ? 3 : 0;
        return lineBehind(window, from - 1, from + pieceSize - 1);
    }

    // The offset behind the first line end in a stretch; where that ends, or the file, when there is none.
    std::uint64_t lineBehind(window_t &window, std::uint64_t from, std::uint64_t to) const {
        for (const std::uint64_t end = std::min(to, size_); from < end;) {
            const std::string_view bytes = window.at(from, static_cast<std::size_t>(std::min(end - from, pieceSize)));
            const std::size_t place = bytes.find('\n');
            if (place != std::string_view::npos)
                return from + place + 1;
            if (bytes.empty())
                break;
            from += bytes.size();
        }
        return to >= size_ ? size_ : to + 1;
    }

    static std::uint64_t linesIn(window_t &window, std::uint64_t from, std::uint64_t to) {
        std::uint64_t lines = 0;
        while (from < to) {
            const std::string_view bytes = window.at(from, static_cast<std::size_t>(std::min(to - from, pieceSize)));
            if (bytes.empty())
                break;
            lines += static_cast<std::uint64_t>(std::count(bytes.begin(), bytes.end(), '\n'));
            from += bytes.size();
        }
        return lines;
    }

    // The number of a piece's first line: known once all pieces before it have counted their lines.
    std::uint64_t lineOf(window_t &window, const piece_t &piece, std::uint64_t number) {
        const std::uint64_t from = number * pieceSize;
        const std::uint64_t lines = linesIn(window, from, std::min(size_, from + pieceSize));
        const std::uint64_t inFront = linesIn(window, from, std::min({piece.start, from + pieceSize, size_}));
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return failure_ || counted_ == number; });
        const std::uint64_t line = lines_ + 1 + inFront;
        lines_ += lines;
        ++counted_;
        changed_.notify_all();
        return line;
    }

    void scan(window_t &window, piece_t &piece, std::uint64_t from, std::uint64_t line) const {
        piece.task = task_.fork();
        itemSink_t sink(name_, filter_, *piece.task);
        sink.endAt(piece.end);
        inspect::logScanner_t scanner(from, line);
        std::uint64_t offset = from, mark = 0;
        // Behind the piece's lines only as far as its last message may go on.
        const auto mayGoOn = [&] {
            return mark >= std::max<std::uint64_t>(sink.lastEnd(), 1) && !sink.isBehindEnd() &&
                   offset < piece.end + inspect::logScanner_t::largestMessage;
        };
        while (from < piece.end && offset < size_ && (offset < piece.end || mayGoOn())) {
            const bool isInside = offset < piece.end;
            const std::string_view bytes = window.at(
                offset, isInside ? static_cast<std::size_t>(std::min(pieceSize, piece.end - offset)) : stepSize);
            if (bytes.empty())
                break;
            if (const std::size_t place = bytes.rfind("@@"); isInside && place != std::string_view::npos)
                mark = offset + place + 1; // 0: none
            scanner.feed(bytes, sink);
            offset += bytes.size();
        }
        if (from < piece.end && offset >= size_)
            scanner.finish(sink);
        piece.counts = {sink.found(), sink.taken()};
        piece.first = sink.firstOffset();
        piece.last = sink.lastEnd();
    }

    const std::string name_;
    const std::uint64_t size_;
    const filter_t &filter_;
    task_t &task_;
    const std::function<void(std::string &, std::uint64_t)> &output_;

    std::mutex mutex_; // of all below
    std::condition_variable changed_;
    std::exception_ptr failure_;
    std::uint64_t next_ = 0, counted_ = 0, turn_ = 0;
    std::uint64_t lines_ = 0, covered_ = 0;
    splitCounts_t counts_;
};

} // namespace

splitCounts_t splitFile(const std::string &name, unsigned jobs, const filter_t &filter, task_t &task,
                        const std::function<void(std::string &, std::uint64_t)> &output) {
    return split_t(name, filter, task, output).run(jobs);
}

} // namespace vek::tool
