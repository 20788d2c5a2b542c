#include "tools/vekmsg/fleet/deviceLog.hpp"

#include "tools/vekmsg/terminal/problem.hpp"

#include <chrono>
#include <cstdio>

namespace vek::tool {

namespace {

constexpr std::int64_t dayLength = 86'400'000;

/// The library counts on from the last message that it read.
void setSequence(std::int32_t number) {
    const std::string rest = " 7 " + std::to_string(number) + " {ID=1;}!!";
    char head[16];
    std::snprintf(head, sizeof head, "@@4160 %5d", static_cast<int>(12 + rest.size() + 1));
    (void)parse<VEK_MSG_ID_RECORD_4160>(head + rest);
}

} // namespace

deviceLog_t::deviceLog_t(const std::string &file, std::int64_t begin, std::uint64_t most, double badness,
                         fleetRandom_t &random)
    : name_(file), file_(file, std::ios::binary), now_(begin), most_(most), badness_(badness), random_(random) {
    if (!file_)
        throw usageError_t("cannot write " + file);
    setSequence(0);
}

void deviceLog_t::close() {
    file_ << lines_;
    lines_.clear();
    file_.close();
    if (!file_)
        throw usageError_t("cannot write all of " + name_);
}

void deviceLog_t::beginLine() {
    if (now_ / dayLength != day_) {
        day_ = now_ / dayLength;
        const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(day_))};
        char text[32];
        std::snprintf(text, sizeof text, "%04d-%02u-%02uT", static_cast<int>(date.year()),
                      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
        date_ = text;
    }
    const auto time = static_cast<unsigned>(now_ % dayLength);
    char clock[16] = "00:00:00.000 ";
    const auto put = [&clock](int at, unsigned number, int digits) {
        for (; digits > 0; number /= 10)
            clock[at + --digits] = static_cast<char>('0' + number % 10);
    };
    put(0, time / 3'600'000, 2);
    put(3, time / 60'000 % 60, 2);
    put(6, time / 1000 % 60, 2);
    put(9, time % 1000, 3);
    lines_.append(date_).append(clock, 13);
}

void deviceLog_t::say(std::string_view words) {
    beginLine();
    lines_.append("service ").append(words).append("\n");
}

void deviceLog_t::put(sender_t sender, const messageText_t &text) {
    ++count_;
    ++sequence_;
    beginLine();
    lines_.append(sender == sender_t::host ? "host > device " : "device > host ");
    if (badness_ > 0 && random_.happens(badness_))
        lines_.append(damaged(text.str()));
    else
        lines_.append(text.view());
    lines_ += '\n';
    if (lines_.size() > 1U << 18) {
        file_ << lines_;
        lines_.clear();
    }
    if (badness_ > 0 && random_.happens(badness_ / 4)) { // some on their way were lost
        sequence_ += random_.between(1, 4);
        setSequence(sequence_);
    }
}

// As they come out of a bad line, or of somebody's editor.
std::string deviceLog_t::damaged(std::string text) {
    const std::size_t body = text.find('{');
    switch (random_.below(3)) {
    case 0: // cut off
        return text.substr(0, body + (text.size() - body) * 2 / 3);
    case 1: // characters lost on the way: the length is wrong
        return text.erase(body + (text.size() - body) / 2, 3);
    default: { // another key than there is, of the same length
        const std::size_t equals = text.find('=', body);
        if (equals != std::string::npos && equals > body + 3)
            std::swap(text[equals - 1], text[equals - 2]);
        return text;
    }
    }
}

} // namespace vek::tool
