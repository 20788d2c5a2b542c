// Round by round what is certain is done, and the result judged again: what makes nothing better is left. The ends and
// numbers around a body come last, when nothing else is wrong.
#include "vek/inspect/change/mending.hpp"

#include "vek/inspect/change/diff.hpp"
#include "vek/inspect/check/judge.hpp"
#include "vek/inspect/message/scalars.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <numeric>
#include <set>
#include <utility>

namespace vek::inspect {

namespace {

bool isError(const finding_t &finding) {
    return finding.severity == severity_t::error;
}

bool isOfEnvelope(const finding_t &finding) {
    return finding.code <= findingCode_t::bodyShape;
}

bool isCertain(const finding_t &finding) {
    return finding.remedy && finding.remedy->isCertain;
}

std::size_t errorsIn(const std::vector<finding_t> &findings) {
    return static_cast<std::size_t>(std::count_if(findings.begin(), findings.end(), &isError));
}

// Those in order of which none begins in front of the end of another.
void keepApart(std::vector<remedy_t> &remedies) {
    std::stable_sort(remedies.begin(), remedies.end(),
                     [](const remedy_t &one, const remedy_t &other) { return one.place.start < other.place.start; });
    std::uint32_t end = 0;
    std::erase_if(remedies, [&, isFirst = true](const remedy_t &remedy) mutable {
        if (!isFirst && remedy.place.start < end)
            return true;
        isFirst = false;
        end = std::max(end, remedy.place.end);
        return false;
    });
}

// Whether a host reads one value as the other: a text by its characters, and of others blanks don't count.
bool isReadAlike(const tree_t &before, const node_t &old, const tree_t &after, const node_t &now) {
    return isText(old) ? scalarText(before, old) == scalarText(after, now)
                       : trimmed(before.value(old)) == trimmed(after.value(now));
}

// Whether every value of which no error was told stands at its path as before. Where the end marker is missing a host
// takes other characters for the body.
bool isRestKept(const tree_t &before, const std::vector<finding_t> &findings, const tree_t &after) {
    if (before.envelope().endMarker.isEmpty())
        return true;
    std::set<std::string, std::less<>> told;
    for (const finding_t &finding : findings)
        if (finding.code == findingCode_t::missingSeparator && finding.path.ends_with(']'))
            told.insert(finding.path.substr(0, finding.path.rfind('['))); // elements behind it move
        else if (!finding.path.empty() && isError(finding))               // of a warning a host reads what was meant
            told.insert(finding.path);
    const auto isStep = [](std::string_view path, std::size_t at) { return path[at] == '.' || path[at] == '['; };
    const auto isTold = [&](std::string_view path) {
        for (std::size_t end = 1; end <= path.size(); ++end)
            if ((end == path.size() || isStep(path, end)) && told.contains(path.substr(0, end)))
                return true;
        // Of a list or group also what is told of its parts.
        const auto next = told.lower_bound(path);
        return next != told.end() && next->size() > path.size() && next->starts_with(path) &&
               isStep(*next, path.size());
    };
    const std::vector<leaf_t> all = leaves(before);
    return std::all_of(all.begin(), all.end(), [&](const leaf_t &leaf) {
        if (leaf.node->use != pairUse_t::assigned || isTold(leaf.path))
            return true;
        const node_t *now = after.find(leaf.path);
        return now != nullptr && isReadAlike(before, *leaf.node, after, *now);
    });
}

// A message on its way.
class mender_t {
public:
    mender_t(std::string_view text, std::size_t budget) : mending_{std::string(text), {}, {}}, budget_(budget) {
        tree_.read(mending_.text);
        mending_.left = check(tree_);
    }

    mending_t mend() {
        const auto isOfBody = [](const finding_t &finding) { return isCertain(finding) && !isOfEnvelope(finding); };
        const auto isAround = [](const finding_t &finding) {
            return isCertain(finding) && isOfEnvelope(finding) && finding.code != findingCode_t::wrongLength;
        };
        const auto isOfShape = [](const finding_t &finding) {
            return isError(finding) && !isCertain(finding) &&
                   (finding.code == findingCode_t::bodyShape || finding.code == findingCode_t::noEndMarker);
        };
        // Without braces a host's body is another one than people see.
        while (std::none_of(mending_.left.begin(), mending_.left.end(), isOfShape) && doAll(isOfBody))
            ;
        if (errorsIn(mending_.left) > 0 && !tryProven() && hasOddLineBreaks())
            return std::move(mending_);
        const auto isOpen = [](const finding_t &finding) {
            return isError(finding) && !(isOfEnvelope(finding) && isCertain(finding));
        };
        if (std::none_of(mending_.left.begin(), mending_.left.end(), isOpen))
            while (doAll(isAround) || doAll(&isCertain))
                ;
        return std::move(mending_);
    }

