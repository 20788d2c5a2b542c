#include "tools/vekmsg/reading/filter.hpp"

#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/api/envelope.hpp"
#include "vek/inspect/change/change.hpp"
#include "vek/inspect/words/nearest.hpp"

#include <algorithm>
#include <charconv>

namespace vek::tool {

namespace {

bool isOneOf(const std::vector<std::int32_t> &ids, const envelopeField_t &id) {
    return id.isThere && std::find(ids.begin(), ids.end(), id.value) != ids.end();
}

std::optional<double> asNumber(std::string_view text) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::optional<logTime_t> timeOf(const std::string &option, const std::string &words) {
    if (words.empty())
        return std::nullopt;
    std::optional<logTime_t> time = timeOfArgument(words);
    if (!time)
        throw usageError_t(option + " " + words + ": no time; write 2026-03-01T12:00:00, 2026-03-01 or 12:00");
    return time;
}

} // namespace

std::vector<std::int32_t> idsNamed(const std::vector<std::string> &words) {
    std::vector<std::int32_t> ids;
    for (const std::string &word : words) {
        const auto found = inspect::schema().findNamed(word);
        for (const inspect::messageSchema_t *message : found)
            ids.push_back(message->id);
        if (!found.empty())
            continue;
        if (std::all_of(word.begin(), word.end(), [](char c) { return c >= '0' && c <= '9'; }) && word.size() < 10) {
            ids.push_back(std::stoi(word)); // messages of an unknown id can be looked for, too
            continue;
        }
        std::vector<std::string_view> names;
        for (const inspect::messageSchema_t &message : inspect::schema().messages())
            if (message.record != nullptr)
                names.push_back(message.record->name);
        throw usageError_t("no message is called " + word + "; " +
                           inspect::didYouMean(word, names, "vekmsg list shows all"));
    }
    return ids;
}

filter_t::filter_t(const readingOptions_t &options)
    : ids_(idsNamed(options.ids)), since_(timeOf("--since", options.since)),
      until_(options.at.empty() ? timeOf("--until", options.until) : timeOf("--at", options.at)),
      times_(options.timeExpression), longest_(options.longest) {
    for (const std::string &words : options.conditions)
        conditions_.push_back(conditionOf(words));
}

filter_t::condition_t filter_t::conditionOf(const std::string &words) {
    const std::size_t place = words.find_first_of("=!<>~");
    if (place == std::string::npos || place == 0 || (words[place] == '!' && words.substr(place, 2) != "!="))
        throw usageError_t("--where " + words +
                           ": write PATH=VALUE, PATH!=VALUE, PATH<VALUE, PATH>VALUE or PATH~PART, in quotes");
    condition_t condition{words.substr(0, place), comparison_t::equal, words.substr(place + 1)};
    switch (words[place]) {
    case '!':
        condition.comparison = comparison_t::different;
        condition.value.erase(0, 1);
        break;
    case '<':
        condition.comparison = comparison_t::less;
        break;
    case '>':
        condition.comparison = comparison_t::greater;
        break;
    case '~':
        condition.comparison = comparison_t::contains;
        break;
    default:
        break;
    }
    return condition;
}

bool filter_t::holds(const condition_t &condition, const inspect::tree_t &tree) {
    const std::optional<std::string> value = inspect::valueAt(tree, condition.path);
    if (!value)
        return false;
    if (condition.comparison == comparison_t::contains)
        return value->find(condition.value) != std::string::npos;
    const std::optional<double> left = asNumber(*value), right = asNumber(condition.value);
    const bool isNumeric = left && right;
    switch (condition.comparison) {
    case comparison_t::less:
        return isNumeric ? *left < *right : *value < condition.value;
    case comparison_t::greater:
        return isNumeric ? *left > *right : *value > condition.value;
    case comparison_t::different:
        return isNumeric ? *left != *right : *value != condition.value;
    default:
        return isNumeric ? *left == *right : *value == condition.value;
    }
}

bool filter_t::passes(const item_t &item) const {
    if (!ids_.empty() && !isOneOf(ids_, readEnvelopeHead(item.text).id))
        return false;
    if (since_ || until_) {
        const std::optional<logTime_t> time = times_.in(item.lineHead);
        if (!time || (since_ && time->isBefore(*since_)) || (until_ && until_->isBefore(*time)))
            return false;
    }
    return std::all_of(conditions_.begin(), conditions_.end(),
                       [&item](const condition_t &condition) { return holds(condition, item.tree()); });
}

} // namespace vek::tool
