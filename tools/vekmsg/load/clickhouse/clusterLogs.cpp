#include "tools/vekmsg/load/clickhouse/clusterLogs.hpp"

#include "vek/inspect/archive/front.hpp"

namespace vek::tool {

namespace {

std::string nameOf(const std::string &log, int number) {
    return number == 1 ? log : log + "#" + std::to_string(number);
}

} // namespace

logBeginning_t::logBeginning_t(const inspect::row_t &message) {
    parts[offset] = static_cast<std::int64_t>(message.front.byteOffset);
    parts[line] = static_cast<std::int64_t>(message.front.line);
    for (std::size_t at = 0; at < message.cells.size(); ++at)
        if (message.table.columns[at].name == "id")
            parts[id] = message.cells[at].integer;
    parts[echoTag] = message.echoTag.value_or(0);
    parts[sequenceNumber] = message.sequenceNumber.value_or(0);
    if (const std::optional<std::int64_t> kept = inspect::clickhouseSeconds(message.front.time)) {
        parts[second] = *kept;
        parts[microsecond] = message.front.time->microsecond();
    }
}

std::vector<std::string> clusterLogs_t::expect(std::span<const std::string> names) {
    std::vector<std::string> unknown, there;
    for (const std::string &name : names)
        for (const int number : {1, 2})
            if (!known_.contains(nameOf(name, number)))
                unknown.push_back(nameOf(name, number));
    ask(unknown);
    for (const std::string &source : unknown)
        if (known_[source])
            there.push_back(source);
    return there;
}

clusterLogs_t::found_t clusterLogs_t::find(const std::string &name, const logBeginning_t &beginning) {
    for (int number = 1;; ++number) {
        const std::string source = nameOf(name, number);
        if (!known_.contains(source))
            ask({&source, 1});
        std::optional<logBeginning_t> &known = known_[source];
        if (known && *known != beginning)
            continue;
        const bool isNew = !known;
        known = beginning;
        return {source, isNew};
    }
}

void clusterLogs_t::ask(std::span<const std::string> sources) {
    const std::string numbers = "toString(byte_offset), ' ', toString(line), ' ', toString(ifNull(id, 0)), ' ', "
                                "toString(ifNull(echo_tag, 0)), ' ', toString(ifNull(sequence_number, 0)), ' ', "
                                "toString(toUInt32(ifNull(log_time, toDateTime(0)))), ' ', toString(log_microsecond)";
    server_.inPieces(sources, 1, [&](std::span<const std::string> some, const std::string &constants) {
        for (const std::string &source : some)
            known_[source].reset();
        const std::string statement = "SELECT hex(source), argMin(concat(" + numbers +
                                      "), byte_offset) FROM messages WHERE source IN (" + constants +
                                      ") GROUP BY source";
        std::unordered_map<std::string, std::string> byHex;
        for (const std::string &source : some)
            byHex[sqlHex(source)] = source;
        for (const std::vector<std::string> &line : server_.table(statement)) {
            logBeginning_t beginning;
            const char *at = line[1].c_str();
            for (std::int64_t &part : beginning.parts) {
                char *end = nullptr;
                part = std::strtoll(at, &end, 10);
                at = end;
            }
            if (const auto source = byHex.find(line[0]); source != byHex.end())
                known_[source->second] = beginning;
        }
    });
}

} // namespace vek::tool
