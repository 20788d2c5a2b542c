#include "tools/vekmsg/load/logLoad.hpp"

#include "tools/vekmsg/load/namePattern.hpp"
#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/archive/lineFront.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <unistd.h>

namespace vek::tool {

namespace {

using inspect::archivedLog_t;

// Something of it is loaded, as its entry says; its rows come earlier.
bool isBegun(const archivedLog_t &log) {
    return log.position.offset > 0 || !log.tail.empty();
}

// As names stand in an archive.
std::string kept(std::string_view name) {
    std::string room;
    return std::string(inspect::wellFormed(name, room));
}

std::string plainName(std::filesystem::path path) {
    if (path.extension() == ".gz" || path.extension() == ".zst")
        path.replace_extension();
    return path.string();
}

// The one spelling of a file's name, packed or not.
std::string plainPath(const std::string &name) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::weakly_canonical(name, error);
    return plainName(error ? std::filesystem::path(name) : path);
}

// How much two logs have in common at their beginnings when one of them is the other's beginning; else 0.
std::size_t commonBeginning(std::string_view one, std::string_view other) {
    const std::size_t size = std::min(one.size(), other.size());
    return one.substr(0, size) == other.substr(0, size) ? size : 0;
}

// The marks of the messages that a log begins with.
inspect::markMaker_t firstMarks(const timeFinder_t &times, std::string_view first) {
    struct ahead_t final : inspect::messageSink_t {
        explicit ahead_t(const timeFinder_t &finder) : times(finder) {}
        void message(const inspect::foundMessage_t &found) override {
            maker.add(found.text, times.in(found.lineHead)); // a few more than asked for do no harm
        }
        const timeFinder_t &times;
        inspect::markMaker_t maker;
    } ahead(times);
    inspect::logScanner_t scanner;
    constexpr std::size_t piece = 4096;
    for (; !first.empty() && ahead.maker.count() < inspect::markMaker_t::first;
         first.remove_prefix(std::min(first.size(), piece)))
        scanner.feed(first.substr(0, piece), ahead);
    return std::move(ahead.maker);
}

bool hasMessage(std::string_view text) {
    struct found_t final : inspect::messageSink_t {
        void message(const inspect::foundMessage_t &) override { isThere = true; }
        bool isThere = false;
    } found;
    inspect::logScanner_t scanner;
    scanner.feed(text, found);
    scanner.finish(found);
    return found.isThere;
}

std::string nowInWords() {
    using namespace std::chrono;
    inspect::logTime_t now{duration_cast<microseconds>(system_clock::now().time_since_epoch()).count(), true, true};
    now.microseconds -= now.microsecond();
    return now.inWords();
}

std::string userAndMachine() {
    char machine[256] = "";
    gethostname(machine, sizeof machine - 1);
    return environment("USER").value_or(environment("LOGNAME").value_or("")) + "@" + machine;
}

} // namespace

logLoad_t::logLoad_t(archive_t &archive, const timeFinder_t &times, const loadOptions_t &options,
                     const std::string &file)
    : archive_(archive), times_(times), options_(options), file_(file), isNamed_(!options.source.source.empty()) {
    log_.name = kept(isNamed_ ? options.source.source : file);
}

std::string readBeginning(source_t &source) {
    std::string beginning;
    while (beginning.size() < archivedLog_t::firstBytes) {
        const std::string_view block = source.next();
        if (block.empty())
            break;
        beginning += block;
    }
    return beginning;
}

void logLoad_t::takeHead(std::string_view first) {
    nameBy(options_.pattern, plainName(log_.name), log_);
    for (const auto &[said, own] :
         {std::pair(&options_.device, &log_.device), {&options_.site, &log_.site}, {&options_.host, &log_.host}})
        if (!said->empty())
            *own = kept(*said);
    log_.first = first.substr(0, archivedLog_t::firstBytes);
}

archive_t::coming_t logLoad_t::coming(std::string_view first, std::uint64_t size, bool isNew) {
    takeHead(first);
    archive_t::coming_t coming{log_, size, firstMarks(times_, first).marks, isNew};
    coming.log.isWhole = true;
    return coming;
}

