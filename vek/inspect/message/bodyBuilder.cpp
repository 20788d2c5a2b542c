#include "vek/inspect/message/bodyBuilder.hpp"

#include "vek/inspect/message/plain.hpp"

#include <algorithm>

namespace vek::inspect {

bodyBuilder_t::bodyBuilder_t(const recordSchema_t *named) {
    using enum bodyTarget_t::kind_t;
    top_.kind = named != nullptr ? record : unknown;
    top_.record = named;
}

const fieldSchema_t *bodyBuilder_t::fieldOf(std::string_view key) const {
    using enum bodyTarget_t::kind_t;
    const bodyTarget_t &target = levels_.empty() ? top_ : levels_.back().target;
    return target.kind == record ? target.record->find(key) : target.kind == list ? target.field : nullptr;
}

bool bodyBuilder_t::putKey(std::string_view &name) {
    if (const std::size_t number = name.find('#'); number != std::string_view::npos)
        name = name.substr(0, number);
    text_ += name;
    text_ += name.empty() ? "" : "=";
    return !name.empty();
}

void bodyBuilder_t::begin(std::string_view name) {
    using enum bodyTarget_t::kind_t;
    const bool isInsideList = isInList();
    const bool isKeyed = putKey(name);
    text_ += '{';
    const fieldSchema_t *field = fieldOf(name);
    bodyTarget_t target;
    if (field != nullptr && field->isList() && !isInsideList) {
        target = {list, nullptr, field};
    } else if (field != nullptr && field->record != nullptr) {
        target = {record, field->record, field};
    }
    levels_.push_back({target, isKeyed});
}

void bodyBuilder_t::end() {
    text_ += '}';
    putEnd(levels_.back().isKeyed);
    levels_.pop_back();
}

void bodyBuilder_t::value(std::string_view name, std::string_view text, spelling_t spelling) {
    const bool isInsideList = isInList();
    const bool isKeyed = putKey(name);
    const fieldSchema_t *field = fieldOf(name);
    const bool isElementOrScalar = field != nullptr && (isInsideList || !field->isList());
    if (spelling == spelling_t::wide ||
        (isElementOrScalar && field->kind == fieldKind_t::text16 && !text.starts_with('{')))
        text_ += wideCodes(text).value_or("{0,}");
    else if (isElementOrScalar && field->kind == fieldKind_t::text)
        text_ += escapedText(text);
    else
        text_ += text;
    putEnd(isKeyed);
}

} // namespace vek::inspect
