// vekmsg diff: two messages, or two logs paired by id and sequence number, field by field.
#include "vek/inspect/change/diff.hpp"
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/optionGroups.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "vek/inspect/words/quoting.hpp"

#include <deque>
#include <map>
#include <utility>

namespace vek::tool {

namespace {

struct diffArguments_t {
    readingOptions_t reading;
    colorOption_t color;
    inspect::diffOptions_t diff;

    void declare(argumentList_t &list) {
        list.add(reading.files, {"FILE", "The two files"});
        list.add(diff.tolerance, {.names = "--tolerance",
                                  .about = "Numbers that differ by no more are the same",
                                  .type = "NUMBER",
                                  .least = 0});
        list.add(diff.ignored, {.names = "--ignore",
                                .about = "Leave out a path and all below it, or a key wherever it stands",
                                .type = "PATH",
                                .separator = ',',
                                .pages = {"keys"}});
        list.addFlag(diff.comparesHeader, "--header", "Compare echo tags and sequence numbers, too");
        reading.declare(list, false, false);
        color.declare(list);
    }
};

using key_t = std::pair<std::int32_t, std::int32_t>; // id and sequence number

// A message that waits for its partner in the other log.
struct waiting_t {
    std::string text, place;
    key_t key;
    bool isPaired = false;
};

// The messages of one input that wait, in order. What waits is bounded: the oldest gives up when there is too much.
class side_t {
public:
    static constexpr std::size_t room = std::size_t{4} << 20;

    void add(waiting_t message) {
        size_ += message.text.size() + sizeof(waiting_t);
        byKey_.emplace(message.key, gone_ + waiting_.size());
        waiting_.push_back(std::move(message));
    }
    std::optional<waiting_t> take(const key_t &key) {
        const auto first = byKey_.lower_bound(key);
        if (first == byKey_.end() || first->first != key)
            return std::nullopt;
        waiting_t &message = waiting_[first->second - gone_];
        size_ -= message.text.size();
        byKey_.erase(first);
        waiting_t taken = std::exchange(message, waiting_t());
        message.isPaired = true;
        return taken;
    }
    /// The oldest that waits, when there is too much or all are to go.
    std::optional<waiting_t> giveUp(bool isAll) {
        while (!waiting_.empty() && (isAll || size_ > room || waiting_.front().isPaired)) {
            waiting_t oldest = std::move(waiting_.front());
            waiting_.pop_front();
            ++gone_;
            size_ -= oldest.text.size() + sizeof(waiting_t);
            if (oldest.isPaired)
                continue;
            byKey_.erase(byKey_.lower_bound(oldest.key));
            return oldest;
        }
        return std::nullopt;
    }

private:
    std::deque<waiting_t> waiting_;
    std::multimap<key_t, std::size_t> byKey_; // numbers from the first message on, in order
    std::size_t gone_ = 0, size_ = 0;
};

class comparison_t {
public:
    comparison_t(const inspect::diffOptions_t &diff, const colours_t &colours) : colours_(colours), diff_(diff) {}

    void take(waiting_t message, bool isLeft) {
        side_t &own = isLeft ? left_ : right_, &other = isLeft ? right_ : left_;
        ++(isLeft ? leftCount_ : rightCount_);
        if (const std::optional<waiting_t> partner = other.take(message.key))
            return isLeft ? compare(message, *partner) : compare(*partner, message);
        own.add(std::move(message));
        while (const std::optional<waiting_t> alone = own.giveUp(false))
            say(*alone, isLeft);
    }

    void finish() {
        std::optional<waiting_t> left = left_.giveUp(true), right = right_.giveUp(true);
        if (left && right && leftCount_ == 1 && rightCount_ == 1)
            return compare(*left, *right);
        for (; left; left = left_.giveUp(true))
            say(*left, true);
        for (; right; right = right_.giveUp(true))
            say(*right, false);
    }

    std::string out;
    bool isDifferent = false;
    bool isEmpty() const { return leftCount_ == 0 || rightCount_ == 0; }

private:
    // Beside colours, nothing of a message passes for one.
    std::string shown(const std::string &value) const {
        return colours_.reset.empty() ? value : inspect::visible(value);
    }

