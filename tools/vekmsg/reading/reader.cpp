#include "tools/vekmsg/reading/reader.hpp"

#include "tools/vekmsg/reading/following.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/forms/growingLog.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>

namespace vek::tool {

using inspect::form_t;

namespace {

constexpr std::size_t flushSize = std::size_t{1} << 16;

// Of a message, also of one that was passed over.
std::string placeOf(const auto &message) {
    return inspect::joined({message.file, ":", std::to_string(message.line), ":", std::to_string(message.column)});
}

void complainOf(item_t item, std::string_view form, const inspect::refusal_t &refusal) {
    const std::string_view before = form.substr(0, refusal.offset);
    item.line += static_cast<std::uint64_t>(std::count(before.begin(), before.end(), '\n'));
    item.column = before.size() - (before.rfind('\n') + 1) + 1;
    complain(item.place() + ": error: " + refusal.words);
}

} // namespace

std::string item_t::place() const {
    return placeOf(*this);
}

void passedOver_t::join(const passedOver_t &later) {
    if (count == 0)
        *this = later;
    else
        count += later.count;
    largest = std::max(largest, later.largest);
}

void itemSink_t::message(const inspect::foundMessage_t &found) {
    item_t item;
    static_cast<inspect::foundMessage_t &>(item) = found;
    item.stretch = found.text.size();
    message(item);
}

void itemSink_t::message(item_t &item) {
    if (item.offset >= end_ || isFull())
        return;
    ++found_;
    lastEnd_ = item.offset + item.stretch;
    if (lastEnd_ > end_)
        overhang_ = item.lineHead;
    item.file = file_;
    if (const std::size_t size = item.text.size() + 1; size > filter_.longest()) {
        passedOver_.join({1, item.file, item.line, item.column, size, size});
        return;
    }
    item.form = form;
    item.mayGrow = mayGrow;
    item.whole = item.text;
    if (!whole.empty()) { // from the file's first byte
        item.whole = whole;
        item.offset = 0;
        item.line = item.column = 1;
        item.isDamaged = isEnvelopeDamaged(whole);
    }
    item.lazy = &lazy_;
    lazy_.reset(item.whole);
    if (isFiltered_ && !filter_.passes(item))
        return;
    ++taken_;
    task_.take(item);
}

void reader_t::flush() {
    if (task_.out.empty())
        return;
    if (isTerminal(1))
        progress_.clear();
    writeText(1, task_.out, task_.hasColours());
    task_.out.clear();
}

void reader_t::run() {
    if (options_.follows)
        return follow();
    for (const std::string &name : options_.files) {
        if (most() == 0)
            break;
        readAll(name);
        flush();
    }
    progress_.clear();
}

exitCode_t reader_t::statusWithMessages() const {
    if (status_ != exitFine || taken_ > 0)
        return status_;
    const std::string files = options_.files.size() > 1       ? "these files"
                              : options_.files.front() == "-" ? std::string("standard input")
                                                              : options_.files.front();
    if (found_ > 0)
        complain((found_ == 1 ? "the message" : "none of the " + std::to_string(found_) + " messages") + " in " +
                 files + " is " + (found_ == 1 ? "not " : "") +
                 "one that you asked for; vekmsg summary shows which there are");
    else
        complain(inspect::joined({"no message in ", files, "; ",
                                  encoding_.empty() ? "a message begins with @@ and its number" : "those there ",
                                  encoding_}));
    return exitDifferences;
}

void reader_t::fail(const usageError_t &error) {
    flush();
    progress_.clear();
    complain(error.what());
    status_ = exitUsage;
    input_.reset();
}

// Behind what was put out of the input.
void reader_t::tell(const passedOver_t &passedOver) {
    if (passedOver.count == 0)
        return;
    flush();
    progress_.clear();
    const std::string more = passedOver.count == 1 ? "" : ", and " + std::to_string(passedOver.count - 1) + " more";
    complain(placeOf(passedOver) + ": a message of " + std::to_string(passedOver.size) + " characters was passed over" +
             more + "; --longest " + std::to_string(passedOver.largest) + " reads " + (more.empty() ? "it" : "them"));
    status_ = std::max(status_, exitDifferences);
}

void reader_t::readAll(const std::string &name) {
    try {
        begin(name);
        const input_t &input = *input_;
        const unsigned threads = options_.threads(input.source->size());
        const bool isSplit = threads > 1 && name != "-" && !options_.head && !input.isForm && !input.isDump &&
                             input.source->isPlain() && input.source->size() > input.start.size() &&
                             task_.fork() != nullptr;
        if (isSplit)
            return readSplit(name, threads);
        while (takeBlock()) {
        }
        end();
    } catch (const usageError_t &error) {
        fail(error);
    }
}

bool reader_t::open() {
    try {
        begin(options_.files.front());
        return true;
    } catch (const usageError_t &error) {
        fail(error);
        return false;
    }
}

bool reader_t::step() {
    try {
        if (takeBlock())
            return true;
        end();
    } catch (const usageError_t &error) {
        fail(error);
    }
    return false;
}

// Opens an input and looks at its first block.
void reader_t::begin(const std::string &name) {
    input_ = std::make_unique<input_t>(name, filter_, task_, most());
    input_t &input = *input_;
    progress_.start(name, input.source->size());
    input.start = input.source->next();
    const std::size_t skipped = input.start.size() - inspect::withoutByteOrderMark(input.start).size();
    input.start.erase(0, skipped);
    input.position.file = name;
    input.position.offset = skipped;
    input.scanner = inspect::logScanner_t(skipped);
    const form_t form = inspect::formOf(input.start);
    input.isForm = inspect::isForm(form);
    input.isDump = inspect::isDump(input.start);
    if (input.isForm)
        input.sink.form = form;
    else if (input.source->isAllAtOnce())
        lookForWhole(skipped);
}

// In a file of one message, what stands around it is part of what a host would read.
void reader_t::lookForWhole(std::size_t skipped) {
    struct : inspect::messageSink_t {
        void message(const inspect::foundMessage_t &found) override {
            start = static_cast<std::size_t>(found.offset);
            end = start + found.text.size();
            ++count;
        }
        std::size_t start = 0, end = 0, count = 0;
    } alone;
    inspect::logScanner_t scanner;
    scanner.feed(input_->start, alone);
    scanner.finish(alone);
    const std::string_view text = input_->start;
    if (alone.count != 1 || !inspect::isMerelyAround(text.substr(0, alone.start)) ||
        !inspect::isMerelyAround(text.substr(alone.end)))
        return;
    input_->sink.form = form_t::message;
    input_->whole = inspect::joined({inspect::byteOrderMark.substr(0, skipped), text});
    input_->sink.whole = input_->whole;
}

// Takes the next block of the input; false when there is none.
bool reader_t::takeBlock() {
    input_t &input = *input_;
    const std::string_view block = input.size == 0 ? std::string_view(input.start) : input.source->next();
    if (block.empty() || input.sink.isFull() || input.isDump)
        return false;
    input.size += block.size();
    if (input.isForm) {
        input.pending += block;
        takeForms(false);
    } else {
        input.scanner.feed(block, input.sink);
    }
    if (task_.out.size() >= flushSize || input.source->isShort())
        flush();
    progress_.update(input.source->taken());
    return true;
}

void reader_t::end() {
    input_->sink.mayGrow = !input_->isForm && input_->source->isPlain() && input_->source->size() > 0;
    if (input_->isForm)
        takeForms(true);
    else
        input_->scanner.finish(input_->sink);
    lookForEncoding(input_->sink.found());
    takeMeant();
    found_ += input_->sink.found();
    taken_ += input_->sink.taken();
    tell(input_->sink.passedOver());
    input_.reset();
}

void reader_t::lookForEncoding(std::uint64_t found) {
    if (found == 0 && encoding_.empty())
        encoding_ = inspect::encodingIn(input_->start);
}

// A small input in which no message was found may be one whose start is damaged.
void reader_t::takeMeant() {
    input_t &input = *input_;
    if (input.isForm || input.sink.found() > 0 || !encoding_.empty() || input.size != input.start.size() ||
        !inspect::isMeantAsMessage(input.start))
        return;
    item_t item = input.position;
    item.text = inspect::trimmed(input.start);
    item.head = readEnvelopeHead(item.text);
    item.stretch = item.text.size();
    const auto before = static_cast<std::size_t>(item.text.data() - input.start.data());
    item.offset += before;
    item.line += static_cast<std::uint64_t>(
        std::count(input.start.begin(), input.start.begin() + static_cast<std::ptrdiff_t>(before), '\n'));
    item.isDamaged = true;
    input.sink.form = form_t::message;
    input.sink.message(item);
}

// Takes the messages in a form that are complete: the last one may go on.
void reader_t::takeForms(bool isLast) {
    input_t &input = *input_;
    std::vector<std::string_view> pieces = inspect::splitForms(input.pending, input.sink.form);
    std::string_view text = input.pending;
    if (!isLast) {
        text = pieces.empty() ? std::string_view()
                              : text.substr(0, static_cast<std::size_t>(pieces.back().data() - text.data()));
        pieces.resize(std::max<std::size_t>(pieces.size(), 1) - 1);
    }
    const char *done = input.pending.data();
    const auto moveTo = [&](const char *place) {
        input.position.line += static_cast<std::uint64_t>(std::count(done, place, '\n'));
        input.position.offset += static_cast<std::uint64_t>(place - done);
        done = place;
    };
    for (const std::string_view piece : pieces) {
        if (input.sink.isFull())
            break;
        moveTo(piece.data());
        takePiece(piece);
    }
    moveTo(input.pending.data() + text.size());
    input.pending.erase(0, text.size());
}

void reader_t::takePiece(std::string_view piece) {
    item_t item = input_->position;
    const inspect::formResult_t result = inspect::readForm(piece, input_->sink.form, options_.forms);
    if (result.isRead()) {
        item.text = result.text;
        item.head = readEnvelopeHead(item.text);
        item.isDamaged = isEnvelopeDamaged(item.text);
        item.isRaw = result.isRaw;
        item.stretch = piece.size();
        input_->sink.message(item);
        return;
    }
    flush();
    complainOf(item, piece, {result.error, result.offset});
    for (const inspect::refusal_t &refusal : result.further)
        complainOf(item, piece, refusal);
    status_ = std::max(status_, exitDifferences);
}

void reader_t::readSplit(const std::string &name, unsigned threads) {
    flush();
    const splitCounts_t counts = splitFile(name, threads, filter_, task_, [this](std::string &out, std::uint64_t done) {
        task_.out.swap(out);
        flush();
        progress_.update(done);
    });
    lookForEncoding(counts.found);
    found_ += counts.found;
    taken_ += counts.taken;
    tell(counts.passedOver);
    input_.reset();
}

// A followed log, of which a message is taken as soon as it is whole.
class reader_t::followed_t final : public followedLog_t {
public:
    followed_t(const std::string &name, reader_t &reader)
        : followedLog_t(name), reader_(reader), sink_(this->name(), reader.filter_, reader.task_) {}

private:
    void take(std::string_view block) override { feed(log_.take(block)); }
    void feed(std::string_view block) {
        count([&] { scanner_.feed(block, sink_); });
    }
    void end(bool isRotated) override {
        feed(log_.finish());
        standStill();
        if (isRotated)
            scanner_ = inspect::logScanner_t();
    }
    void standStill() override {
        feed(log_.standStill());
        count([&] { scanner_.finish(sink_); });
    }
    void fail(const usageError_t &error) override { reader_.fail(error); }

    template <typename scan_t>
    void count(const scan_t &scan) {
        const std::uint64_t found = sink_.found(), taken = sink_.taken(), passedOver = sink_.passedOver().count;
        sink_.limit(reader_.options_.head ? taken + reader_.most() : UINT64_MAX);
        scan();
        reader_.found_ += sink_.found() - found;
        reader_.taken_ += sink_.taken() - taken;
        if (passedOver == 0)
            reader_.tell(sink_.passedOver());
    }

    reader_t &reader_;
    itemSink_t sink_;
    inspect::growingLog_t log_;
    inspect::logScanner_t scanner_;
};

void reader_t::follow() {
    std::vector<std::unique_ptr<followedLog_t>> logs;
    for (const std::string &name : options_.files)
        logs.push_back(std::make_unique<followed_t>(name, *this));
    if (most() == 0)
        return;
    tool::follow(std::move(logs), [this](bool isBusy) {
        flush();
        if (!isBusy)
            task_.pause();
        return most() > 0;
    });
}

} // namespace vek::tool
