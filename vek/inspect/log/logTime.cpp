// Each form of a time is read piece by piece, without a copy, a locale or a regular expression: it is done for every
// message of a log.
#include "vek/inspect/log/logTime.hpp"

#include "vek/text/numberText.hpp"

#include <algorithm>
#include <chrono>

namespace vek::inspect {

namespace {

constexpr std::int64_t second = 1'000'000;
constexpr std::int64_t day = 86'400 * second;

// Reads a text from its start on, piece by piece. Once a piece is not there, nothing more is read.
class pieces_t {
public:
    explicit pieces_t(std::string_view text) : text_(text) {}

    bool isGood() const { return isGood_; }
    std::size_t taken() const { return at_; }
    char next() const { return at_ < text_.size() ? text_[at_] : '\0'; }

    int number(std::size_t digits) {
        int value = 0;
        for (std::size_t i = 0; i < digits; ++i) {
            if (!isDigit(next())) {
                isGood_ = false;
                return 0;
            }
            value = value * 10 + (text_[at_++] - '0');
        }
        return value;
    }
    char oneOf(std::string_view characters) {
        if (at_ < text_.size() && characters.find(text_[at_]) != std::string_view::npos)
            return text_[at_++];
        isGood_ = false;
        return '\0';
    }
    bool optionally(std::string_view characters) {
        const bool isThere = at_ < text_.size() && characters.find(text_[at_]) != std::string_view::npos;
        at_ += isThere ? 1 : 0;
        return isThere;
    }
    int month() {
        static constexpr std::string_view names = "JanFebMarAprMayJunJulAugSepOctNovDec";
        const std::size_t place = names.find(text_.substr(at_, 3));
        isGood_ = isGood_ && at_ + 3 <= text_.size() && place != std::string_view::npos && place % 3 == 0;
        at_ += 3;
        return isGood_ ? static_cast<int>(place / 3) + 1 : 0;
    }
    // Microseconds of the digits behind a point.
    std::int64_t fraction() {
        std::int64_t value = 0, unit = second;
        for (; isDigit(next()); ++at_)
            value += (text_[at_] - '0') * (unit /= 10);
        return value;
    }
    void fail() { isGood_ = false; }

private:
    std::string_view text_;
    std::size_t at_ = 0;
    bool isGood_ = true;
};

std::optional<std::int64_t> dayOf(int year, int month, int dayOfMonth) {
    const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(dayOfMonth))};
    if (!date.ok())
        return std::nullopt;
    return std::chrono::sys_days(date).time_since_epoch().count() * day;
}

// hh:mm[:ss[.fraction]]
std::int64_t clock(pieces_t &pieces, bool needsSeconds) {
    const int hour = pieces.number(2);
    pieces.oneOf(":");
    const int minute = pieces.number(2);
    std::int64_t value = (std::int64_t{hour} * 60 + minute) * 60 * second;
    int seconds = 0;
    if (pieces.isGood() && pieces.next() == ':') {
        pieces.oneOf(":");
        seconds = pieces.number(2);
        value += seconds * second;
        if (pieces.isGood() && (pieces.next() == '.' || pieces.next() == ',')) {
            pieces.oneOf(".,");
            value += pieces.fraction();
        }
    } else if (needsSeconds) {
        pieces.fail();
    }
    if (hour > 24 || minute > 59 || seconds > 60)
        pieces.fail();
    return value;
}

// Z, +01:00, +0100, +01; nothing is fine too.
void zone(pieces_t &pieces, logTime_t &time) {
    if (pieces.optionally("Z")) {
        time.hasZone = true;
        return;
    }
    const char sign = pieces.next();
    if (sign != '+' && sign != '-')
        return;
    pieces_t ahead = pieces;
    ahead.oneOf("+-");
    int minutes = ahead.number(2) * 60;
    if (ahead.optionally(":") || isDigit(ahead.next()))
        minutes += ahead.number(2);
    if (!ahead.isGood())
        return;
    pieces = ahead;
    time.hasZone = true;
    time.microseconds -= (sign == '+' ? second : -second) * minutes * 60;
}