void logLoad_t::begin(std::string_view first, bool isNew) {
    const std::string name = log_.name;
    takeHead(first);
    if (options_.isReplacing)
        return beginAnew(name);
    const bool isBesideOthers = !isNew && !find(name) && log_.number != 0;
    if (isBesideOthers)
        log_.number = 0;
    const bool isEntered = log_.number == 0;
    if (isEntered) {
        refuseDoubtful();
        refuseExtract(first);
        log_.isWhole = true;
    }
    archive_.enter(log_, isNew);
    if (!isNew && !isBegun(log_))
        refuseTwice(name);
    hasBegun_ = true;
    if (log_.name != name && plainPath(log_.name) != plainPath(name))
        complain(file_ + " is the log that was loaded as " + log_.name + "; it goes on there");
    else if (isBesideOthers && !isNamed_)
        complain(file_ + " is another log than the one that was loaded under this name; it is loaded beside it");
    scanner_ = inspect::logScanner_t(log_.position);
    marks_ = inspect::markMaker_t(log_.position.offset > 0);
    front_ = log_.behind;
    frontStart_ = log_.position.offset - std::min<std::uint64_t>(log_.position.offset, front_.size());
    lastText_.clear();
}

// As another log, beside what it was before: until it is whole that stays.
void logLoad_t::beginAnew(const std::string &name) {
    for (archivedLog_t &known : archive_.find(log_))
        if (const bool isNamedSo = isCalled(known, name); isSame(known, isNamedSo) || (isNamedSo && replaced_.empty()))
            replaced_.push_back(std::move(known));
    if (!replaced_.empty())
        for (const auto part : {&archivedLog_t::device, &archivedLog_t::site, &archivedLog_t::host})
            if ((log_.*part).empty())
                log_.*part = replaced_.front().*part;
    log_.isWhole = true;
    isOverlapTold_ = true;
    archive_.enter(log_, true);
    hasBegun_ = true;
    scanner_ = inspect::logScanner_t(log_.position);
}

void logLoad_t::forgetReplaced() {
    for (const archivedLog_t &log : replaced_)
        archive_.forget(log);
    replaced_.clear();
}

// Whether one of the archive's logs is this one, which then is taken for it. If not, the number of one that has the
// name is left.
bool logLoad_t::find(const std::string &name) {
    std::vector<archivedLog_t> same;
    for (archivedLog_t &known : archive_.find(log_)) {
        const bool isNamedSo = isCalled(known, name);
        if (isSame(known, isNamedSo))
            same.push_back(std::move(known));
        else if (isNamedSo && same.empty())
            log_.number = known.number;
        else if (isInDoubt(known))
            doubtful_ = known.name;
    }
    if (same.empty())
        return false;
    const auto begun = std::ranges::find_if(same, isBegun);
    archivedLog_t &known = begun != same.end() ? *begun : same[archive_.takeOver(same)];
    for (const archivedLog_t &one : same)
        numbers_.insert(one.number);
    if (known.first.size() < log_.first.size() && known.position.offset <= log_.first.size())
        known.first = log_.first;
    log_ = std::move(known);
    return true;
}

bool logLoad_t::isOfOtherOrigin(const archivedLog_t &known) const {
    const auto parts = {&archivedLog_t::device, &archivedLog_t::site, &archivedLog_t::host};
    return std::any_of(parts.begin(), parts.end(),
                       [&](const auto part) { return !(log_.*part).empty() && log_.*part != known.*part; });
}

// Whether all that is known of one of the two is what the other begins with, a message in it, and too little to be
// sure.
bool logLoad_t::isInDoubt(const archivedLog_t &known) const {
    const std::size_t common = commonBeginning(log_.first, known.first);
    const bool isLoaded = known.last.size > 0 || known.hasTail;
    return isLoaded && common > 0 && !isNamed_ && !isOfOtherOrigin(known) &&
           hasMessage(std::string_view(log_.first).substr(0, common));
}

void logLoad_t::refuseDoubtful() const {
    static constexpr std::string_view unknown = ", which is loaded, and that is too little to tell whether they are "
                                                "one log: nothing of it is loaded; if they are, "
                                                "load it with --source ";
    if (!doubtful_.empty())
        throw tooShort_t(inspect::joined(
            {file_, " begins as ", doubtful_, unknown, doubtful_, ", else with --source and a name of its own"}));
}

