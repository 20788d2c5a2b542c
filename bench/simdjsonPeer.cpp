// simdjson's on-demand reader. It has no writer. The parser and the padded texts are kept between conversions, as its
// documentation advises.
#include "bench/peer.hpp"

#include <simdjson.h>

namespace bench {

namespace {

using value_t = simdjson::ondemand::value;
using codes_t = std::vector<std::int16_t>;

void readObject(simdjson::ondemand::object json, const objectType_t &type, void *object);

void readCodes(value_t json, codes_t &codes) {
    for (auto code : json.get_array())
        codes.push_back(static_cast<std::int16_t>(std::int64_t(code)));
}

void readValue(value_t json, const member_t &member, void *object) {
    switch (member.kind) {
    case kind_t::real:
        member.in<double>(object) = double(json);
        break;
    case kind_t::integer:
        member.in<std::int32_t>(object) = static_cast<std::int32_t>(std::int64_t(json));
        break;
    case kind_t::flag:
        member.in<bool>(object) = bool(json);
        break;
    case kind_t::name: {
        const std::string_view name = json;
        for (std::size_t i = 0; i < member.names.size(); ++i)
            if (member.names[i] == name)
                member.in<std::int32_t>(object) = static_cast<std::int32_t>(i);
        break;
    }
    case kind_t::text:
        member.in<std::string>(object) = std::string_view(json);
        break;
    case kind_t::reals:
        for (auto element : json.get_array())
            member.in<std::vector<double>>(object).push_back(double(element));
        break;
    case kind_t::texts:
        for (auto element : json.get_array())
            member.in<std::vector<std::string>>(object).emplace_back(std::string_view(element));
        break;
    case kind_t::codes:
        readCodes(json, member.in<codes_t>(object));
        break;
    case kind_t::codeLists:
        for (auto element : json.get_array())
            readCodes(element.value(), member.in<std::vector<codes_t>>(object).emplace_back());
        break;
    case kind_t::object:
        readObject(json.get_object(), *member.type, &member.in<char>(object));
        break;
    case kind_t::objects:
        for (auto element : json.get_array())
            readObject(element.get_object(), *member.type, member.append(&member.in<char>(object)));
        break;
    }
}

void readObject(simdjson::ondemand::object json, const objectType_t &type, void *object) {
    std::size_t due = 0;
    for (auto field : json)
        if (const member_t *member = type.find(std::string_view(field.unescaped_key()), due))
            readValue(field.value(), *member, object);
}

class simdjson_t : public peer_t {
public:
    explicit simdjson_t(const row_t &row) : row_(row) {
        for (const std::string &text : jsonTexts(row)) {
            texts_.emplace_back(text);
            const content_t content = readContent(texts_.size() - 1);
            check("simdjson", row, message(row.id, row.contents[texts_.size() - 1]), message(row.id, content));
        }
    }

    void read(std::size_t index) override { readContent(index); }
    void write(std::size_t) override {}
    std::string text(std::size_t index) override { return std::string(std::string_view(texts_[index])); }
    bool canWrite() const override { return false; }

private:
    content_t readContent(std::size_t index) {
        content_t content(*row_.contents.front().type);
        simdjson::ondemand::document document = parser_.iterate(texts_[index]);
        readObject(document.get_object(), *content.type, content.get());
        return content;
    }

    const row_t &row_;
    std::vector<simdjson::padded_string> texts_;
    simdjson::ondemand::parser parser_;
};

} // namespace

std::unique_ptr<peer_t> makeSimdjson(const row_t &row) {
    return std::make_unique<simdjson_t>(row);
}

} // namespace bench
