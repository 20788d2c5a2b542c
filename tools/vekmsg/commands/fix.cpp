// vekmsg fix: what is certain is mended, each message shown as a difference first.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/optionGroups.hpp"
#include "tools/vekmsg/reading/messageOutput.hpp"
#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/inspect/change/mending.hpp"
#include "vek/inspect/words/quoting.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

struct fixArguments_t {
    readingOptions_t reading;
    colorOption_t color;
    inPlaceOption_t inPlace;
    bool isAgreed = false, isQuiet = false;

    void declare(argumentList_t &list) {
        reading.declareFiles(list);
        inPlace.declare(list);
        list.addFlag(isAgreed, "-y,--yes", "With --in-place: don't ask");
        list.addFlag(isQuiet, "-q,--quiet", "Don't show what is mended, only what is left");
        color.declare(list);
        reading.declare(list, true, false);
    }
};

using inspect::joined;

// Where two texts differ, by a stretch of each.
struct hunk_t {
    inspect::place_t before, after;
};

// Edits of a message are few and small: behind one, both texts go on alike for a while.
std::vector<hunk_t> hunksOf(std::string_view before, std::string_view after) {
    std::vector<hunk_t> hunks;
    constexpr std::size_t alike = 6, furthest = 200;
    std::size_t i = 0, j = 0;
    const auto place = [](std::size_t start, std::size_t end) {
        return inspect::place_t{static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end)};
    };
    while (i < before.size() || j < after.size()) {
        if (i < before.size() && j < after.size() && before[i] == after[j]) {
            ++i;
            ++j;
            continue;
        }
        std::size_t iEnd = before.size(), jEnd = after.size();
        for (std::size_t sum = 1; sum <= furthest && iEnd == before.size(); ++sum)
            for (std::size_t own = 0; own <= sum; ++own) {
                const std::size_t at = i + own, other = j + sum - own;
                if (at < before.size() && other < after.size() &&
                    before.substr(at, alike) == after.substr(other, alike)) {
                    iEnd = at;
                    jEnd = other;
                    break;
                }
            }
        hunks.push_back({place(i, iEnd), place(j, jEnd)});
        i = iEnd;
        j = jEnd;
    }
    return hunks;
}

class fixTask_t final : public messageTask_t {
public:
    explicit fixTask_t(const fixArguments_t &arguments)
        : arguments_(arguments), colours_(arguments.color.colours(2)), isAgreed_(arguments.isAgreed) {}

    /// Says what was done, at the end.
    void finish() const {
        std::string words;
        const auto count = [&words](std::uint64_t number, std::string_view what) {
            if (number > 0)
                words += joined({words.empty() ? "" : ", ", std::to_string(number),
                                 number == 1 ? " message " : " messages ", what});
        };
        count(mended_, "mended");
        count(kept_, isTerminal(0) ? "left alone" : "to be mended (--yes does it)");
        count(open_, "with errors that need you");
        if (isAny_ && (!arguments_.isQuiet || kept_ + open_ > 0))
            complain(words.empty() ? "nothing to mend" : words);
    }

private:
    std::optional<std::string> made(const item_t &item) override {
        isAny_ = true;
        inspect::mending_t mending = inspect::mended(item.whole);
        const bool isChanged = mending.text != item.whole;
        if (isChanged && !arguments_.isQuiet)
            show(item, mending);
        tellLeft(item, mending);
        open_ += mending.isSound() ? 0 : 1;
        if (!mending.isSound())
            status = exitDifferences;
        isAsItWas = !isChanged || (rewriter != nullptr && !isWanted());
        if (isChanged)
            ++(isAsItWas ? kept_ : mended_);
        if (isChanged && isAsItWas)
            status = exitDifferences;
        return inForm(item, isAsItWas ? std::string(item.whole) : std::move(mending.text));
    }

    // In place a form stays one.
    std::string inForm(const item_t &item, std::string text) const {
        if (rewriter == nullptr || isAsItWas || !inspect::isForm(item.form))
            return text;
        std::string form;
        const inspect::tree_t tree(text);
        if (item.form == inspect::form_t::show)
            inspect::appendShow(form, tree);
        else if (item.form == inspect::form_t::flat)
            inspect::appendFlat(form, tree);
        else
            inspect::appendJson(form, tree);
        return form;
    }

