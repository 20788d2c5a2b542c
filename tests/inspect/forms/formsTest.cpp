// Every form gives back the very text, whatever the text; and the tree says what the library reads.
#include "vek/inspect/forms/forms.hpp"
#include "tests/support/promises.hpp"
#include "tests/support/texts.hpp"
#include "vek/inspect/change/seal.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/words.hpp"
#include "vek/text/characters.hpp"

#include <gtest/gtest.h>

namespace {

using namespace vek;
using namespace vek::inspect;
using namespace vek::test;

struct formCase_t {
    const char *name;
    form_t form;
    void (*write)(std::string &out, const tree_t &tree);
};

const formCase_t forms[] = {
    {"show", form_t::show, [](std::string &out, const tree_t &tree) { appendShow(out, tree); }},
    {"show with findings", form_t::show,
     [](std::string &out, const tree_t &tree) {
         const std::vector<finding_t> findings = check(tree);
         showOptions_t options;
         options.findings = findings;
         options.other = &tree;
         options.noteChanges = true;
         appendShow(out, tree, options);
     }},
    {"json", form_t::json,
     [](std::string &out, const tree_t &tree) {
         const std::vector<finding_t> findings = check(tree);
         jsonAppender_t json(out);
         json.open('{');
         json.member("file", "a {b}");
         json.member("line", 3);
         appendJsonMembers(json, tree, {.findings = findings});
         json.close('}');
     }},
    {"flat", form_t::flat, [](std::string &out, const tree_t &tree) { appendFlat(out, tree); }},
};

TEST(Forms, GiveBackTheVeryText) {
    forEachText(rounds(8000), [](const std::string &text) {
        if (testing::Test::HasFailure())
            return;
        const tree_t tree(text);
        for (const formCase_t &one : forms) {
            std::string form;
            one.write(form, tree);
            EXPECT_EQ(formOf(form), one.form) << form;
            const std::vector<std::string_view> split = splitForms(form, one.form);
            ASSERT_EQ(split.size(), 1U) << one.name << "\n" << form;
            const formResult_t read = readForm(split.front(), one.form);
            EXPECT_EQ(shown(read.text), shown(std::string(withoutNul(text)))) << one.name << ": " << read.error << "\n"
                                                                              << form;
        }
    });
}

TEST(Forms, MakeTheSameJsonWithoutATree) {
    std::size_t made = 0;
    const auto look = [&made](const std::string &text) {
        made += isPlainlyClean(text) ? 1 : 0;
        EXPECT_EQ(brokenOfWrittenJson(text), "") << shown(text);
    };
    for (const char *codes : {"{}", "{0,}", "{0,0,}", "{72,}", "{72,0,}", "{34,92,10,0,}", "{-3,0,}", "{-4224,0,}",
                              "{-10240,0,}", "{-9216,-10240,0,}", "{-10240,-9216,0,}"})
        look(message(4194, joined({"{JOB_NAME=", codes, ";JOB_ID=1;}"})));
    EXPECT_GT(made, 5U);
    for (const char *value : {"1.5", "-0.0", "inf", "-nan", "1e299", "1e308", "9007199254740993"})
        look(message(4112, joined({"{MEDIA_NAME=a\"\\b\2\xC3\xA4\xFF;FOCUS_VALUE=", value, ";}"})));
    forEachText(rounds(8000), look);
    EXPECT_GT(made, samples().size());
}

// What the reader uses of a message, spelt in the plainest way.
std::string used(const tree_t &tree, const node_t &node) {
    const auto value = [&](const node_t &child) {
        if (child.isBody)
            return used(tree, child);
        std::string text(tree.value(child));
        const bool isText = child.field->kind == fieldKind_t::text;
        for (char &c : text) // as codes, which a text is read by; a number ends where they stand
            if (std::string_view("=;,{}").find(c) != std::string_view::npos)
                c = isText ? escaped(c) : 'x';
        return text;
    };
    std::string text = "{";
    if (tree.recordOf(node) != nullptr) {
        for (const node_t &child : tree.children(node))
            if (child.use == pairUse_t::assigned)
                text += std::string(child.field->key) + '=' + value(child) + ';';
        return text + '}';
    }
    std::vector<std::string> elements; // as many as there are pairs
    for (const node_t &child : tree.children(node))
        if (child.hasKey || child.hasValue)
            elements.emplace_back("\"\"");
    for (const node_t &child : tree.children(node))
        if (child.use == pairUse_t::assigned)
            elements[static_cast<std::size_t>(child.index)] = value(child);
    for (const std::string &element : elements)
        text += element + ',';
    return text + '}';
}

TEST(Tree, SaysWhatTheLibraryReads) {
    forEachText(rounds(40000), [](const std::string &text) {
        if (testing::Test::HasFailure())
            return;
        const tree_t tree(text);
        if (!tree.envelope().isWholeForHost() || tree.record() == nullptr ||
            tree.text().find('\0') != std::string::npos)
            return;
        const std::string body(tree.value(tree.body()));
        const std::string plain = used(tree, tree.body());
        EXPECT_EQ(shown(converted(tree.message()->id, plain)), shown(converted(tree.message()->id, body)))
            << shown(text) << "\n"
            << shown(plain);
        // What is read and written again is what asRead() says, too.
        EXPECT_EQ(bodyOf(*asRead(tree)), converted(tree.message()->id, body));
    });
}

TEST(Tree, StandsHostileNesting) {
    for (const std::string &piece :
         {std::string("{"), std::string("A={"), std::string("}"), std::string("\"\","), std::string("A=1;")}) {
        std::string body = "{";
        while (body.size() < 100000)
            body += piece;
        for (std::size_t closing = body.size() / 2; closing > 0 && piece.ends_with('{'); --closing)
            body += '}';
        const std::string text = sealed(4100, 0, 0, body);
        const tree_t tree(text);
        check(tree);
        for (const formCase_t &one : forms) {
            std::string form;
            one.write(form, tree);
            EXPECT_EQ(readForm(form, one.form).text, text) << one.name;
        }
    }
}

} // namespace
