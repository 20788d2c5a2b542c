#include "vek/inspect/forms/growingLog.hpp"

#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/words/trimming.hpp"

#include <algorithm>
#include <utility>

namespace vek::inspect {

namespace {

constexpr std::size_t longestStart = std::size_t{1} << 18;

bool isOpenArray(std::string_view start) {
    const std::size_t next = start.find_first_not_of(whiteSpace, 1);
    return start.starts_with('[') &&
           (next >= start.size() || std::string_view("{[\"").find(start[next]) != std::string_view::npos) &&
           endOfJson(start) == std::string_view::npos;
}

// Whether no message stands there yet that has an end; in a line of JSON it has that where the line ends.
bool isUndecided(std::string_view start) {
    const std::size_t message = start.find("@@");
    if (message == std::string_view::npos || isOpenArray(start))
        return true;
    const std::string_view rest = start.substr(message);
    return rest.find('\n') == std::string_view::npos &&
           (start.starts_with('{') || rest.find("!!") == std::string_view::npos);
}

// How long a message is, be it damaged; npos as long as its end may come.
std::size_t sizeToItsEnd(std::string_view text) {
    const std::size_t line = text.find('\n'), end = text.substr(0, line).find("}!!");
    if (end != std::string_view::npos)
        return end + 3;
    return line != std::string_view::npos || text.size() < longestStart ? line : text.size();
}

std::string_view withoutBlanksInFront(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(whiteSpace), text.size()));
}

} // namespace

std::string_view growingLog_t::take(std::string_view piece) {
    if (unwrapper_)
        return wrapping_ == wrapping_t::none && !isPlain_ ? watch(piece) : unwrapper_->take(piece);
    start_ += piece;
    return showsWhatItIs(start_) ? begin(false) : std::string_view();
}

std::string_view growingLog_t::standStill() {
    return unwrapper_ || start_.empty() ? std::string_view() : begin(true);
}

std::string_view growingLog_t::finish() {
    std::string rest(standStill());
    rest.append(open_, handedOnOfIt_);
    if (unwrapper_)
        rest += unwrapper_->finish();
    unwrapper_.reset();
    wrapping_ = wrapping_t::none;
    open_.clear();
    handedOnOfIt_ = 0;
    handedOn_ = std::move(rest);
    return handedOn_;
}

std::string_view growingLog_t::begin(bool isAll) {
    wrapping_ = wrappingOfLog(start_, isAll);
    if (wrapping_ == wrapping_t::none && isUndecided(withoutBlanksInFront(start_))) {
        const std::size_t size = isAll ? start_.size() : sizeToHandOn();
        handedOn_ = start_.substr(0, size);
        start_.erase(0, size);
        return handedOn_;
    }
    isPlain_ = wrapping_ == wrapping_t::none && wrappingOf(start_) != wrapping_t::none;
    handedOn_ = std::exchange(start_, {});
    unwrapper_.emplace(wrapping_);
    return take(handedOn_);
}

// Without a backslash a text is the same either way: what stands in front of the first one is handed on as it comes.
std::string_view growingLog_t::watch(std::string_view piece) {
    open_ += piece;
    const std::string_view text = open_;
    std::size_t at = 0; // of the message that has no end yet
    while (!isPlain_ && (at = text.find("@@", at)) != std::string_view::npos) {
        const std::size_t size = sizeToItsEnd(text.substr(at));
        if (size == std::string_view::npos)
            break;
        const std::string_view message = text.substr(at, size);
        if (message.find('\\') != std::string_view::npos) {
            isPlain_ = wholeMessages(message) > 0;
            if (!isPlain_ && wrappingOf(message) == wrapping_t::escapes)
                return beginEscapes(at);
        }
        at += size;
    }
    if (isPlain_ || at == std::string_view::npos)
        at = text.size() - (text.ends_with('@') && !isPlain_ ? 1 : 0);
    const std::size_t end = std::min(text.find('\\', at), text.size());
    handedOn_ = text.substr(handedOnOfIt_, end - handedOnOfIt_);
    open_.erase(0, at);
    handedOnOfIt_ = end - at;
    return handedOn_;
}

// From a message on, of which a part was handed on.
std::string_view growingLog_t::beginEscapes(std::size_t at) {
    wrapping_ = wrapping_t::escapes;
    const std::string_view rest = unwrapper_.emplace(wrapping_).take(std::string_view(open_).substr(at));
    handedOn_ = open_.substr(std::min(handedOnOfIt_, at), at - std::min(handedOnOfIt_, at));
    handedOn_ += rest.substr(handedOnOfIt_ - std::min(handedOnOfIt_, at));
    open_.clear();
    handedOnOfIt_ = 0;
    return handedOn_;
}

// Lines without a message. What has no end yet may still become one, and so may an array of JSON.
std::size_t growingLog_t::sizeToHandOn() const {
    if (start_.size() >= longestStart)
        return start_.size();
    return start_.find("@@") != std::string::npos || isOpenArray(withoutBlanksInFront(start_)) ? 0
                                                                                               : start_.rfind('\n') + 1;
}

} // namespace vek::inspect
