// vekmsg stats: how the numbers at a path are spread, all together or in groups.
//
// Memory is bounded: there are so many groups at most, which share the cells of their spreads.
#include "tools/vekmsg/commands/command.hpp"
#include "tools/vekmsg/commands/optionGroups.hpp"
#include "tools/vekmsg/figures/chart.hpp"
#include "tools/vekmsg/figures/grouping.hpp"
#include "tools/vekmsg/figures/spread.hpp"
#include "tools/vekmsg/reading/columns.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "tools/vekmsg/terminal/wrapping.hpp"
#include "vek/inspect/filter/expression.hpp"
#include "vek/inspect/forms/jsonAppender.hpp"
#include "vek/inspect/words/quoting.hpp"

#include <algorithm>
#include <cmath>
#include <map>

namespace vek::tool {

namespace {

struct statsArguments_t {
    readingOptions_t reading;
    colorOption_t color;
    std::string path, by;
    std::vector<std::string> percentiles{"50", "90", "99"};
    bool isJson = false;

    void declare(argumentList_t &list) {
        list.add(path, {.names = "PATH",
                        .about = "Where the numbers are: a path of values, LIST[*] for any element, @seq, @length",
                        .isRequired = true,
                        .pages = {"keys"}});
        reading.declareFiles(list);
        list.add(by, {.names = "--by",
                      .about = "In groups: by minute, hour, day, week or a time such as 10m, by kind, or by what "
                               "may be a column of table, such as before or another path",
                      .type = "GROUP",
                      .pages = {"keys"},
                      .such = {"minute", "hour", "day", "week", "kind", "before", "time", "file", "name"}});
        list.add(percentiles, {.names = "--percentiles",
                               .about = "Which ones, 50,90,99 when it is not said",
                               .type = "N,...",
                               .separator = ','});
        list.addFlag(isJson, "--json", "A JSON object a group, with its histogram");
        reading.declare(list, false);
        color.declare(list);
    }
};

class statsTask_t final : public task_t {
public:
    statsTask_t(const statsArguments_t &arguments, const grouping_t &grouping, const timeFinder_t &times)
        : arguments_(arguments), grouping_(grouping), times_(times) {}

    bool hasColours() const override { return true; }
    std::unique_ptr<task_t> fork() const override {
        return std::make_unique<statsTask_t>(arguments_, grouping_, times_);
    }
    void join(task_t &task) override {
        const auto &later = static_cast<statsTask_t &>(task);
        for (const auto &[group, spread] : later.groups)
            if (spread_t *own = spreadOf(group))
                own->join(spread);
        hasTooMany = hasTooMany || later.hasTooMany;
        others += later.others;
        ofDamaged += later.ofDamaged;
    }

    void take(const item_t &item) override {
        forEachOfColumn(item, times_, arguments_.path, [&](std::string_view value) {
            const std::optional<double> number = inspect::asNumber(value);
            if (!number || !std::isfinite(*number)) {
                ++others;
                return;
            }
            if (spread_t *spread = spreadOf(grouping_.of(item, times_)))
                spread->add(*number);
            ofDamaged += item.isDamaged && !arguments_.path.starts_with('@') ? 1 : 0;
        });
    }

    std::map<group_t, spread_t> groups;
    std::uint64_t others = 0, ofDamaged = 0;
    static constexpr std::size_t mostGroups = 1000;
    bool hasTooMany = false;

private:
    // Null when there are too many groups.
    spread_t *spreadOf(const group_t &group) {
        const auto found = groups.find(group);
        if (found != groups.end())
            return &found->second;
        hasTooMany = hasTooMany || groups.size() == mostGroups;
        if (hasTooMany)
            return nullptr;
        spread_t &spread = groups[group];
        while (cells_ * groups.size() > cellsOfAll) {
            cells_ /= 2;
            for (auto &[name, other] : groups)
                other.limitTo(cells_);
        }
        spread.limitTo(cells_);
        return &spread;
    }

    static constexpr std::size_t cellsOfAll = std::size_t{1} << 20;

    const statsArguments_t &arguments_;
    const grouping_t &grouping_;
    const timeFinder_t &times_;
    std::size_t cells_ = spread_t::mostCells; // of each
};

std::vector<double> percentsOf(const statsArguments_t &arguments) {
    std::vector<double> percents;
    for (const std::string &text : arguments.percentiles) {
        const std::optional<double> percent = inspect::asNumber(text);
        if (!percent || *percent < 0 || *percent > 100)
            throw usageError_t("--percentiles: " + text + " is no number from 0 to 100");
        if (std::ranges::find(percents, *percent) == percents.end())
            percents.push_back(*percent);
    }
    return percents;
}

// A column of figures; what of them can be done without gives way where there is no room.
struct figures_t {
    std::string title;
    std::vector<std::string> texts;
    int use;

