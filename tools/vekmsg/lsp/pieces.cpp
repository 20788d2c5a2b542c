#include "tools/vekmsg/lsp/pieces.hpp"

#include "tools/vekmsg/reading/input.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/log/logScanner.hpp"
#include "vek/inspect/log/unwrapping.hpp"
#include "vek/inspect/words/trimming.hpp"

#include <algorithm>
#include <utility>

namespace vek::tool::lsp {

namespace {

using inspect::form_t;

// As much of a text as the tool looks at to know what a file is.
constexpr std::size_t start = source_t::blockSize;

place_t placeOf(std::string_view part, std::string_view text) {
    const auto offset = static_cast<std::uint32_t>(part.data() - text.data());
    return {offset, offset + static_cast<std::uint32_t>(part.size())};
}

bool isLogOf(std::string_view text, form_t form) {
    return !inspect::isForm(form) && inspect::wrappingOf(text.substr(0, start)) == inspect::wrapping_t::none;
}

// The pieces before a change, by where they are behind it.
class old_t {
public:
    old_t(std::vector<piece_t> before, const change_t &made) : change(made), pieces(std::move(before)) {}

    place_t placeNow(const piece_t &one) const {
        const auto moved = [&](std::size_t offset) { return static_cast<std::uint32_t>(offset + shift); };
        if (one.place.start >= change.oldEnd)
            return {moved(one.place.start), moved(one.place.end)};
        return {static_cast<std::uint32_t>(std::min<std::size_t>(one.place.start, change.start)), one.place.end};
    }
    bool isUntouched(const piece_t &one) const {
        return one.place.end <= change.start || one.place.start >= change.oldEnd;
    }
    bool isSame(const piece_t &one, place_t place, pieceKind_t kind) const {
        return one.kind == kind && isUntouched(one) && placeNow(one) == place;
    }

    const change_t change;
    const std::size_t shift = change.newEnd - change.oldEnd; // wraps where it is negative
    const std::vector<piece_t> pieces;
};

// Finds what a log holds, up to a message that was there before: what is behind is as it was.
class finder_t final : public inspect::messageSink_t {
public:
    finder_t(std::vector<piece_t> &pieces, const old_t &old) : pieces_(pieces), old_(old), known_(old.pieces.begin()) {}

    void find(std::string_view text, std::size_t from) {
        inspect::logScanner_t scanner(from);
        for (std::size_t size = std::size_t{1} << 16; from < text.size() && !isMet_; size *= 2) {
            scanner.feed(text.substr(from, size), *this);
            from += std::min(size, text.size() - from);
        }
        if (!isMet_)
            scanner.finish(*this);
        for (; isMet_ && ++known_ != old_.pieces.end();) {
            pieces_.push_back(*known_);
            pieces_.back().place = old_.placeNow(*known_);
        }
    }

    void message(const inspect::foundMessage_t &found) override {
        if (isMet_)
            return;
        const auto offset = static_cast<std::uint32_t>(found.offset);
        const place_t place{offset, offset + static_cast<std::uint32_t>(found.text.size())};
        pieces_.push_back({place});
        if (place.start < old_.change.newEnd)
            return;
        while (known_ != old_.pieces.end() && old_.placeNow(*known_).start < place.start)
            ++known_;
        isMet_ = known_ != old_.pieces.end() && known_->place.start >= old_.change.oldEnd &&
                 old_.isSame(*known_, place, pieceKind_t::message);
    }

private:
    std::vector<piece_t> &pieces_;
    const old_t &old_;
    std::vector<piece_t>::const_iterator known_;
    bool isMet_ = false;
};

// In a small text a message may stand alone.
void lookForOne(std::string_view text, std::vector<piece_t> &pieces) {
    if (pieces.size() == 1 && inspect::isMerelyAround(text.substr(0, pieces[0].place.start)) &&
        inspect::isMerelyAround(text.substr(pieces[0].place.end)))
        pieces[0] = {{0, static_cast<std::uint32_t>(text.size())}, pieceKind_t::alone};
    else if (pieces.empty() && inspect::isMeantAsMessage(text))
        pieces.push_back({placeOf(inspect::trimmed(text), text), pieceKind_t::alone});
}

void judge(std::string_view text, std::vector<piece_t> &pieces, const old_t &old) {
    auto next = old.pieces.begin();
    for (piece_t &piece : pieces) {
        if (piece.isJudged)
            continue;
        while (next != old.pieces.end() && old.placeNow(*next).start < piece.place.start)
            ++next;
        if (next != old.pieces.end() && old.isSame(*next, piece.place, piece.kind))
            piece = {piece.place, piece.kind, true, next->errors, next->warnings};
        else
            problemsOf(text, piece, 0);
    }
}

} // namespace

void change_t::join(const change_t &later) {
    const std::size_t end = std::max(newEnd, later.oldEnd);
    oldEnd += end - newEnd;
    newEnd = end + later.newEnd - later.oldEnd;
    start = std::min(start, later.start);
}

void pieces_t::find(std::string_view text, const change_t &change) {
    const old_t old(std::exchange(pieces_, {}), change);
    const form_t form = inspect::formOf(text.substr(0, start));
    const bool wasLog = std::exchange(isLog_, isLogOf(text, form));
    if (form == form_t::show)
        for (const std::string_view piece : inspect::splitForms(text, form))
            pieces_.push_back({placeOf(piece, text), pieceKind_t::readable});
    if (isLog_) {
        // What begins so far in front of the change does not depend on it: no end is looked for any further.
        constexpr std::size_t reach = inspect::logScanner_t::memoryBound + 16;
        const auto isFarAway = [&](const piece_t &one) { return one.place.end + reach <= change.start; };
        if (wasLog)
            pieces_.assign(old.pieces.begin(), std::partition_point(old.pieces.begin(), old.pieces.end(), isFarAway));
        finder_t(pieces_, old).find(text, pieces_.empty() ? 0 : pieces_.back().place.end);
        if (text.size() < start)
            lookForOne(text, pieces_);
    }
    judge(text, pieces_, old);
}

const piece_t *pieces_t::at(std::size_t offset) const {
    const auto behind = std::partition_point(pieces_.begin(), pieces_.end(),
                                             [&](const piece_t &one) { return one.place.start <= offset; });
    return behind == pieces_.begin() || std::prev(behind)->place.end < offset ? nullptr : &*std::prev(behind);
}

std::size_t pieces_t::problemCount() const {
    std::size_t count = 0;
    for (const piece_t &piece : pieces_)
        count += piece.count();
    return count;
}

std::vector<problem_t> pieces_t::problems(std::string_view text, std::size_t most) const {
    std::vector<problem_t> shown;
    const auto showThose = [&](auto isWanted) {
        for (const piece_t &piece : pieces_) {
            if (shown.size() >= most)
                return;
            if (piece.count() == 0 || !isWanted(piece))
                continue;
            piece_t again = piece;
            const std::vector<problem_t> own = problemsOf(text, again, most - shown.size());
            shown.insert(shown.end(), own.begin(), own.end());
        }
    };
    if (problemCount() <= most) {
        showThose([](const piece_t &) { return true; });
    } else {
        showThose([](const piece_t &piece) { return piece.errors > 0; });
        showThose([](const piece_t &piece) { return piece.errors == 0; });
    }
    return shown;
}

} // namespace vek::tool::lsp
