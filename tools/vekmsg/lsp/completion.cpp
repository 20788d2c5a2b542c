// Keys that are not there yet, and the names of enumerations, where they are valid.
#include "tools/vekmsg/lsp/features.hpp"

#include "vek/inspect/words/words.hpp"

#include <algorithm>

namespace vek::tool::lsp {

namespace {

using inspect::fieldSchema_t;
using inspect::joined;

constexpr int keyNumber = 5, nameNumber = 20; // a field, a member of an enumeration

class offers_t {
public:
    offers_t(jsonAppender_t &json, const document_t &document, place_t place)
        : json_(json), positions_(document.positions()), place_(place) {}

    void add(std::string_view label, int kind, std::string_view detail, std::string_view written) {
        const std::string number = std::to_string(++count_);
        json_.open('{');
        json_.member("label", label);
        json_.member("kind", kind);
        json_.member("detail", detail);
        json_.member("sortText",
                     joined({std::string_view("0000").substr(std::min<std::size_t>(number.size(), 4)), number}));
        json_.name("textEdit");
        appendTextEdit(json_, positions_, place_, written);
        json_.close('}');
    }

private:
    jsonAppender_t &json_;
    positions_t positions_;
    const place_t place_;
    std::size_t count_ = 0;
};

// How a key is begun: behind it comes what the form wants.
std::string begun(const fieldSchema_t &field, bool isReadable) {
    if (!isReadable)
        return joined({field.key, "="});
    return joined({field.key, field.record() != nullptr ? "" : " = "});
}

void offerKeys(offers_t &offers, const context_t &context, bool hasEquals) {
    for (const fieldSchema_t &field : context.group.record->fields) {
        if (std::find(context.keys.begin(), context.keys.end(), field.key) != context.keys.end())
            continue;
        const std::string_view preset = inspect::defaultInWords(field);
        offers.add(field.key, keyNumber,
                   joined({inspect::kindInWords(field), preset.empty() ? "" : "; default ", preset}),
                   hasEquals ? std::string(field.key) : begun(field, context.isReadable));
    }
}

void offerNames(offers_t &offers, const fieldSchema_t &field) {
    for (const char *name : field.words().names)
        offers.add(name, nameNumber, field.words().title, name);
    if (field.kind == fieldKind_t::boolean)
        for (const std::string_view name : {"TRUE", "FALSE"})
            offers.add(name, nameNumber, "boolean", name);
}

} // namespace

void appendCompletion(jsonAppender_t &json, const document_t &document, std::size_t offset) {
    json.open('[');
    if (const piece_t *piece = document.pieces().at(offset)) {
        const std::string_view text = document.text();
        context_t context = contextAt(text, *piece, offset);
        std::size_t start = offset;
        while (start > context.token.start && inspect::isWordCharacter(text[start - 1]))
            --start;
        offers_t offers(json, document, {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(offset)});
        const bool isAtEnd = offset >= context.token.end;
        if (offset == context.token.start && context.hasEquals) // in front of a key
            context.keys.push_back(context.token.in(text));
        if (context.kind == context_t::kind_t::key && context.group.record != nullptr)
            offerKeys(offers, context, context.hasEquals && isAtEnd);
        else if (context.kind == context_t::kind_t::value && context.target.field != nullptr &&
                 context.target.isElement == context.target.field->isList())
            offerNames(offers, *context.target.field);
    }
    json.close(']');
}

} // namespace vek::tool::lsp
