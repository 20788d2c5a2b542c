// The yardstick: RapidJSON's SAX reader into the content's structure, and its Writer. Keys that come in order are found
// at once, as they are by the library.
#include "bench/peer.hpp"

#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <array>

namespace bench {

namespace {

using writer_t = rapidjson::Writer<rapidjson::StringBuffer>;
using codes_t = std::vector<std::int16_t>;

struct handler_t : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, handler_t> {
    struct level_t {
        const objectType_t *type;
        char *object;
        const member_t *member; // whose value is being read
        std::size_t due;
    };

    handler_t(const objectType_t &type, void *object) : levels{{{&type, static_cast<char *>(object), nullptr, 0}}} {}

    template <class Value>
    Value &target() {
        return level().member->in<Value>(level().object);
    }
    level_t &level() { return levels[depth - 1]; }

    bool Double(double value) {
        if (level().member->kind == kind_t::real)
            target<double>() = value;
        else
            target<std::vector<double>>().push_back(value);
        return true;
    }
    bool integer(std::int32_t value) {
        switch (level().member->kind) {
        case kind_t::integer:
            target<std::int32_t>() = value;
            return true;
        case kind_t::codes:
            target<codes_t>().push_back(static_cast<std::int16_t>(value));
            return true;
        case kind_t::codeLists:
            target<std::vector<codes_t>>().back().push_back(static_cast<std::int16_t>(value));
            return true;
        default:
            return Double(value);
        }
    }
    bool Int(int value) { return integer(value); }
    bool Uint(unsigned value) { return integer(static_cast<std::int32_t>(value)); }
    bool Bool(bool value) {
        target<bool>() = value;
        return true;
    }
    bool String(const char *text, rapidjson::SizeType length, bool) {
        const member_t &member = *level().member;
        if (member.kind == kind_t::text) {
            target<std::string>().assign(text, length);
        } else if (member.kind == kind_t::texts) {
            target<std::vector<std::string>>().emplace_back(text, length);
        } else {
            for (std::size_t i = 0; i < member.names.size(); ++i)
                if (member.names[i] == std::string_view(text, length))
                    target<std::int32_t>() = static_cast<std::int32_t>(i);
        }
        return true;
    }
    bool StartObject() {
        if (depth > 0) {
            const member_t &member = *level().member;
            char *const place = level().object + member.offset;
            levels[depth] = {member.type, member.append != nullptr ? static_cast<char *>(member.append(place)) : place,
                             nullptr, 0};
        }
        ++depth;
        return depth < levels.size();
    }
    bool EndObject(rapidjson::SizeType) {
        --depth;
        return true;
    }
    bool StartArray() {
        if (level().member->kind == kind_t::codeLists && isInList)
            target<std::vector<codes_t>>().emplace_back();
        isInList = true;
        return true;
    }
    bool EndArray(rapidjson::SizeType) { return true; }
    bool Key(const char *text, rapidjson::SizeType length, bool) {
        isInList = false;
        level().member = level().type->find({text, length}, level().due);
        return level().member != nullptr;
    }

    std::array<level_t, 8> levels;
    std::size_t depth = 0;
    bool isInList = false;
};

void writeText(writer_t &out, std::string_view text) {
    out.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

template <class List, class Each>
void writeList(writer_t &out, const List &list, Each each) {
    out.StartArray();
    for (const auto &element : list)
        each(element);
    out.EndArray();
}

void writeCodes(writer_t &out, const codes_t &codes) {
    writeList(out, codes, [&](std::int16_t code) { out.Int(code); });
}

void writeObject(writer_t &out, const objectType_t &type, const void *object) {
    out.StartObject();
    for (const member_t &member : type.members) {
        out.Key(member.key.data(), static_cast<rapidjson::SizeType>(member.key.size()));
        const char *const place = &member.in<char>(object);
        switch (member.kind) {
        case kind_t::real:
            out.Double(member.in<double>(object));
            break;
        case kind_t::integer:
            out.Int(member.in<std::int32_t>(object));
            break;
        case kind_t::flag:
            out.Bool(member.in<bool>(object));
            break;
        case kind_t::name:
            writeText(out, member.names[static_cast<std::size_t>(member.in<std::int32_t>(object))]);
            break;
        case kind_t::text:
            writeText(out, member.in<std::string>(object));
            break;
        case kind_t::reals:
            writeList(out, member.in<std::vector<double>>(object), [&](double value) { out.Double(value); });
            break;
        case kind_t::texts:
            writeList(out, member.in<std::vector<std::string>>(object),
                      [&](const std::string &text) { writeText(out, text); });
            break;
        case kind_t::codes:
            writeCodes(out, member.in<codes_t>(object));
            break;
        case kind_t::codeLists:
            writeList(out, member.in<std::vector<codes_t>>(object),
                      [&](const codes_t &codes) { writeCodes(out, codes); });
            break;
        case kind_t::object:
            writeObject(out, *member.type, place);
            break;
        case kind_t::objects: {
            out.StartArray();
            const std::span<const char> bytes = member.bytes(place);
            for (std::size_t at = 0; at < bytes.size(); at += member.type->size)
                writeObject(out, *member.type, bytes.data() + at);
            out.EndArray();
            break;
        }
        }
    }
    out.EndObject();
}

std::string json(const content_t &content) {
    rapidjson::StringBuffer buffer;
    writer_t out(buffer);
    writeObject(out, *content.type, content.get());
    return {buffer.GetString(), buffer.GetSize()};
}

class rapidJson_t : public peer_t {
public:
    explicit rapidJson_t(const row_t &row) : row_(row), texts_(jsonTexts(row)) {
        for (std::size_t index = 0; index < texts_.size(); ++index)
            check("RapidJSON", row, message(row.id, row.contents[index]), message(row.id, readContent(texts_[index])));
    }

    void read(std::size_t index) override { readContent(texts_[index]); }
    void write(std::size_t index) override {
        rapidjson::StringBuffer buffer;
        writer_t out(buffer);
        writeObject(out, *row_.contents[index].type, row_.contents[index].get());
    }
    std::string text(std::size_t index) override { return json(row_.contents[index]); }

private:
    content_t readContent(const std::string &text) const {
        content_t content(*row_.contents.front().type);
        handler_t handler(*content.type, content.get());
        rapidjson::StringStream stream(text.c_str());
        rapidjson::Reader().Parse(stream, handler);
        return content;
    }

    const row_t &row_;
    std::vector<std::string> texts_;
};

} // namespace

std::vector<std::string> jsonTexts(const row_t &row) {
    std::vector<std::string> texts;
    for (const content_t &content : row.contents)
        texts.push_back(json(content));
    return texts;
}

std::unique_ptr<peer_t> makeRapidJson(const row_t &row) {
    return std::make_unique<rapidJson_t>(row);
}

} // namespace bench
