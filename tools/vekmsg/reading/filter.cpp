#include "tools/vekmsg/reading/filter.hpp"

#include "tools/vekmsg/terminal/problem.hpp"
#include "vek/api/envelope.hpp"
#include "vek/inspect/words/nearest.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>

namespace vek::tool {

namespace {

bool isOneOf(const std::vector<std::int32_t> &ids, const envelopeField_t &id) {
    return id.isThere && std::find(ids.begin(), ids.end(), id.value) != ids.end();
}

std::optional<givenTime_t> timeOf(const std::string &option, const std::optional<std::string> &words,
                                  const zone_t &zone) {
    if (!words)
        return std::nullopt;
    std::optional<givenTime_t> time = timeOfArgument(*words, zone);
    if (!time)
        throw usageError_t(option + " " + *words +
                           ": no time; write 2026-03-01T12:00:00, 2026-03-01, 12:00, -2h, today or yesterday");
    return time;
}

} // namespace

std::vector<std::int32_t> idsNamed(const std::vector<std::string> &words, const std::string &option) {
    std::vector<std::int32_t> ids;
    for (const std::string &word : words) {
        const auto found = inspect::schema().findNamed(word);
        for (const inspect::messageSchema_t *message : found)
            ids.push_back(message->id);
        if (!found.empty())
            continue;
        if (!word.empty() && word.size() < 10 && word.find_first_not_of("0123456789") == std::string::npos) {
            ids.push_back(std::stoi(word)); // messages of an unknown id can be looked for, too
            continue;
        }
        std::vector<std::string_view> names;
        for (const inspect::messageSchema_t &message : inspect::schema().messages())
            if (message.record != nullptr)
                names.push_back(message.record->name);
        throw usageError_t(inspect::joined({option, option.empty() ? "" : ": ", "no message is called ", word, "; ",
                                            inspect::didYouMean(word, names, "vekmsg list shows all")}));
    }
    return ids;
}

filter_t::filter_t(const readingOptions_t &options)
    : ids_(idsNamed(options.ids, "--id")), times_(options.timeExpression, options.zone),
      since_(timeOf("--since", options.since, times_.zone())),
      until_(options.at ? timeOf("--at", options.at, times_.zone()) : timeOf("--until", options.until, times_.zone())),
      longest_(options.longest) {
    for (const std::string &words : options.conditions)
        if (const std::optional<inspect::expressionError_t> error = conditions_.emplace_back().read(words, ids_))
            throw usageError_t("--where: " + error->inText(words));
}

// A time of day alone is compared with what the clock of the zone shows.
bool filter_t::isInTime(const logTime_t &time) const {
    const auto comparable = [&](const givenTime_t &given) {
        return given.local.hasDate ? time : times_.zone().onClock(time);
    };
    return (!since_ || !comparable(*since_).isBefore(since_->as(time))) &&
           (!until_ || !until_->as(time).isBefore(comparable(*until_)));
}

bool filter_t::passes(const item_t &item) const {
    if (!ids_.empty() && !isOneOf(ids_, item.head.id))
        return false;
    if (since_ || until_) {
        const std::optional<logTime_t> time = times_.in(item.lineHead);
        if (!time || !isInTime(*time))
            return false;
    }
    return std::all_of(conditions_.begin(), conditions_.end(),
                       [&item](const inspect::expression_t &condition) { return condition.holds(item.tree()); });
}

} // namespace vek::tool
