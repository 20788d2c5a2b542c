#include "vek/api/private/catalogue.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

namespace vek {

namespace {

// The rows of the table and the ids without a structure, in one order. Made and checked by the compiler: there is
// nothing to set up when the library is loaded, and a doubled id does not build.
constexpr auto catalogue = [] {
    std::array<catalogueRow_t, messages_t::size + std::size(bareIds)> rows{};
    std::size_t count = 0;
    messages_t::forEach([&]<class Message>(Message) {
        rows[count++] = {Message::id, &conversion<typename Message::structure_t, typename Message::record_t>,
                         service_t::full, Message::release};
    });
    for (const bareId_t &bare : bareIds)
        rows[count++] = {bare.id, nullptr, bare.write, bare.release};
    std::sort(rows.begin(), rows.end(), [](const auto &one, const auto &other) { return one.id < other.id; });
    return rows;
}();
static_assert(std::adjacent_find(catalogue.begin(), catalogue.end(),
                                 [](const auto &one, const auto &next) { return one.id == next.id; }) ==
                  catalogue.end(),
              "an id has two rows");

constexpr std::int32_t firstId = catalogue.front().id;
constexpr std::size_t idCount = static_cast<std::size_t>(catalogue.back().id - firstId) + 1;

// The row of each id, by its distance from the first: every conversion looks its id up, so it costs one index.
constexpr std::uint8_t noRow = UINT8_MAX;
constexpr auto rowOfId = [] {
    std::array<std::uint8_t, idCount> rows{};
    rows.fill(noRow);
    for (std::size_t row = 0; row < catalogue.size(); ++row)
        rows[static_cast<std::size_t>(catalogue[row].id - firstId)] = static_cast<std::uint8_t>(row);
    return rows;
}();

} // namespace

const catalogueRow_t *findInCatalogue(std::int32_t id) {
    // Ids below the first become very large distances: one comparison covers both ends, whatever a text says its id is.
    const auto distance = static_cast<std::size_t>(static_cast<std::uint32_t>(id) - std::uint32_t{firstId});
    const std::uint8_t row = distance < idCount ? rowOfId[distance] : noRow;
    return row != noRow ? &catalogue[row] : nullptr;
}

visitRecord_t visitOf(std::int32_t id) {
    visitRecord_t visit = nullptr;
    messages_t::forEach([id, &visit]<class Message>(Message) {
        if (Message::id == id)
            visit = &conversionOf<typename Message::structure_t, typename Message::record_t>::visit;
    });
    return visit;
}

std::span<const catalogueRow_t> catalogueRows() {
    return catalogue;
}

} // namespace vek
