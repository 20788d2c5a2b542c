// However a text is made, converting it takes time in proportion to its length.
#include "tests/support/messages.hpp"
#include "vek/api/envelope.hpp"
#include "vek/api/framer.hpp"
#include "vek/api/private/catalogue.hpp"
#include "vek/text/textField.hpp"
#include "vek/vek_std/std_sys/private/vek_spareBodies.hpp"

#include <gtest/gtest.h>

#ifdef __GLIBC__
#    include <malloc.h>
#endif

#include <algorithm>
#include <chrono>
#include <ctime>
#include <string>
#include <vector>

namespace {

using namespace vek;
using namespace vek::test;
using seconds_t = std::chrono::duration<double>;

const std::size_t size = static_cast<std::size_t>(rounds(1000000)) + 200000;

std::string filled(const std::string &piece) {
    std::string all;
    while (all.size() < size)
        all += piece;
    return all;
}

// "KEYi=value;" with numbers from 0, or down to it.
std::string numbered(const std::string &key, const std::string &value, bool isDescending = false) {
    const std::size_t count = size / (key.size() + value.size() + 7);
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += key + std::to_string(isDescending ? count - 1 - i : i) + '=' + value + ';';
    return all;
}

struct shape_t {
    const char *name;
    std::int32_t id;
    std::string body;
};

const shape_t shapes[] = {
    {"opening braces", 4106, "{NAME=" + std::string(size, '{') + "}"},
    {"nested braces", 4106, "{NAME=" + std::string(size / 2, '{') + std::string(size / 2, '}') + ";}"},
    {"nested braces as list", 4107, "{ARRAY_RES_INT=" + std::string(size / 2, '{') + std::string(size / 2, '}') + ";}"},
    {"open records in each other", 4101, '{' + filled("ARRAY_CASSETTE={{VERSION={") + '}'},
    {"quotes", 4106, '{' + std::string(size, '"') + '}'},
    {"separators", 4106, '{' + filled(";,=") + '}'},
    {"empty values", 4106, '{' + filled("NAME=;") + '}'},
    {"unknown keys", 4165, '{' + filled("X=1;") + '}'},
    {"values without keys, then one with a key", 4165, '{' + filled("1,") + "DRUM_ID=1;}"},
    {"list with numbered keys", 4119, "{DATA_PATH_PORT={" + numbered("DATA_PATH_PORT", "1") + "};}"},
    {"list with keys numbered down", 4119, "{DATA_PATH_PORT={" + numbered("DATA_PATH_PORT", "1", true) + "};}"},
    {"list with one key", 4119, "{DATA_PATH_PORT={" + filled("DATA_PATH_PORT7=1;") + "};}"},
    {"list whose last value has a key", 4119, "{DATA_PATH_PORT={" + filled("1,") + "DATA_PATH_PORT1=1;};}"},
    {"array with numbered keys", 4161, "{MSGS={" + numbered("MSGS", "1") + "};}"},
    {"surplus values of an array", 4171, "{COLOR_TABLE={" + filled("{1,2,},") + "};}"},
    {"range", 4096, "{SPINNER_SPEED={" + filled("1.5,") + "};SPINNER_SPEED_RANGE_TYPE=continuous_e;}"},
    {"16-bit texts with numbered keys", 4193, "{SEP_LIST={" + numbered("SEP_LIST", "{SEP_LIST00=5;}") + "};}"},
    {"long 16-bit text", 4194, "{JOB_NAME={" + numbered("JOB_NAME", "5", true) + "};}"},
    {"digits of an integer", 4118, "{DEVICE_STATE=" + std::string(size, '9') + ";}"},
    {"digits of a real", 4112, "{FOCUS_VALUE=" + std::string(size, '7') + ";}"},
    {"digits of an exponent", 4112, "{FOCUS_VALUE=1e" + std::string(size, '9') + ";}"},
    {"white space", 4112, "{FOCUS_VALUE=" + std::string(size, ' ') + "7;}"},
    {"text to escape", 4202, "{INFO=" + filled("\1\2\3\4\5") + ";}"},
};

seconds_t timeOf(std::int32_t id, const std::string &body) {
    const std::string text = message(id, body);
    seconds_t best(1e9);
    for (int i = 0; i < 3 && (i == 0 || best < seconds_t(5)); ++i) {
        const std::clock_t start = std::clock(); // of the processor: other programs may run beside the tests
        const structure_t structure(text);
        written(id, structure.address);
        best = std::min(best, seconds_t(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC));
    }
    return best;
}

TEST(Time, IsProportionalToTheLengthOfTheText) {
    const seconds_t good = timeOf(4107, "{ARRAY_RES_INT={" + filled("{NUM=12;NAME=table;},") + "};}");
    for (const shape_t &shape : shapes)
        EXPECT_LT(timeOf(shape.id, shape.body), 10 * good + seconds_t(0.05))
            << shape.name << ", where well-formed text of that length takes " << good.count() << " s";
}

#ifdef __GLIBC__
std::vector<std::string> listKeys(std::int32_t id) {
    struct lists_t : recordVisitor_t {
        void visit(const recordDescription_t &record) override {
            for (const textField_t *field = record.fields.firstMember(); field != nullptr;
                 field = field->nextMember()) {
                fieldDescription_t description;
                field->describe(description);
                if (description.list || description.kind == fieldKind_t::text16)
                    keys.emplace_back(field->key());
            }
        }
        std::vector<std::string> keys;
    } lists;
    visitOf(id)(lists);
    return lists.keys;
}

// What a text can cost, short or long: of every list, as many elements as there is room for. As docs/hosts.md says it.
TEST(Cost, OfAStructureIsInProportionToItsText) {
    if (isInstrumented)
        GTEST_SKIP() << "the sanitizers have an allocator of their own";
    mostSpareBodies = 0; // what an earlier text left would not be counted
    constexpr std::size_t structureOfNothing = 4200, textOfNothing = 6800, aCharacter = 120, writtenOfACharacter = 200;
    const auto used = [] { return mallinfo2().uordblks + mallinfo2().hblkhd; };
    const auto expectBounded = [&](const std::string &text) {
        const std::size_t before = used();
        const structure_t structure(text);
        const std::size_t taken = used() - before, out = written(structure.id, structure.address).size();
        EXPECT_LE(taken, structureOfNothing + aCharacter * text.size()) << text.substr(0, 100);
        EXPECT_LE(out, textOfNothing + writtenOfACharacter * text.size()) << text.substr(0, 100);
    };
    for (const catalogueRow_t &row : catalogueRows()) {
        if (row.conversion == nullptr)
            continue;
        expectBounded("@@" + std::to_string(row.id));
        for (const std::string &key : listKeys(row.id))
            for (const std::string element : {"\"\",", "1,", "{},", "{1,},"})
                for (const std::size_t longest : {1U, 1000U, 20000U}) {
                    std::string body = "{" + key + "={";
                    while (body.size() < longest)
                        body += element;
                    expectBounded(message(row.id, body + "};}"));
                }
    }
}

// Of a line on which messages begin and never end. A string has up to twice the room that it needs.
TEST(Cost, OfAFramerIsAMessageAndAPiece) {
    if (isInstrumented)
        GTEST_SKIP() << "the sanitizers have an allocator of their own";
    const std::size_t before = mallinfo2().uordblks;
    const std::string piece = "@@4118 99999 7 42 {" + std::string(999, 'x');
    std::size_t most = 0;
    framer_t framer;
    for (int i = 0; i < 1000; ++i) {
        framer.feed(piece, [](const auto &) {});
        most = std::max(most, mallinfo2().uordblks - before - piece.size());
    }
    EXPECT_LE(most, 2 * (99'999 + piece.size()));
    EXPECT_GE(most, 99'999U);
}
#endif

} // namespace