    /// It would take too long.
    bool isGivenUp() const { return isGivenUp_; }

private:
    // Applies the remedies of some findings, all together or those that help by themselves. Whether anything was done.
    template <typename choice_t>
    bool doAll(choice_t isChosen) {
        std::vector<std::size_t> chosen;
        for (std::size_t i = 0; i < mending_.left.size(); ++i)
            if (isChosen(mending_.left[i]))
                chosen.push_back(i);
        if (chosen.empty())
            return false;
        if (tryThese(chosen))
            return true;
        constexpr std::size_t most = 20;
        for (std::size_t i = 0; chosen.size() > 1 && i < std::min(chosen.size(), most); ++i)
            if (tryThese({chosen[i]}))
                return true;
        return false;
    }

    // The length is a witness: of the texts that one brace more or less, or without the line ends that an editor or a
    // mail put in, would make of this one, a single one may have just that length and no error.
    bool tryProven() {
        const envelopeParts_t &envelope = tree_.envelope();
        constexpr std::size_t mostOfText = 20'000;
        if (!envelope.length.isThere || mending_.text.size() > mostOfText)
            return false;
        std::vector<remedy_t> ends;
        for (const finding_t &finding : mending_.left)
            if (isCertain(finding) && isOfEnvelope(finding) && finding.code <= findingCode_t::noEndMarker)
                ends.push_back(*finding.remedy);
        std::string proven;
        std::size_t fewest = SIZE_MAX;
        bool isOnly = false;
        for (std::vector<remedy_t> &candidate : candidates()) {
            candidate.insert(candidate.end(), ends.begin(), ends.end());
            keepApart(candidate);
            std::string text = applied(mending_.text, candidate);
            if (text.size() + 1 != static_cast<std::size_t>(envelope.length.value) || text == proven)
                continue;
            const tree_t tree(text);
            const std::size_t findings = check(tree).size();
            if (!isClean(tree, tolerance_t::warnings) || findings > fewest)
                continue;
            isOnly = findings < fewest;
            fewest = findings;
            proven = std::move(text);
        }
        if (!isOnly)
            return false;
        for (finding_t &finding : mending_.left)
            mending_.done.push_back(std::move(finding));
        take(std::move(proven));
        return true;
    }

    std::vector<std::vector<remedy_t>> candidates() const {
        std::vector<std::vector<remedy_t>> all = withoutLineBreaks();
        const place_t body = tree_.envelope().body;
        const std::string_view text = tree_.text();
        const auto isOneOf = [&](std::uint32_t at, std::string_view some) {
            return at < text.size() && some.find(text[at]) != std::string_view::npos;
        };
        const auto add = [&all](place_t place, const char *by) { all.push_back({remedy_t{place, by}}); };
        for (const finding_t &finding : mending_.left) {
            const std::uint32_t at = finding.place.start;
            if (finding.code == findingCode_t::bodyShape && finding.place == body && !body.isEmpty()) {
                const std::uint32_t front = isOneOf(body.start, "([<") ? 1 : 0, behind = isOneOf(body.end - 1, ")]>");
                const remedy_t open{{body.start, body.start + front}, "{"}, close{{body.end - behind, body.end}, "}"};
                for (const auto &one : {std::vector{open}, std::vector{close}, std::vector{open, close}})
                    all.push_back(one);
            } else if (finding.code == findingCode_t::noEndMarker && isError(finding)) {
                add({tree_.envelope().whole.end, tree_.envelope().whole.end}, "}!!");
            } else if (finding.code == findingCode_t::nestedMissing) {
                add({at, at}, "{");
            } else if (finding.code == findingCode_t::unbalancedBrace && !isBalanced(finding.path)) {
                if (isOneOf(at, "{}"))
                    add({at, at + 1}, "");
                constexpr std::size_t most = 100;
                for (std::uint32_t to = at; isOneOf(at, "{") && to < body.end && all.size() < most; ++to)
                    if (isOneOf(to, ";,}"))
                        add({to, to}, "}");
            }
        }
        return all;
    }

    // Whether as many braces are opened in a value as closed: then none of them is one too many.
    bool isBalanced(std::string_view path) const {
        const node_t *const node = tree_.find(path);
        const std::string_view value = node != nullptr ? tree_.value(*node) : std::string_view();
        return !value.empty() &&
               std::count(value.begin(), value.end(), '{') == std::count(value.begin(), value.end(), '}');
    }

    // Line ends that may be part of a value or not: the length does not tell.
    bool hasOddLineBreaks() const {
        const envelopeParts_t &envelope = tree_.envelope();
        return static_cast<std::size_t>(std::max(envelope.length.value, 0)) != envelope.rightLength &&
               envelope.body.in(tree_.text()).find_first_of("\r\n") != std::string_view::npos;
    }

    // All of them taken out, with what may stand behind; or a blank in the place of each.
    std::vector<std::vector<remedy_t>> withoutLineBreaks() const {
        std::vector<std::vector<remedy_t>> all;
        const place_t body = tree_.envelope().body;
        for (const std::string_view with : {"\r\n", "\r\n >"})
            for (const char *by : {"", " "}) {
                std::vector<remedy_t> breaks;
                for (const place_t place : lineBreaksIn(tree_.text(), body, with))
                    breaks.push_back({place, by});
                if (!breaks.empty())
                    all.push_back(std::move(breaks));
            }
        return all;
    }

