// Whatever is made, sealed or changed: an error, or a message without one that says just what was meant.
#include "tests/support/promises.hpp"
#include "tests/support/texts.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/forms/private/jsonText.hpp"
#include "vek/inspect/message/written.hpp"
#include "vek/inspect/words/quoting.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <random>

namespace {

using namespace vek;
using namespace vek::inspect;
using namespace vek::test;
using json_t = nlohmann::ordered_json;

// Objects of messages, bent: values and names of other messages, values that break a body, members and elements more or
// less, empty, or moved.
class objectMutator_t {
public:
    explicit objectMutator_t(const std::vector<json_t> &objects) : objects_(objects) {
        for (const json_t &object : objects)
            collect(object);
    }

    json_t next() {
        json_t object = objects_[below(objects_.size())];
        for (std::size_t changes = below(4); changes > 0; --changes)
            change(object.back());
        if (below(20) == 0)
            object["seq"] = value();
        return object;
    }

    std::size_t below(std::size_t limit) { return static_cast<std::size_t>(random_() % limit); }

private:
    void collect(const json_t &group) {
        for (const auto &member : group.items()) {
            if (group.is_object())
                keys_.push_back(member.key());
            if (member.value().is_structured())
                collect(member.value());
            values_.push_back(member.value());
        }
    }

    json_t value() {
        static const json_t odd = json_t::parse(R"(["", null, true, false, 0, -1, 3.5, 1e-09, 1e308, 2147483648, 40000,
            "x", "\"", "a\"b", "{1,2,}", "}", "a;b=c,{d}", "\u0001", "\u0004", "\u0000", "\t", "3,5", " 1", "1e400",
            "007", "-0", "0.1234567", "é😀", "\uEFFF", [], {}, [[]], [""], [1, 2, 3], {"A": 1}, "TRUE"])");
        return below(3) == 0 ? values_[below(values_.size())] : odd[below(odd.size())];
    }

    void change(json_t &group) {
        if (!group.is_structured() || group.empty()) {
            group = value();
            return;
        }
        auto at = std::next(group.begin(), static_cast<std::ptrdiff_t>(below(group.size())));
        if (at->is_structured() && below(4) > 0)
            return change(*at);
        switch (below(5)) {
        case 0:
            group.erase(at);
            break;
        case 1:
            if (group.is_object())
                group[keys_[below(keys_.size())]] = value();
            else
                group.push_back(json_t(*at));
            break;
        default:
            *at = value();
        }
    }

    const std::vector<json_t> &objects_;
    std::vector<std::string> keys_;
    std::vector<json_t> values_;
    std::mt19937_64 random_{5};
};

std::vector<json_t> objects() {
    std::vector<std::string> texts;
    for (const sample_t &sample : samples())
        texts.push_back(sample.text);
    for (const std::int32_t id : bodyIds())
        texts.push_back(*newMessage(id));
    std::vector<json_t> all;
    for (const std::string &text : texts) {
        std::string form;
        appendJson(form, tree_t(text));
        all.push_back(json_t::parse(form));
    }
    return all;
}

// The same in lines, written by hand.
void appendLines(std::string &out, const json_t &group, const std::string &path) {
    std::size_t index = 0;
    for (const auto &member : group.items()) {
        std::string next = path;
        if (group.is_array())
            next += "[" + std::to_string(index++) + "]";
        else
            appendPathKey(next += path.empty() ? "" : ".", member.key());
        if (member.value().is_structured()) {
            appendLines(out, member.value(), next);
            continue;
        }
        out += next + " = ";
        if (member.value().is_string())
            appendQuoted(out += next.ends_with("JOB_NAME") ? "u" : "", jsonBytes(member.value().get<std::string>()));
        else if (!member.value().is_null())
            out += member.value().is_boolean() ? (member.value() ? "TRUE" : "FALSE") : member.value().dump();
        out += "\n";
    }
}

TEST(Promises, OfForms) {
    const std::vector<json_t> all = objects();
    objectMutator_t mutator(all);
    std::size_t made = 0, refused = 0;
    for (int i = 0; i < rounds(1000) && !HasFailure(); ++i) {
        const json_t object = mutator.next();
        const std::string form = object.dump();
        ASSERT_EQ(brokenOfForm(form), "") << form;
        const formResult_t result = readJson(form);
        ++(result.isRead() ? made : refused);
        std::string lines = "@id = " + object.value("id", json_t(0)).dump() + "\n@echo = 7\n";
        appendLines(lines, object.back(), "");
        ASSERT_EQ(brokenOfForm(lines), "") << lines;
        ASSERT_EQ(brokenOfForm(form.substr(0, mutator.below(form.size()))), "") << form;
        if (const formResult_t other = readFlat(lines); result.isRead() && other.isRead()) {
            ASSERT_EQ(bodyOf(other.text), bodyOf(result.text)) << lines << form;
        }
    }
    EXPECT_GT(made, refused / 4);
    EXPECT_GT(refused, made / 4);
}

TEST(Promises, OfTextsTheirWordsAndChanges) {
    std::size_t choice = 1;
    forEachText(rounds(1000), [&choice](const std::string &text) {
        if (testing::Test::HasFailure())
            return;
        EXPECT_EQ(brokenOfText(text), "") << shown(text);
        EXPECT_EQ(brokenOfMending(text), "") << shown(text);
        EXPECT_EQ(brokenOfDifferences(text), "") << shown(text);
        EXPECT_EQ(brokenOfWords(text), "") << shown(text);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(brokenOfAnyChange(text, choice = choice * 6364136223846793005U + 1442695040888963407U), "")
                << shown(text);
    });
}

} // namespace
