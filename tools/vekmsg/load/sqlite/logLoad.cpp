#include "tools/vekmsg/load/sqlite/logLoad.hpp"

#include "tools/vekmsg/terminal/platform.hpp"
#include "tools/vekmsg/terminal/problem.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

// The first bytes of a file; none when there is no such file.
std::string beginningOf(const std::string &name) {
    if (name == "-" || !identityOf(name))
        return {};
    try {
        return readBeginning(*openSource(name));
    } catch (const usageError_t &) {
        return {};
    }
}

} // namespace

std::string readBeginning(source_t &source) {
    std::string beginning;
    while (beginning.size() < loadedLog_t::firstBytes) {
        const std::string_view block = source.next();
        if (block.empty())
            break;
        beginning += block;
    }
    return beginning;
}

void logLoad_t::begin(std::string_view first, bool isNew, bool isRenamable) {
    first_ = first.substr(0, loadedLog_t::firstBytes);
    // A log that may not have another name still begins as itself.
    const auto beginning = [&](const std::string &name) { return isRenamable ? beginningOf(name) : first_; };
    log_.emplace(archive_.database(), name_, first_, isNew, beginning);
    if (log_->name() != name_)
        complain(name_ + " is the log that was loaded as " + log_->name() + "; it goes on there");
    else if (log_->isBesideOthers() && isRenamable)
        complain(name_ + " is another log than the one that was loaded under this name; it is loaded beside it");
    scanner_ = inspect::logScanner_t(log_->position());
    last_ = log_->last();
    lastText_.clear();
    if (first_.size() >= log_->position().offset)
        log_->setFirst(first_);
}

std::uint64_t logLoad_t::needed() const {
    if (!log_ || at_ >= log_->position().offset || log_->last().size == 0)
        return at_;
    const loadedLog_t::message_t &last = log_->last();
    return at_ < last.offset + last.size ? std::max(at_, last.offset) : log_->position().offset;
}

// Goes over what was loaded before, whose last message must be there still. Returns what is new.
std::string_view logLoad_t::verify(std::string_view block) {
    const loadedLog_t::message_t &last = log_->last();
    const std::uint64_t loaded = log_->position().offset;
    const std::uint64_t start = std::max(at_, last.offset), end = std::min(at_ + block.size(), last.offset + last.size);
    if (start < end) {
        lastText_ += block.substr(static_cast<std::size_t>(start - at_), static_cast<std::size_t>(end - start));
        isTouched_ = lastText_.size() < last.size || hashOf(lastText_) == last.hash;
        if (!isTouched_)
            throw usageError_t(name_ + " begins like a log that was loaded, but is another: byte " +
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
    if (first_.size() < loadedLog_t::firstBytes && at_ == first_.size()) {
        first_ += block.substr(0, loadedLog_t::firstBytes - first_.size());
        log_->setFirst(first_);
    }
    const std::string_view news = verify(block);
    if (news.empty())
        return;
    dropTail();
    archive_.setSource(log_->number());
    scanner_.feed(news, *this);
}

void logLoad_t::dropTail() {
    if (!log_->hasTail())
        return;
    archive_.removeFrom(log_->number(), scanner_.decided());
    log_->setHasTail(false);
}

void logLoad_t::takeTail() {
    if (!log_ || log_->hasTail() || isCutShort())
        return;
    isTail_ = isTouched_ = true;
    inspect::logScanner_t ahead = scanner_;
    archive_.setSource(log_->number());
    const std::int64_t messages = archive_.counts().messages;
    ahead.finish(*this);
    log_->setHasTail(archive_.counts().messages > messages);
    isTail_ = false;
}

void logLoad_t::finish() {
    if (!log_)
        return;
    dropTail();
    archive_.setSource(log_->number());
    scanner_.finish(*this);
    isTouched_ = true;
}

void logLoad_t::message(const inspect::foundMessage_t &found) {
    tree_.read(found.text);
    rows_.make(tree_, {name_, found.offset, found.line, times_.in(found.lineHead)}, archive_);
    if (isTail_)
        return;
    last_ = {found.offset, found.text.size(), 0};
    lastText_ = found.text;
}

void logLoad_t::check() const {
    if (log_ && !isTouched_)
        log_->checkIsOwn(archive_.database());
}

void logLoad_t::save() {
    if (!log_ || !isTouched_ || isCutShort())
        return;
    if (last_.size > 0 && last_.hash == 0)
        last_.hash = hashOf(lastText_);
    log_->save(archive_.database(), scanner_.position(), last_);
    isTouched_ = false;
}

} // namespace vek::tool