using reader_t = std::optional<logTime_t> (*)(pieces_t &);

std::optional<logTime_t> made(pieces_t &pieces, std::optional<std::int64_t> date, std::int64_t timeOfDay) {
    if (!pieces.isGood() || !date)
        return std::nullopt;
    logTime_t time{*date + timeOfDay, true, false};
    zone(pieces, time);
    return time;
}

// Date and time in the order of a pattern: Y year, M month, N its name, D day, T hh:mm[:ss], S hh:mm:ss; "," and a
// blank at the end may be missing, "_" is a blank, "T" or "_", anything else stands there as it is.
std::optional<logTime_t> dated(pieces_t &pieces, std::string_view pattern) {
    int year = 0, month = 0, dayOfMonth = 0;
    std::int64_t timeOfDay = 0;
    for (const char c : pattern) {
        if (c == 'Y')
            year = pieces.number(4);
        else if (c == 'M')
            month = pieces.number(2);
        else if (c == 'N')
            month = pieces.isGood() ? pieces.month() : 0;
        else if (c == 'D')
            dayOfMonth = pieces.number(2);
        else if (c == 'T' || c == 'S')
            timeOfDay = clock(pieces, c == 'S');
        else if (c == ',' || c == ' ')
            pieces.optionally({&c, 1});
        else
            pieces.oneOf(c == '_' ? std::string_view("T _") : std::string_view(&c, 1));
    }
    return made(pieces, dayOf(year, month, dayOfMonth), timeOfDay);
}

std::int64_t now() {
    static const std::int64_t time =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::system_clock::now().time_since_epoch())
            .count();
    return time;
}

// Without a year: of the latest year in which it is not yet to come (in any zone), so that December is the last one's
// in January.
std::optional<logTime_t> systemLog(pieces_t &pieces) {
    const int month = pieces.month();
    pieces.oneOf(" ");
    const int dayOfMonth = pieces.optionally(" ") ? pieces.number(1) : pieces.number(2);
    pieces.oneOf(" ");
    const std::int64_t timeOfDay = clock(pieces, true);
    constexpr int betweenLeapYears = 8;
    static const auto thisYear =
        static_cast<int>(std::chrono::year_month_day(std::chrono::sys_days(std::chrono::days(now() / day))).year());
    for (int year = thisYear + 1; pieces.isGood() && year >= thisYear - betweenLeapYears; --year)
        if (const std::optional<std::int64_t> date = dayOf(year, month, dayOfMonth);
            date && *date + timeOfDay <= now() + day)
            return made(pieces, date, timeOfDay);
    return std::nullopt;
}

// Date and time without marks: 20260301T120000.250Z.
std::optional<logTime_t> compactIso(pieces_t &pieces) {
    const int year = pieces.number(4), month = pieces.number(2), dayOfMonth = pieces.number(2);
    pieces.oneOf("T");
    const int hour = pieces.number(2), minute = pieces.number(2),
              seconds = isDigit(pieces.next()) ? pieces.number(2) : 0;
    if (!pieces.isGood() || hour > 24 || minute > 59 || seconds > 60)
        return std::nullopt;
    std::int64_t timeOfDay = ((std::int64_t{hour} * 60 + minute) * 60 + seconds) * second;
    if (pieces.optionally(".,"))
        timeOfDay += pieces.fraction();
    return made(pieces, dayOf(year, month, dayOfMonth), timeOfDay);
}

// Ten digits of seconds, with milliseconds thirteen, with microseconds sixteen, with nanoseconds nineteen.
std::optional<logTime_t> sinceEpoch(pieces_t &pieces) {
    const int high = pieces.number(5), low = pieces.number(5);
    if (!pieces.isGood() || high < 10000)
        return std::nullopt;
    logTime_t time{(static_cast<std::int64_t>(high) * 100000 + low) * second, true, true};
    for (std::int64_t unit = second / 1000; isDigit(pieces.next()); unit /= 1000) {
        const int thousandths = pieces.number(3);
        if (!pieces.isGood() || (unit == 0 && isDigit(pieces.next())))
            return std::nullopt;
        time.microseconds += thousandths * unit;
    }
    if (time.microseconds % second == 0 && pieces.optionally("."))
        time.microseconds += pieces.fraction();
    return time;
}