// Messages that are alike by chance, as those of two devices after their start, are fewer than this.
constexpr std::size_t manyAlike = 4;

// A log that begins like none, with messages of one that is loaded, is a part of it: nobody wants these twice.
void logLoad_t::refuseExtract(std::string_view first) {
    const inspect::markMaker_t ahead = firstMarks(times_, first);
    const archive_t::overlap_t other = archive_.overlap(log_, ahead.marks);
    if (other.count == 0 || other.count < std::min(manyAlike, ahead.chosen))
        return;
    isOverlapTold_ = true;
    const std::string words = file_ + " has messages of " + other.log.name + ", which is loaded";
    if (!isNamed_ && !isOfOtherOrigin(other.log))
        throw usageError_t(inspect::joined(
            {words, ": nothing of it is loaded; ",
             isCalled(other.log, log_.name) ? "--replace loads it in the place of the other; " : "",
             "if it has others too, take these alone, or load all of it as another log, with --source NAME"}));
    complain(words + "; they are there twice now");
}

void logLoad_t::saveMarks() {
    if (marks_.marks.empty())
        return;
    const archive_t::overlap_t other = archive_.mark(log_, marks_.marks);
    marks_.marks.clear();
    if (isOverlapTold_ || other.count < manyAlike)
        return;
    isOverlapTold_ = true;
    complain(file_ + " has messages of " + other.log.name + ", which is loaded; they are there twice now");
}

// Of two loaders that enter one log under two numbers each finds the other's, or the later one does. What they leave is
// taken over by the next one, which looks again for a third one.
void logLoad_t::refuseTwice(const std::string &name) {
    for (const archivedLog_t &known : archive_.find(log_))
        if (known.number != log_.number && !numbers_.contains(known.number) && isSame(known, isCalled(known, name)))
            throw usageError_t("another vekmsg has begun to load " + file_ + "; let it");
}

// Whether a log has the name, in any spelling of its path.
bool logLoad_t::isCalled(const archivedLog_t &known, const std::string &name) const {
    return known.name == name || (!isNamed_ && plainPath(known.name) == plainPath(name));
}

bool logLoad_t::isSame(const archivedLog_t &known, bool isNamedSo) const {
    const bool isElsewhere = isOfOtherOrigin(known) || (isNamed_ && !isNamedSo);
    const std::size_t common = commonBeginning(log_.first, known.first);
    return !isElsewhere &&
           (isNamedSo ? common > 0 : common >= archivedLog_t::tellingBytes && common == known.first.size());
}

std::uint64_t logLoad_t::needed() const {
    if (!hasBegun_ || at_ >= log_.position.offset || log_.last.size == 0)
        return at_;
    const archivedLog_t::message_t &last = log_.last;
    return at_ < last.offset + last.size ? std::max(at_, last.offset) : log_.position.offset;
}

// Goes over what was loaded before, whose last message must be there still. Returns what is new.
std::string_view logLoad_t::verify(std::string_view block) {
    const archivedLog_t::message_t &last = log_.last;
    const std::uint64_t loaded = log_.position.offset;
    const std::uint64_t start = std::max(at_, last.offset), end = std::min(at_ + block.size(), last.offset + last.size);
    if (start < end) {
        lastText_ += block.substr(static_cast<std::size_t>(start - at_), static_cast<std::size_t>(end - start));
        isTouched_ = lastText_.size() < last.size || inspect::hashOf(lastText_) == last.hash;
        if (!isTouched_)
            throw usageError_t(file_ + " begins like a log that was loaded, but is another: byte " +
                               std::to_string(last.offset) +
                               " and what follows differ; load it under a name of its "
                               "own: --source NAME");
    }
    const auto old = static_cast<std::size_t>(std::min<std::uint64_t>(loaded - std::min(at_, loaded), block.size()));
    at_ += block.size();
    return block.substr(old);
}

void logLoad_t::take(std::string_view block) {
    isTouched_ = true;
    if (log_.first.size() < archivedLog_t::firstBytes && at_ == log_.first.size())
        log_.first += block.substr(0, archivedLog_t::firstBytes - log_.first.size());
    const std::string_view news = verify(block);
    if (news.empty())
        return;
    dropTail();
    scanner_.feed(news, *this);
}