    bool tryThese(const std::vector<std::size_t> &chosen) {
        const std::size_t cost = mending_.text.size() + costOfAny;
        isGivenUp_ = isGivenUp_ || budget_ < cost;
        if (isGivenUp_)
            return false;
        budget_ -= cost;
        std::vector<remedy_t> remedies;
        remedies.reserve(chosen.size());
        std::size_t errors = 0;
        for (const std::size_t i : chosen) {
            remedies.push_back(*mending_.left[i].remedy);
            errors += isError(mending_.left[i]) ? 1 : 0;
        }
        std::string text = applied(mending_.text, withLength(tree_, std::move(remedies)));
        const tree_t tree(text);
        const std::vector<finding_t> left = check(tree);
        const std::size_t before = errorsIn(mending_.left), after = errorsIn(left);
        if (after + errors > before || (errors == 0 && left.size() >= mending_.left.size()))
            return false; // one of them made nothing better
        if (!isRestKept(tree_, mending_.left, tree))
            return false;
        for (const std::size_t i : chosen)
            mending_.done.push_back(std::move(mending_.left[i]));
        take(std::move(text));
        return true;
    }

    void take(std::string text) {
        mending_.text = std::move(text);
        tree_.read(mending_.text);
        mending_.left = check(tree_);
    }

    tree_t tree_;
    mending_t mending_;
    static constexpr std::size_t costOfAny = 1000;
    std::size_t budget_;
    bool isGivenUp_ = false;
};

} // namespace

place_t lengthPlace(const envelopeParts_t &envelope) {
    const place_t old = envelope.length.place;
    const std::uint32_t wide = old.end - std::min<std::uint32_t>(old.end, lengthDigits);
    return {std::max(envelope.id.place.end + 1, std::min(old.start, wide)), old.end};
}

// It keeps its five places, so it does not change the length itself; of more only five are left.
remedy_t rightLength(const envelopeParts_t &envelope, std::size_t others) {
    const place_t place = lengthPlace(envelope);
    std::size_t room = std::min(place.size(), lengthDigits);
    std::string digits = std::to_string(others + room + 1);
    if (digits.size() > room) {
        room = digits.size();
        digits = std::to_string(others + room + 1);
    }
    digits.insert(0, room - std::min(room, digits.size()), ' ');
    return {place, std::move(digits)};
}

std::vector<remedy_t> withLength(const tree_t &tree, std::vector<remedy_t> remedies) {
    keepApart(remedies);
    const envelopeParts_t &envelope = tree.envelope();
    // Of the message, whatever stands around it.
    const bool isRight = !envelope.startMarker.isEmpty() && !envelope.endMarker.isEmpty() &&
                         std::cmp_equal(envelope.length.value, envelope.rightLength);
    if (!envelope.length.isThere || !(envelope.isBodyRead || isRight))
        return remedies;
    const place_t place = lengthPlace(envelope);
    if (std::any_of(remedies.begin(), remedies.end(), [place](const remedy_t &remedy) {
            return remedy.place.start < place.end && place.start < remedy.place.end;
        }))
        return remedies;
    const bool isOfWhole = envelope.isBodyRead;
    std::size_t others = (isOfWhole ? tree.text().size() : envelope.rightLength - 1) - place.size();
    for (const remedy_t &remedy : remedies)
        if (isOfWhole ||
            (remedy.place.start >= envelope.startMarker.end && remedy.place.end <= envelope.endMarker.start))
            others += remedy.text.size() - remedy.place.size();
    remedy_t length = rightLength(envelope, others);
    if (length.place.in(tree.text()) != length.text)
        remedies.push_back(std::move(length));
    keepApart(remedies);
    return remedies;
}

std::string applied(std::string_view text, std::span<const remedy_t> remedies) {
    std::string result;
    std::size_t at = 0;
    for (const remedy_t &remedy : remedies) {
        result += text.substr(at, remedy.place.start - at);
        result += remedy.text;
        at = remedy.place.end;
    }
    result += text.substr(at);
    return result;
}

std::string inWords(const remedy_t &remedy, std::string_view text) {
    const std::string_view old = remedy.place.in(text);
    return remedy.text.empty() ? joined({"take ", shownValue(old), " out"})
           : old.empty()       ? joined({"put ", shownValue(remedy.text), " in"})
                               : joined({"write ", shownValue(remedy.text), " for ", shownValue(old)});
}

bool mending_t::isSound() const {
    return std::none_of(left.begin(), left.end(), &isError);
}

mending_t mended(std::string_view text, std::size_t budget) {
    while (text.ends_with('\0')) // the rest of a buffer
        text.remove_suffix(1);
    mender_t mender(text, budget);
    mending_t mending = mender.mend();
    return mender.isGivenUp() ? mending_t{std::string(text), {}, check(tree_t(text))} : mending;
}

} // namespace vek::inspect