    std::size_t width() const {
        std::size_t width = columnsOf(title);
        for (const std::string &text : texts)
            width = std::max(width, columnsOf(text));
        return width;
    }
};

using groups_t = std::map<group_t, spread_t>;

enum : int { rare = 1, usual, needed };

// Percentiles that were asked for stay.
std::vector<figures_t> figuresOf(const groups_t &groups, const std::vector<double> &percents) {
    const bool isUsual = percents == percentsOf({});
    std::vector<figures_t> columns{{"count", {}, needed}, {"min", {}, usual}, {"mean", {}, needed}};
    for (const double percent : percents)
        columns.push_back({"p" + numberText(percent), {}, isUsual ? rare : needed});
    columns.push_back({"max", {}, usual});
    for (const auto &[group, spread] : groups) {
        auto column = columns.begin();
        for (const std::string &text :
             {std::to_string(spread.count()), numberText(spread.least()), numberText(spread.mean())})
            (column++)->texts.push_back(text);
        for (const double percent : percents)
            (column++)->texts.push_back(numberText(spread.percentile(percent)));
        column->texts.push_back(numberText(spread.most()));
    }
    return columns;
}

constexpr std::string_view gap = "  ";

std::size_t widthOf(const std::vector<figures_t> &columns) {
    std::size_t width = 0;
    for (const figures_t &column : columns)
        width += gap.size() + column.width();
    return width;
}

// Without the last ones of such use, until the others have room.
void dropUntil(std::vector<figures_t> &columns, std::size_t room, int use) {
    while (widthOf(columns) > room) {
        const auto last = std::find_if(columns.rbegin(), columns.rend(),
                                       [use](const figures_t &column) { return column.use == use; });
        if (last == columns.rend())
            return;
        columns.erase(std::next(last).base());
    }
}

// A group's name in so many columns at most.
std::string nameOf(const group_t &group, std::size_t room) {
    std::string name = group.name;
    if (!inspect::isPrintable(name)) {
        name.clear();
        inspect::appendQuoted(name, group.name);
    }
    while (columnsOf(name) > room) {
        name.erase(name.size() - 2);
        while (!name.empty() && (static_cast<unsigned char>(name.back()) & 0xC0U) == 0x80U)
            name.pop_back();
        name += '~';
    }
    return name;
}

void writeTable(std::string &out, const groups_t &groups, const std::vector<double> &percents, bool isGrouped,
                const colours_t &colours) {
    constexpr std::size_t longestName = 28, shortestName = 12, shortestReach = 12, longestReach = 40;
    const std::size_t width = pageWidth();
    std::vector<figures_t> columns = figuresOf(groups, percents);
    std::size_t nameWidth = 0;
    double least = groups.begin()->second.least(), most = groups.begin()->second.most();
    for (const auto &[group, spread] : groups) {
        nameWidth = std::max(nameWidth, columnsOf(nameOf(group, longestName)));
        least = std::min(least, spread.least());
        most = std::max(most, spread.most());
    }
    dropUntil(columns, width - std::min(width, nameWidth + (isGrouped ? gap.size() + shortestReach : 0)), rare);
    dropUntil(columns, width - std::min(nameWidth, shortestName), usual);
    nameWidth = std::min(nameWidth, width - std::min(width, widthOf(columns)));
    const std::size_t taken = nameWidth + widthOf(columns) + gap.size();
    const std::size_t reach = isGrouped && taken + shortestReach <= width ? std::min(width - taken, longestReach) : 0;

    out.append(colours.bold).append(nameWidth, ' ');
    for (const figures_t &column : columns)
        out.append(isGrouped || &column != &columns.front() ? gap : "")
            .append(padded(column.title, column.width(), true));
    const std::string scale = numberText(least), scaleEnd = numberText(most);
    if (reach > scale.size() + scaleEnd.size())
        out.append(gap).append(scale).append(padded(scaleEnd, reach - scale.size(), true));
    out.append(colours.reset).append("\n");
    std::size_t row = 0;
    for (const auto &[group, spread] : groups) {
        out += padded(nameOf(group, nameWidth), nameWidth);
        for (const figures_t &column : columns)
            out.append(isGrouped || &column != &columns.front() ? gap : "")
                .append(padded(column.texts[row], column.width(), true));
        if (reach > 0)
            out.append(gap)
                .append(colours.cyan)
                .append(reachText(spread, least, most, reach, hasBlocks()))
                .append(colours.reset);
        out += '\n';
        ++row;
    }
}

void writeHistogram(std::string &out, const spread_t &spread, const colours_t &colours) {
    constexpr std::size_t longestBar = 50;
    const std::vector<bar_t> bars = histogramOf(spread);
    std::size_t labelWidth = 0, countWidth = 0;
    std::uint64_t largest = 1;
    for (const bar_t &bar : bars) {
        labelWidth = std::max(labelWidth, numberText(bar.from).size());
        countWidth = std::max(countWidth, std::to_string(bar.count).size());
        largest = std::max(largest, bar.count);
    }
    const std::size_t taken = labelWidth + 2 * gap.size() + countWidth;
    const std::size_t room = std::min(pageWidth() - std::min(pageWidth() - 1, taken), longestBar);
    for (const bar_t &bar : bars) {
        out += padded(numberText(bar.from), labelWidth, true);
        out.append(gap).append(padded(std::to_string(bar.count), countWidth, true));
        const double part = static_cast<double>(bar.count) / static_cast<double>(largest);
        if (bar.count > 0)
            out.append(gap).append(colours.cyan).append(barText(part, room, hasBlocks())).append(colours.reset);
        out += '\n';
    }
}

void writeJson(std::string &out, const statsArguments_t &arguments, const std::vector<double> &percents,
               const group_t &group, const spread_t &spread) {
    inspect::jsonAppender_t json(out);
    json.open('{');
    json.member("path", arguments.path);
    if (!arguments.by.empty()) {
        json.member("by", arguments.by);
        json.member("group", group.name);
    }
    json.member("count", spread.count());
    json.member("min", spread.least());
    json.member("mean", spread.mean());
    json.member("max", spread.most());
    json.object("percentiles", [&] {
        for (const double percent : percents)
            json.member("p" + numberText(percent), spread.percentile(percent));
    });
    json.member("error", spread.error());
    json.list("histogram", histogramOf(spread), [&](const bar_t &bar) {
        json.open('{');
        json.member("from", bar.from);
        json.member("to", bar.to);
        json.member("count", bar.count);
        json.close('}');
    });
    json.close('}');
    out += '\n';
}

void write(statsTask_t &task, const statsArguments_t &arguments, const std::vector<double> &percents) {
    const colours_t colours = arguments.color.colours();
    if (arguments.isJson) {
        for (const auto &[group, spread] : task.groups)
            writeJson(task.out, arguments, percents, group, spread);
        return;
    }
    writeTable(task.out, task.groups, percents, !arguments.by.empty(), colours);
    double error = 0;
    for (const auto &[group, spread] : task.groups)
        error = std::max(error, spread.error());
    if (error > 0)
        task.out += "percentiles within " + numberText(error * 100) + " %\n";
    if (arguments.by.empty()) {
        task.out += '\n';
        writeHistogram(task.out, task.groups.begin()->second, colours);
    }
}

void sayWhatIsLeftOut(const statsTask_t &task, const statsArguments_t &arguments) {
    if (task.others > 0)
        complain(std::to_string(task.others) + (task.others == 1 ? " value" : " values") + " of " + arguments.path +
                 (task.others == 1 ? " is no number" : " are no numbers") + "; vekmsg table --keys " + arguments.path +
                 " shows all");
    if (task.ofDamaged > 0)
        complain(std::to_string(task.ofDamaged) + " of the numbers " + (task.ofDamaged == 1 ? "stands" : "stand") +
                 " in damaged messages; vekmsg check says what a host makes of them");
}

int runStats(const statsArguments_t &arguments) {
    checkColumn("PATH", arguments.path);
    const std::vector<double> percents = percentsOf(arguments);
    const grouping_t grouping(arguments.by);
    const timeFinder_t times(arguments.reading.timeExpression, arguments.reading.zone);
    statsTask_t task(arguments, grouping, times);
    reader_t reader(arguments.reading, task);
    reader.run();
    if (task.hasTooMany)
        throw usageError_t("--by " + arguments.by + " makes more than " + std::to_string(statsTask_t::mostGroups) +
                           " groups; take what repeats, or longer slices of time");
    const exitCode_t status = reader.statusWithMessages();
    if (!task.groups.empty())
        write(task, arguments, percents);
    reader.flush();
    sayWhatIsLeftOut(task, arguments);
    if (status != exitFine || !task.groups.empty())
        return status;
    if (task.others == 0)
        complain("no " + arguments.path + " in what was read; vekmsg flat shows the paths of all values");
    return exitDifferences;
}

const commandOf_t<statsArguments_t>
    statsCommand({.order = 95,
                  .name = "stats",
                  .about = "How numbers are spread: count, mean, percentiles and a histogram, or in groups",
                  .examples = "  vekmsg stats FOCUS_VALUE device.log\n"
                              "  vekmsg stats FOCUS_VALUE --by day --since 2026-03-01 *.log\n"
                              "  vekmsg stats @length --by kind --json device.log\n"
                              "  vekmsg stats SEVERITY --by before device.log"},
                 runStats);

} // namespace

} // namespace vek::tool
