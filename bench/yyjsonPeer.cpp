// yyjson: its document, read into the content's structure and made from it.
#include "bench/peer.hpp"

#include <yyjson.h>

#include <cstdlib>

namespace bench {

namespace {

using codes_t = std::vector<std::int16_t>;

std::string_view textOf(yyjson_val *json) {
    return {yyjson_get_str(json), yyjson_get_len(json)};
}

template <class Each>
void forEach(yyjson_val *list, Each each) {
    yyjson_arr_iter walk;
    yyjson_arr_iter_init(list, &walk);
    while (yyjson_val *element = yyjson_arr_iter_next(&walk))
        each(element);
}

void readCodes(yyjson_val *json, codes_t &codes) {
    codes.reserve(yyjson_arr_size(json));
    forEach(json, [&](yyjson_val *code) { codes.push_back(static_cast<std::int16_t>(yyjson_get_int(code))); });
}

void readObject(yyjson_val *json, const objectType_t &type, void *object);

void readValue(yyjson_val *json, const member_t &member, void *object) {
    switch (member.kind) {
    case kind_t::real:
        member.in<double>(object) = yyjson_get_num(json);
        break;
    case kind_t::integer:
        member.in<std::int32_t>(object) = yyjson_get_int(json);
        break;
    case kind_t::flag:
        member.in<bool>(object) = yyjson_get_bool(json);
        break;
    case kind_t::name:
        for (std::size_t i = 0; i < member.names.size(); ++i)
            if (member.names[i] == textOf(json))
                member.in<std::int32_t>(object) = static_cast<std::int32_t>(i);
        break;
    case kind_t::text:
        member.in<std::string>(object) = textOf(json);
        break;
    case kind_t::reals:
        forEach(json, [&](yyjson_val *element) {
            member.in<std::vector<double>>(object).push_back(yyjson_get_num(element));
        });
        break;
    case kind_t::texts:
        forEach(json, [&](yyjson_val *element) {
            member.in<std::vector<std::string>>(object).emplace_back(textOf(element));
        });
        break;
    case kind_t::codes:
        readCodes(json, member.in<codes_t>(object));
        break;
    case kind_t::codeLists:
        forEach(json, [&](yyjson_val *element) {
            readCodes(element, member.in<std::vector<codes_t>>(object).emplace_back());
        });
        break;
    case kind_t::object:
        readObject(json, *member.type, &member.in<char>(object));
        break;
    case kind_t::objects:
        forEach(json, [&](yyjson_val *element) {
            readObject(element, *member.type, member.append(&member.in<char>(object)));
        });
        break;
    }
}

void readObject(yyjson_val *json, const objectType_t &type, void *object) {
    std::size_t due = 0;
    yyjson_obj_iter walk;
    yyjson_obj_iter_init(json, &walk);
    while (yyjson_val *key = yyjson_obj_iter_next(&walk))
        if (const member_t *member = type.find(textOf(key), due))
            readValue(yyjson_obj_iter_get_val(key), *member, object);
}

// Texts are not copied into the document: the content outlives it.
yyjson_mut_val *textJson(yyjson_mut_doc *document, std::string_view text) {
    return yyjson_mut_strn(document, text.data(), text.size());
}

template <class List, class Make>
yyjson_mut_val *listJson(yyjson_mut_doc *document, const List &list, Make make) {
    yyjson_mut_val *const json = yyjson_mut_arr(document);
    for (const auto &element : list)
        yyjson_mut_arr_append(json, make(element));
    return json;
}

yyjson_mut_val *codesJson(yyjson_mut_doc *document, const codes_t &codes) {
    return listJson(document, codes, [&](std::int16_t code) { return yyjson_mut_int(document, code); });
}

yyjson_mut_val *objectJson(yyjson_mut_doc *document, const objectType_t &type, const void *object);

yyjson_mut_val *valueJson(yyjson_mut_doc *document, const member_t &member, const void *object) {
    switch (member.kind) {
    case kind_t::real:
        return yyjson_mut_real(document, member.in<double>(object));
    case kind_t::integer:
        return yyjson_mut_int(document, member.in<std::int32_t>(object));
    case kind_t::flag:
        return yyjson_mut_bool(document, member.in<bool>(object));
    case kind_t::name:
        return textJson(document, member.names[static_cast<std::size_t>(member.in<std::int32_t>(object))]);
    case kind_t::text:
        return textJson(document, member.in<std::string>(object));
    case kind_t::reals:
        return listJson(document, member.in<std::vector<double>>(object),
                        [&](double value) { return yyjson_mut_real(document, value); });
    case kind_t::texts:
        return listJson(document, member.in<std::vector<std::string>>(object),
                        [&](const std::string &text) { return textJson(document, text); });
    case kind_t::codes:
        return codesJson(document, member.in<codes_t>(object));
    case kind_t::codeLists:
        return listJson(document, member.in<std::vector<codes_t>>(object),
                        [&](const codes_t &codes) { return codesJson(document, codes); });
    case kind_t::object:
        return objectJson(document, *member.type, &member.in<char>(object));
    case kind_t::objects:
        break;
    }
    yyjson_mut_val *const list = yyjson_mut_arr(document);
    const std::span<const char> bytes = member.bytes(&member.in<char>(object));
    for (std::size_t at = 0; at < bytes.size(); at += member.type->size)
        yyjson_mut_arr_append(list, objectJson(document, *member.type, bytes.data() + at));
    return list;
}

yyjson_mut_val *objectJson(yyjson_mut_doc *document, const objectType_t &type, const void *object) {
    yyjson_mut_val *const json = yyjson_mut_obj(document);
    for (const member_t &member : type.members)
        yyjson_mut_obj_add(json, textJson(document, member.key), valueJson(document, member, object));
    return json;
}

char *write(const content_t &content, std::size_t *size) {
    yyjson_mut_doc *const document = yyjson_mut_doc_new(nullptr);
    yyjson_mut_doc_set_root(document, objectJson(document, *content.type, content.get()));
    char *const text = yyjson_mut_write(document, 0, size);
    yyjson_mut_doc_free(document);
    return text;
}

class yyjson_t : public peer_t {
public:
    explicit yyjson_t(const row_t &row) : row_(row), texts_(jsonTexts(row)) {
        for (std::size_t index = 0; index < texts_.size(); ++index)
            check("yyjson", row, message(row.id, row.contents[index]), message(row.id, readContent(index)));
    }

    void read(std::size_t index) override { readContent(index); }
    void write(std::size_t index) override {
        std::size_t size = 0;
        std::free(bench::write(row_.contents[index], &size));
    }
    std::string text(std::size_t index) override { return texts_[index]; }

private:
    content_t readContent(std::size_t index) const {
        content_t content(*row_.contents.front().type);
        yyjson_doc *const document = yyjson_read(texts_[index].data(), texts_[index].size(), 0);
        readObject(yyjson_doc_get_root(document), *content.type, content.get());
        yyjson_doc_free(document);
        return content;
    }

    const row_t &row_;
    std::vector<std::string> texts_;
};

} // namespace

std::unique_ptr<peer_t> makeYyjson(const row_t &row) {
    return std::make_unique<yyjson_t>(row);
}

} // namespace bench