void logLoad_t::dropTail() {
    if (log_.hasTail)
        archive_.removeFrom(log_.number, scanner_.decided());
    log_.hasTail = false;
    log_.tail.clear();
}

void logLoad_t::takeTail() {
    if (!hasBegun_ || log_.hasTail || isCutShort())
        return;
    isTail_ = isTouched_ = true;
    log_.tail.clear();
    inspect::logScanner_t ahead = scanner_;
    const std::int64_t messages = archive_.counts().messages;
    hasCutOff_ = false;
    ahead.finish(*this);
    log_.hasTail = archive_.counts().messages > messages;
    isTail_ = false;
    if (hasCutOff_)
        complain(file_ + ": the log ends within a message, which is loaded when it goes on");
}

void logLoad_t::finish() {
    if (!hasBegun_)
        return;
    dropTail();
    scanner_.finish(*this);
    isTouched_ = true;
}

// Memory is bounded: long words between messages are kept in pieces, which end where no message begins.
void logLoad_t::between(std::string_view words) {
    constexpr std::size_t piece = std::size_t{1} << 16;
    if (isTail_) {
        log_.tail += words;
        return;
    }
    for (front_ += words; front_.size() > piece; front_.erase(0, piece), frontStart_ += piece)
        putFront(frontStart_ + piece, inspect::patternOf(std::string_view(front_).substr(0, piece), std::nullopt));
}

void logLoad_t::putFront(std::uint64_t offset, std::string_view text) {
    constexpr std::uint32_t element = 0;
    const auto cell = inspect::cell_t::ofText(text);
    const inspect::rowFront_t front{log_.name, offset, 0, time_, log_.number};
    if (log_.isWhole)
        archive_.row({inspect::archiveTables().fronts(), front, {}, {}, false, {&element, 1}, {&cell, 1}, {}});
}

// What is in front of the first message lacks the end of a line.
void logLoad_t::saveFront(std::uint64_t offset) {
    const inspect::envelopeNumber_t &number = tree_.envelope().id;
    const std::optional<std::int32_t> id = number.isThere ? std::optional(number.value) : std::nullopt;
    room_.clear();
    const std::string *const usual = log_.fronts.of(id);
    if (usual != nullptr)
        inspect::appendFront(room_, *usual, time_);
    if (usual == nullptr || room_ != front_) {
        const std::string pattern = inspect::patternOf(front_, time_);
        if (usual != nullptr || log_.last.size == 0 || !log_.isWhole || !log_.fronts.learn(id, pattern))
            putFront(offset, pattern);
    }
    front_.clear();
}

void logLoad_t::message(const inspect::foundMessage_t &found) {
    if (isTail_)
        log_.tail += found.text;
    if (isTail_ && !archive_.canRemove()) {
        hasCutOff_ = true;
        return;
    }
    tree_.read(found.text);
    const std::optional<inspect::logTime_t> time = times_.in(found.lineHead);
    rows_.make(tree_, {log_.name, found.offset, found.line, time, log_.number}, archive_);
    if (isTail_)
        return;
    time_ = time;
    saveFront(found.offset);
    frontStart_ = found.offset + tree_.text().size();
    front_ = found.text.substr(tree_.text().size()); // the NUL of one that was cut off
    marks_.add(found.text, time);
    log_.last = {found.offset, found.text.size(), 0};
    lastText_ = found.text;
}

void logLoad_t::check() {
    if (hasBegun_ && !isTouched_)
        archive_.check(log_);
}

void logLoad_t::save() {
    if (!hasBegun_ || !isTouched_ || isCutShort())
        return;
    if (log_.last.size > 0 && log_.last.hash == 0)
        log_.last.hash = inspect::hashOf(lastText_);
    log_.position = scanner_.position();
    log_.behind = front_;
    log_.loadedAt = nowInWords();
    log_.loadedBy = kept(userAndMachine());
    saveMarks();
    archive_.save(log_);
    isTouched_ = false;
}

void logLoad_t::leave() {
    save();
    if (hasBegun_)
        archive_.leave(log_);
}

} // namespace vek::tool
