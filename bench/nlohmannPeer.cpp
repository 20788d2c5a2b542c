// nlohmann-json: its document, read into the content's structure and made from it.
#include "bench/peer.hpp"

#include <nlohmann/json.hpp>

namespace bench {

namespace {

using json_t = nlohmann::ordered_json;

void readObject(const json_t &json, const objectType_t &type, void *object);

void readValue(const json_t &json, const member_t &member, void *object) {
    switch (member.kind) {
    case kind_t::real:
        json.get_to(member.in<double>(object));
        break;
    case kind_t::integer:
        json.get_to(member.in<std::int32_t>(object));
        break;
    case kind_t::flag:
        json.get_to(member.in<bool>(object));
        break;
    case kind_t::name:
        for (std::size_t i = 0; i < member.names.size(); ++i)
            if (member.names[i] == json.get_ref<const std::string &>())
                member.in<std::int32_t>(object) = static_cast<std::int32_t>(i);
        break;
    case kind_t::text:
        json.get_to(member.in<std::string>(object));
        break;
    case kind_t::reals:
        json.get_to(member.in<std::vector<double>>(object));
        break;
    case kind_t::texts:
        json.get_to(member.in<std::vector<std::string>>(object));
        break;
    case kind_t::codes:
        json.get_to(member.in<std::vector<std::int16_t>>(object));
        break;
    case kind_t::codeLists:
        json.get_to(member.in<std::vector<std::vector<std::int16_t>>>(object));
        break;
    case kind_t::object:
        readObject(json, *member.type, &member.in<char>(object));
        break;
    case kind_t::objects:
        for (const json_t &element : json)
            readObject(element, *member.type, member.append(&member.in<char>(object)));
        break;
    }
}

void readObject(const json_t &json, const objectType_t &type, void *object) {
    std::size_t due = 0;
    for (const auto &[key, value] : json.items())
        if (const member_t *member = type.find(key, due))
            readValue(value, *member, object);
}

json_t objectJson(const objectType_t &type, const void *object);

json_t valueJson(const member_t &member, const void *object) {
    switch (member.kind) {
    case kind_t::real:
        return member.in<double>(object);
    case kind_t::integer:
        return member.in<std::int32_t>(object);
    case kind_t::flag:
        return member.in<bool>(object);
    case kind_t::name:
        return member.names[static_cast<std::size_t>(member.in<std::int32_t>(object))];
    case kind_t::text:
        return member.in<std::string>(object);
    case kind_t::reals:
        return member.in<std::vector<double>>(object);
    case kind_t::texts:
        return member.in<std::vector<std::string>>(object);
    case kind_t::codes:
        return member.in<std::vector<std::int16_t>>(object);
    case kind_t::codeLists:
        return member.in<std::vector<std::vector<std::int16_t>>>(object);
    case kind_t::object:
        return objectJson(*member.type, &member.in<char>(object));
    case kind_t::objects:
        break;
    }
    json_t list = json_t::array();
    const std::span<const char> bytes = member.bytes(&member.in<char>(object));
    for (std::size_t at = 0; at < bytes.size(); at += member.type->size)
        list.push_back(objectJson(*member.type, bytes.data() + at));
    return list;
}

json_t objectJson(const objectType_t &type, const void *object) {
    json_t json = json_t::object();
    for (const member_t &member : type.members)
        json.push_back({std::string(member.key), valueJson(member, object)});
    return json;
}

class nlohmann_t : public peer_t {
public:
    explicit nlohmann_t(const row_t &row) : row_(row), texts_(jsonTexts(row)) {
        for (std::size_t index = 0; index < texts_.size(); ++index)
            check("nlohmann-json", row, message(row.id, row.contents[index]), message(row.id, readContent(index)));
    }

    void read(std::size_t index) override { readContent(index); }
    void write(std::size_t index) override { text(index); }
    std::string text(std::size_t index) override {
        return objectJson(*row_.contents[index].type, row_.contents[index].get()).dump();
    }

private:
    content_t readContent(std::size_t index) const {
        content_t content(*row_.contents.front().type);
        readObject(json_t::parse(texts_[index]), *content.type, content.get());
        return content;
    }

    const row_t &row_;
    std::vector<std::string> texts_;
};

} // namespace

std::unique_ptr<peer_t> makeNlohmann(const row_t &row) {
    return std::make_unique<nlohmann_t>(row);
}

} // namespace bench
