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

std::string_view withoutBlanksInFront(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(whiteSpace), text.size()));
}

} // namespace

std::string_view growingLog_t::take(std::string_view piece) {
    if (unwrapper_)
        return unwrapper_->take(piece);
    start_ += piece;
    return showsWhatItIs(start_) ? begin(false) : std::string_view();
}

std::string_view growingLog_t::standStill() {
    return unwrapper_ || start_.empty() ? std::string_view() : begin(true);
}

std::string_view growingLog_t::finish() {
    handedOn_ = standStill();
    if (unwrapper_)
        handedOn_ += unwrapper_->finish();
    unwrapper_.reset();
    wrapping_ = wrapping_t::none;
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
    handedOn_ = std::exchange(start_, {});
    return unwrapper_.emplace(wrapping_).take(handedOn_);
}

// Lines without a message. What has no end yet may still become one, and so may an array of JSON.
std::size_t growingLog_t::sizeToHandOn() const {
    if (start_.size() >= longestStart)
        return start_.size();
    return start_.find("@@") != std::string::npos || isOpenArray(withoutBlanksInFront(start_)) ? 0
                                                                                               : start_.rfind('\n') + 1;
}

} // namespace vek::inspect