    void show(const item_t &item, const inspect::mending_t &mending) {
        std::string words;
        for (const inspect::finding_t &finding : mending.done)
            words += joined({colours_.bold, item.place(), colours_.reset, ": ", finding.message, colours_.dim, " [",
                             inspect::findingName(finding.code), "]", colours_.reset, "\n"});
        const std::vector<hunk_t> hunks = hunksOf(item.whole, mending.text);
        appendSide(words, "- ", colours_.red, item.whole, hunks, &hunk_t::before);
        appendSide(words, "+ ", colours_.green, mending.text, hunks, &hunk_t::after);
        writeText(2, words, true);
    }

    // A line of one of the two texts; of a long one what stands around its changes.
    void appendSide(std::string &words, std::string_view sign, std::string_view colour, std::string_view text,
                    const std::vector<hunk_t> &hunks, inspect::place_t hunk_t::*side) const {
        constexpr std::size_t most = 200, around = 24;
        const auto shown = [](std::string_view bytes) {
            std::string visible = inspect::visible(bytes);
            std::ranges::replace(visible, '\n', ' ');
            return visible;
        };
        words += joined({colour, sign, colours_.reset});
        std::size_t at = 0;
        for (const hunk_t &hunk : hunks) {
            const inspect::place_t place = hunk.*side;
            appendBetween(words, text.substr(at, place.start - at), text.size() > most ? around : most, at == 0, shown);
            words += joined({colour, shown(place.in(text)), colours_.reset});
            at = place.end;
        }
        const std::string_view rest = text.substr(at);
        const bool isCut = text.size() > most && rest.size() > around;
        words += joined({shown(isCut ? rest.substr(0, around) : rest), isCut ? "..." : "", "\n"});
    }

    template <typename shown_t>
    static void appendBetween(std::string &words, std::string_view text, std::size_t around, bool isFirst,
                              const shown_t &shown) {
        if (text.size() <= 2 * around)
            words += shown(text);
        else
            words +=
                joined({isFirst ? "" : shown(text.substr(0, around)), "...", shown(text.substr(text.size() - around))});
    }

    void tellLeft(const item_t &item, const inspect::mending_t &mending) const {
        for (const inspect::finding_t &finding : mending.left) {
            const bool isError = finding.severity == inspect::severity_t::error;
            writeText(2,
                      joined({colours_.bold, item.place(), ": ", isError ? colours_.red : colours_.magenta,
                              isError ? "error: " : "warning: ", colours_.reset, finding.inWords(), colours_.dim, " [",
                              inspect::findingName(finding.code), "]", colours_.reset, "\n"}),
                      true);
        }
    }

    bool isWanted() {
        if (isAgreed_ || isDeclined_)
            return isAgreed_;
        if (!isTerminal(0) || !isTerminal(2))
            return false;
        for (;;) {
            writeText(2, "mend it? y (yes), n (no), a (yes to all), q (no to all): ");
            const std::string answer = readLine().value_or("q").substr(0, 1);
            isAgreed_ = answer == "a";
            isDeclined_ = answer == "q";
            if (answer == "y" || isAgreed_)
                return true;
            if (answer == "n" || isDeclined_)
                return false;
        }
    }

    const fixArguments_t &arguments_;
    const colours_t colours_;
    bool isAgreed_, isDeclined_ = false, isAny_ = false;
    std::uint64_t mended_ = 0, kept_ = 0, open_ = 0;
};

int runFix(const fixArguments_t &arguments) {
    if (arguments.isAgreed && !arguments.inPlace.isInPlace)
        throw usageError_t("--yes goes with --in-place; without it nothing is asked, and what is mended goes to "
                           "standard output");
    readingOptions_t reading = arguments.reading;
    reading.forms.isRaw = true; // what is said, to be mended
    fixTask_t task(arguments);
    task.keepsBackup = true;
    const int status = writeMessages(reading, arguments.inPlace.isInPlace, task);
    task.finish();
    return status;
}

const commandOf_t<fixArguments_t>
    fixCommand({.order = 28,
                .name = "fix",
                .about = "Mend what is certain: length, markers, misspelt names, commas, what stands around",
                .examples = "  vekmsg fix focus.txt > new.txt\n"
                            "  vekmsg fix --in-place device.log\n"
                            "  vekmsg fix --in-place --yes edited/*.txt"},
               runFix);

} // namespace

} // namespace vek::tool
