// The table of the typed front against the catalogue: an id that one of them lacks, or ties to another structure,
// would convert memory as what it is not.
#include "vek/api/messageTable.hpp"
#include "vek/api/private/catalogue.hpp"
#include "vek/text/private/typeName.hpp"

#include <gtest/gtest.h>

#include <map>
#include <string_view>
#include <type_traits>

namespace {

using namespace vek;

struct structureSeen_t : recordVisitor_t {
    std::string_view name;
    std::size_t size = 0;
    void visit(const recordDescription_t &description) override {
        name = description.structure;
        size = description.size;
    }
};

TEST(MessageTable, IsTheCatalogueAsFarAsIdsHaveStructures) {
    std::map<std::int32_t, int> rows;
    messages_t::forEach([&]<class Message>(Message) {
        using structure_t = typename Message::structure_t;
        SCOPED_TRACE(Message::id);
        ++rows[Message::id];
        const catalogueRow_t *row = findInCatalogue(Message::id);
        ASSERT_TRUE(row != nullptr && row->conversion != nullptr);
        structureSeen_t structure;
        row->conversion->visit(structure);
        EXPECT_EQ(structure.name, typeName<structure_t>());
        EXPECT_EQ(structure.size, sizeof(structure_t));
        EXPECT_EQ(row->reading != reading_t::plain, std::has_virtual_destructor_v<structure_t>);
        EXPECT_EQ(row->release == release_t::invalid, Message::releasedBy == releasedBy_t::destructor);
    });
    for (const catalogueRow_t &row : catalogueRows())
        EXPECT_EQ(rows[row.id], row.reading == reading_t::none ? 0 : 1) << row.id;
}

} // namespace