std::optional<logTime_t> timeAlone(pieces_t &pieces) {
    const std::int64_t timeOfDay = clock(pieces, true);
    if (!pieces.isGood())
        return std::nullopt;
    return logTime_t{timeOfDay, false, false};
}

constexpr std::string_view patterns[] = {"Y-M-D_T", "Y/M/D_T", "D.M.Y,_T", "D/N/Y:S "};
constexpr reader_t readers[] = {compactIso, sinceEpoch, timeAlone};

std::int64_t timeOfDay(std::int64_t microseconds) {
    return ((microseconds % day) + day) % day;
}

} // namespace

bool logTime_t::isBefore(const logTime_t &other) const {
    if (hasDate && other.hasDate)
        return microseconds < other.microseconds;
    return timeOfDay(microseconds) < timeOfDay(other.microseconds);
}

std::string logTime_t::inWords() const {
    std::string text;
    appendTo(text, 'T', fraction_t::whenThere);
    return hasZone ? text + "Z" : text;
}

void logTime_t::appendTo(std::string &out, char between, fraction_t fraction) const {
    char buffer[32], *to = buffer;
    const auto pair = [&to](std::int64_t number) { to = writeDigitPair(static_cast<std::size_t>(number), to); };
    const std::int64_t inDay = timeOfDay(microseconds);
    if (hasDate) {
        const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days((microseconds - inDay) / day))};
        const int year = std::clamp(static_cast<int>(date.year()), 0, 9999);
        pair(year / 100);
        pair(year % 100);
        *to++ = '-';
        pair(static_cast<unsigned>(date.month()));
        *to++ = '-';
        pair(static_cast<unsigned>(date.day()));
        *to++ = between;
    }
    pair(inDay / second / 3600);
    *to++ = ':';
    pair(inDay / second / 60 % 60);
    *to++ = ':';
    pair(inDay / second % 60);
    const std::int64_t rest = inDay % second;
    if (fraction == fraction_t::always || (fraction == fraction_t::whenThere && rest != 0)) {
        *to++ = '.';
        const std::int64_t thousandths = rest / 1000;
        *to++ = static_cast<char>('0' + thousandths / 100);
        pair(thousandths % 100);
        if (rest % 1000 != 0) {
            *to++ = static_cast<char>('0' + rest % 1000 / 100);
            pair(rest % 100);
        }
    }
    out.append(buffer, static_cast<std::size_t>(to - buffer));
}

std::uint32_t logTime_t::microsecond() const {
    return static_cast<std::uint32_t>(timeOfDay(microseconds) % second);
}

std::optional<logTime_t> readTime(std::string_view text, std::size_t &size) {
    const auto attempt = [&](auto reader, auto... pattern) {
        pieces_t pieces(text);
        std::optional<logTime_t> time = reader(pieces, pattern...);
        size = pieces.taken();
        return time;
    };
    if (text.empty() || !isDigit(text.front()))
        return attempt(systemLog);
    for (const std::string_view pattern : patterns)
        if (const std::optional<logTime_t> time = attempt(dated, pattern))
            return time;
    for (const reader_t reader : readers)
        if (const std::optional<logTime_t> time = attempt(reader))
            return time;
    return std::nullopt;
}

std::optional<logTime_t> timeIn(std::string_view lineHead) {
    std::size_t size = 0;
    char previous = ' ';
    for (std::size_t i = 0; i < lineHead.size(); previous = lineHead[i++]) {
        const bool isStart = isDigit(lineHead[i]) ? !isDigit(previous) && previous != '.' && previous != '-'
                                                  : lineHead[i] >= 'A' && lineHead[i] <= 'S';
        if (isStart)
            if (const std::optional<logTime_t> time = readTime(lineHead.substr(i), size))
                return time;
    }
    return std::nullopt;
}

} // namespace vek::inspect