    static std::string title(const inspect::tree_t &tree) {
        const std::string_view name = tree.record() != nullptr ? tree.record()->name : "message";
        return std::string(name) + " " + std::to_string(tree.envelope().id.value) + ", sequence " +
               std::to_string(tree.envelope().sequenceNumber.value);
    }

    void say(const waiting_t &alone, bool isLeft) {
        isDifferent = true;
        out.append(isLeft ? colours_.red : colours_.green).append(isLeft ? "--- " : "+++ ");
        out.append(alone.place).append("  ").append(title(inspect::tree_t(alone.text)));
        out.append(isLeft ? " has no partner" : " is new").append(colours_.reset).append("\n");
    }

    void compare(const waiting_t &left, const waiting_t &right) {
        if (left.text == right.text)
            return;
        const inspect::tree_t leftTree(left.text), rightTree(right.text);
        const std::vector<inspect::difference_t> found = inspect::differences(leftTree, rightTree, diff_);
        if (found.empty())
            return;
        isDifferent = true;
        out.append(colours_.bold).append(left.place).append("  ").append(right.place).append("  ");
        out.append(title(leftTree)).append(colours_.reset).append("\n");
        std::size_t width = 0;
        for (const inspect::difference_t &difference : found)
            width = std::max(width, std::min<std::size_t>(difference.path.size(), 40));
        for (const inspect::difference_t &difference : found) {
            out.append("  ").append(colours_.cyan).append(difference.path).append(colours_.reset);
            out.append(width - std::min(width, difference.path.size()) + 2, ' ');
            out.append(colours_.red).append(difference.hasLeft ? shown(difference.left) : "(not there)");
            out.append(colours_.reset).append(" -> ").append(colours_.green);
            out.append(difference.hasRight ? shown(difference.right) : "(not there)").append(colours_.reset);
            out += '\n';
        }
    }

    const colours_t &colours_;
    const inspect::diffOptions_t &diff_;
    side_t left_, right_;
    std::uint64_t leftCount_ = 0, rightCount_ = 0;
};

class sideTask_t final : public task_t {
public:
    sideTask_t(comparison_t &comparison, bool isLeft) : comparison_(comparison), isLeft_(isLeft) {}

    void take(const item_t &item) override {
        const inspect::envelopeParts_t envelope = inspect::takeEnvelopeApart(item.whole);
        comparison_.take({std::string(item.text), item.place(), {envelope.id.value, envelope.sequenceNumber.value}},
                         isLeft_);
    }

private:
    comparison_t &comparison_;
    const bool isLeft_;
};

int runDiff(const diffArguments_t &arguments) {
    const std::vector<std::string> &files = arguments.reading.files;
    if (files.size() != 2 || (files[0] == "-" && files[1] == "-"))
        throw usageError_t("diff compares two files: vekmsg diff A B, of which one may be - for standard input");
    const colours_t colours = arguments.color.colours();
    comparison_t comparison(arguments.diff, colours);
    sideTask_t left(comparison, true), right(comparison, false);
    const readingOptions_t leftOptions = arguments.reading.ofFile(files[0]),
                           rightOptions = arguments.reading.ofFile(files[1]);
    reader_t leftReader(leftOptions, left), rightReader(rightOptions, right);

    // Block by block in turn, so that partners meet early.
    bool isLeftOpen = leftReader.open(), isRightOpen = rightReader.open();
    while (isLeftOpen || isRightOpen) {
        isLeftOpen = isLeftOpen && leftReader.step();
        isRightOpen = isRightOpen && rightReader.step();
        writeText(1, comparison.out, true);
        comparison.out.clear();
    }
    const exitCode_t status = std::max(leftReader.statusWithMessages(), rightReader.statusWithMessages());
    if (status != exitFine)
        return exitUsage; // nothing was compared
    comparison.finish();
    writeText(1, comparison.out, true);
    return comparison.isDifferent ? exitDifferences : exitFine;
}

const commandOf_t<diffArguments_t>
    diffCommand({.order = 120,
                 .name = "diff",
                 .about = "Compare two messages, or two logs by id and sequence number, field by field",
                 .examples = "  vekmsg diff before.txt after.txt\n"
                             "  vekmsg diff --tolerance 0.001 --ignore MEDIA_NAME yesterday.log today.log"},
                runDiff);

} // namespace

} // namespace vek::tool
