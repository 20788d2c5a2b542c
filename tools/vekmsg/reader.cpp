#include "tools/vekmsg/reader.hpp"

#include "tools/vekmsg/problem.hpp"

#include <algorithm>

namespace vek::tool {

using inspect::form_t;

namespace {

constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
constexpr std::string_view whiteSpace = " \t\r\n\v\f";
constexpr std::size_t flushSize = std::size_t{1} << 16;

std::string_view trimmed(std::string_view text) {
    const std::size_t start = text.find_first_not_of(whiteSpace);
    return start == std::string_view::npos ? std::string_view()
                                           : text.substr(start, text.find_last_not_of(whiteSpace) + 1 - start);
}

// Whether a text in which no message was found is meant as one: its start is damaged, or it is a body alone.
bool isMeantAsMessage(std::string_view text) {
    text = trimmed(text);
    return text.size() > 2 && (text.front() == '@' || text.front() == '{' || text.ends_with("!!"));
}

// Where the last of several messages in a form begins, so that what stands before is complete; 0 when there is one.
std::size_t lastStart(std::string_view text, form_t form) {
    for (std::size_t at = text.rfind('\n'); at != std::string_view::npos && at > 0; at = text.rfind('\n', at - 1)) {
        const std::string_view rest = text.substr(at + 1);
        const bool isStart = form == form_t::json   ? rest.starts_with('{')
                             : form == form_t::flat ? rest.starts_with("@id")
                                                    : !rest.empty() && rest.find_first_of(" \t\r\n#") != 0;
        if (isStart)
            return at + 1;
    }
    return 0;
}

} // namespace

std::string item_t::place() const {
    return std::string(file) + ":" + std::to_string(line) + ":" + std::to_string(column);
}

void itemSink_t::message(const inspect::foundMessage_t &found) {
    item_t item;
    item.offset = found.offset;
    item.line = found.line;
    item.column = found.column;
    item.text = found.text;
    item.stretch = found.text.size();
    item.before = found.before;
    item.lineHead = found.lineHead;
    item.isLengthRight = found.isLengthRight;
    message(item);
}

void itemSink_t::message(item_t &item) {
    if (item.offset >= end_ || isFull())
        return;
    ++found_;
    firstOffset_ = std::min(firstOffset_, item.offset);
    lastEnd_ = item.offset + item.stretch;
    item.file = file_;
    item.form = form;
    item.whole = whole.empty() ? item.text : whole;
    item.lazy = &lazy_;
    lazy_.reset(item.text);
    if (!filter_.passes(item))
        return;
    ++taken_;
    task_.take(item);
}

void reader_t::flush() {
    if (task_.out.empty())
        return;
    if (isTerminal(1))
        progress_.clear();
    writeAll(1, task_.out);
    task_.out.clear();
}

void reader_t::count(const itemSink_t &sink) {
    found_ += sink.found();
    taken_ += sink.taken();
}

void reader_t::run() {
    if (options_.follows)
        return follow();
    for (const std::string &name : options_.files) {
        if (most() == 0)
            break;
        try {
            readInput(name);
        } catch (const usageError_t &error) {
            flush();
            progress_.clear();
            complain(error.what());
            status_ = exitUsage;
        }
        flush();
    }
    progress_.clear();
}

exitCode_t reader_t::statusWithMessages() const {
    if (status_ != exitFine || taken_ > 0)
        return status_;
    const std::string files = options_.files.size() > 1 ? "these files" : options_.files.front() == "-"
                                                              ? std::string("standard input")
                                                              : options_.files.front();
    if (found_ > 0)
        complain("none of the " + std::to_string(found_) + " messages in " + files +
                 " is one that you asked for; vekmsg summary shows which there are");
    else
        complain("no message in " + files + "; a message begins with @@ and its number");
    return exitDifferences;
}

void reader_t::readInput(const std::string &name) {
    const std::unique_ptr<source_t> source = openSource(name);
    progress_.start(name, source->size());
    std::string_view first = source->next();
    const std::uint64_t skipped = first.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
    first.remove_prefix(skipped);

    itemSink_t sink(name, filter_, task_, most());
    const form_t form = inspect::formOf(first);
    if (form == form_t::show || form == form_t::json || form == form_t::flat) {
        sink.form = form;
        readForms(*source, sink, name, first, skipped);
    } else if (options_.jobs > 1 && !options_.head && source->isPlain() && source->size() > first.size() + skipped &&
               task_.fork() != nullptr) {
        return readSplit(name);
    } else {
        scan(*source, sink, first, skipped);
    }
    count(sink);
}

void reader_t::scan(source_t &source, itemSink_t &sink, std::string_view first, std::uint64_t skipped) {
    const std::string start(first);
    const bool isAll = source.size() == skipped + first.size() || (source.size() == 0 && source.isShort());
    if (isAll && start.starts_with("@@") && source.size() > 0) {
        // A file of one message: what stands behind it is part of what a host would read.
        struct : inspect::messageSink_t {
            void message(const inspect::foundMessage_t &found) override {
                end = found.offset + found.text.size();
                ++count;
            }
            std::uint64_t end = 0, count = 0;
        } alone;
        inspect::logScanner_t scanner;
        scanner.feed(start, alone);
        scanner.finish(alone);
        if (alone.count == 1 && trimmed(std::string_view(start).substr(alone.end)).empty()) {
            sink.form = form_t::message;
            sink.whole = start;
        }
    }
    inspect::logScanner_t scanner(skipped);
    std::uint64_t size = 0;
    for (std::string_view block = start; !block.empty() && !sink.isFull(); block = source.next()) {
        size += block.size();
        scanner.feed(block, sink);
        if (task_.out.size() >= flushSize || source.isShort())
            flush();
        progress_.update(source.taken());
    }
    scanner.finish(sink);
    if (sink.found() == 0 && size == start.size() && isMeantAsMessage(start)) {
        item_t item;
        item.text = trimmed(start);
        item.offset = skipped + static_cast<std::size_t>(item.text.data() - start.data());
        item.line = 1 + static_cast<std::uint64_t>(
                            std::count(start.data(), item.text.data(), '\n'));
        item.stretch = item.text.size();
        sink.message(item);
    }
}

// Reads the messages in a form that a text holds completely; returns how much of it that was.
std::size_t reader_t::readPieces(std::string_view text, itemSink_t &sink, item_t &position) {
    const char *done = text.data();
    for (const std::string_view piece : inspect::splitForms(text, sink.form)) {
        if (sink.isFull())
            break;
        position.line += static_cast<std::uint64_t>(std::count(done, piece.data(), '\n'));
        position.offset += static_cast<std::uint64_t>(piece.data() - done);
        done = piece.data();
        const inspect::formResult_t result = sink.form == form_t::json   ? inspect::readJson(piece)
                                             : sink.form == form_t::flat ? inspect::readFlat(piece)
                                                                         : inspect::readShow(piece);
        item_t item = position;
        if (result.isRead()) {
            item.text = result.text;
            item.stretch = piece.size();
            sink.message(item);
            continue;
        }
        const std::string_view before = piece.substr(0, result.offset);
        item.line += static_cast<std::uint64_t>(std::count(before.begin(), before.end(), '\n'));
        item.column = before.size() - (before.rfind('\n') + 1) + 1;
        flush();
        complain(item.place() + ": error: " + result.error);
        status_ = std::max(status_, exitDifferences);
    }
    position.line += static_cast<std::uint64_t>(std::count(done, text.data() + text.size(), '\n'));
    position.offset += static_cast<std::uint64_t>(text.data() + text.size() - done);
    return text.size();
}

void reader_t::readForms(source_t &source, itemSink_t &sink, std::string_view file, std::string_view first,
                         std::uint64_t skipped) {
    std::string text;
    item_t position;
    position.offset = skipped;
    position.file = file;
    for (std::string_view block = first; !block.empty() && !sink.isFull(); block = source.next()) {
        text += block;
        text.erase(0, readPieces(std::string_view(text).substr(0, lastStart(text, sink.form)), sink, position));
        if (task_.out.size() >= flushSize || source.isShort())
            flush();
        progress_.update(source.taken());
    }
    readPieces(text, sink, position);
}

void reader_t::readSplit(const std::string &name) {
    const splitCounts_t counts =
        splitFile(name, options_.jobs, filter_, task_, [this](std::string &out, std::uint64_t done) {
            task_.out.swap(out);
            flush();
            progress_.update(done);
        });
    found_ += counts.found;
    taken_ += counts.taken;
}

// Takes what has come to a followed file; false when nothing had.
bool reader_t::takeNews(followed_t &one) {
    using enum followedFile_t::state_t;
    std::string_view block;
    const followedFile_t::state_t state = one.file.next(block);
    one.sink.limit(one.sink.taken() + most());
    if (state == bytes)
        one.scanner.feed(block, one.sink);
    else if (state == rotated || state == ended)
        one.scanner.finish(one.sink);
    if (state == rotated)
        one.scanner = inspect::logScanner_t();
    one.isEnded = state == ended;
    return state != still;
}

void reader_t::follow() {
    std::vector<std::unique_ptr<followed_t>> all;
    for (const std::string &name : options_.files)
        all.push_back(std::make_unique<followed_t>(name, filter_, task_));

    constexpr unsigned pause = 20, stillRounds = 1000 / pause;
    for (unsigned still = 0; most() > 0 && !all.empty();) {
        bool isBusy = false;
        for (const auto &one : all) {
            const std::uint64_t found = one->sink.found(), taken = one->sink.taken();
            isBusy |= takeNews(*one);
            if (still == stillRounds) // a message that was cut off will not go on
                one->scanner.finish(one->sink);
            found_ += one->sink.found() - found;
            taken_ += one->sink.taken() - taken;
        }
        flush();
        std::erase_if(all, [](const auto &one) { return one->isEnded; });
        still = isBusy ? 0 : still + 1;
        if (!isBusy)
            sleepMilliseconds(pause);
    }
}

} // namespace vek::tool
