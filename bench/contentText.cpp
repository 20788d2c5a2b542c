// Contents as texts of messages and back, and other contents made from them.
#include "bench/content.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace bench {

namespace {

// A walk over a body as the library writes it.
class bodyReader_t {
public:
    explicit bodyReader_t(std::string_view body) : rest_(body) {}

    void object(const objectType_t &type, void *object) {
        take('{');
        std::size_t due = 0;
        while (!has('}')) {
            const std::string_view key = until("=");
            const member_t *member = type.find(key, due);
            if (member == nullptr)
                throw key;
            value(*member, object);
            take(';');
        }
    }

private:
    template <class Each>
    void list(Each each) {
        take('{');
        while (!has('}')) {
            each();
            take(',');
        }
    }

    void value(const member_t &member, void *object) {
        switch (member.kind) {
        case kind_t::real:
            member.in<double>(object) = real();
            break;
        case kind_t::integer:
            member.in<std::int32_t>(object) = static_cast<std::int32_t>(real());
            break;
        case kind_t::flag:
            member.in<bool>(object) = plain() == "TRUE";
            break;
        case kind_t::name:
            member.in<std::int32_t>(object) = static_cast<std::int32_t>(
                std::find(member.names.begin(), member.names.end(), plain()) - member.names.begin());
            break;
        case kind_t::text:
            member.in<std::string>(object) = plain();
            break;
        case kind_t::reals:
            list([&] { member.in<std::vector<double>>(object).push_back(real()); });
            break;
        case kind_t::texts:
            list([&] { member.in<std::vector<std::string>>(object).emplace_back(plain()); });
            break;
        case kind_t::codes:
            codes(member.in<std::vector<std::int16_t>>(object));
            break;
        case kind_t::codeLists:
            list([&] { codes(member.in<std::vector<std::vector<std::int16_t>>>(object).emplace_back()); });
            break;
        case kind_t::object:
            this->object(*member.type, &member.in<char>(object));
            break;
        case kind_t::objects:
            list([&] { this->object(*member.type, member.append(&member.in<char>(object))); });
            break;
        }
    }

    void codes(std::vector<std::int16_t> &into) {
        list([&] { into.push_back(static_cast<std::int16_t>(real())); });
    }
    std::string_view until(std::string_view stops) {
        const std::size_t end = rest_.find_first_of(stops);
        const std::string_view token = rest_.substr(0, end);
        rest_.remove_prefix(end + 1);
        return token;
    }
    std::string_view plain() {
        const std::size_t end = rest_.find_first_of(";,");
        const std::string_view token = rest_.substr(0, end);
        rest_.remove_prefix(end);
        return token;
    }
    double real() {
        const std::string_view token = plain();
        double value = 0;
        std::from_chars(token.data(), token.data() + token.size(), value);
        return value;
    }
    void take(char c) {
        if (rest_.front() != c)
            throw rest_;
        rest_.remove_prefix(1);
    }
    bool has(char c) {
        const bool isHere = rest_.front() == c;
        rest_.remove_prefix(isHere ? 1 : 0);
        return isHere;
    }

    std::string_view rest_;
};

std::string realText(double value) {
    char text[400];
    std::snprintf(text, sizeof text, "%.6f", value);
    return text;
}

std::string codesText(const std::vector<std::int16_t> &codes) {
    std::string text = "{";
    for (const std::int16_t code : codes)
        text += std::to_string(code) + ',';
    return text + '}';
}

std::string objectText(const objectType_t &type, const void *object);

std::string valueText(const member_t &member, const void *object) {
    std::string text = "{";
    switch (member.kind) {
    case kind_t::real:
        return realText(member.in<double>(object));
    case kind_t::integer:
        return std::to_string(member.in<std::int32_t>(object));
    case kind_t::flag:
        return member.in<bool>(object) ? "TRUE" : "FALSE";
    case kind_t::name:
        return std::string(member.names[static_cast<std::size_t>(member.in<std::int32_t>(object))]);
    case kind_t::text:
        return member.in<std::string>(object);
    case kind_t::reals:
        for (const double value : member.in<std::vector<double>>(object))
            text += realText(value) + ',';
        return text + '}';
    case kind_t::texts:
        for (const std::string &value : member.in<std::vector<std::string>>(object))
            text += value + ',';
        return text + '}';
    case kind_t::codes:
        return codesText(member.in<std::vector<std::int16_t>>(object));
    case kind_t::codeLists:
        for (const auto &codes : member.in<std::vector<std::vector<std::int16_t>>>(object))
            text += codesText(codes) + ',';
        return text + '}';
    case kind_t::object:
        return objectText(*member.type, &member.in<char>(object));
    case kind_t::objects: {
        const std::span<const char> bytes = member.bytes(&member.in<char>(object));
        for (std::size_t at = 0; at < bytes.size(); at += member.type->size)
            text += objectText(*member.type, bytes.data() + at) + ',';
        return text + '}';
    }
    }
    return {};
}

std::string objectText(const objectType_t &type, const void *object) {
    std::string text = "{";
    for (const member_t &member : type.members)
        if (const std::string value = valueText(member, object); !value.empty() && value != "{}")
            text.append(member.key).append("=").append(value).append(";");
    return text + '}';
}

double anotherReal(double value, std::mt19937 &random) {
    static constexpr double steps[] = {1.0, 0.5, 0.125, 0.01, 0.001, 0.000001};
    const double range = std::max(1.0, 2 * std::abs(value));
    const double step = steps[random() % std::size(steps)];
    const double another = std::floor(std::uniform_real_distribution<double>(0, range)(random) / step) * step;
    return std::atof(realText(another).c_str()); // with six decimals at most, as messages have
}

std::string anotherText(std::mt19937 &random) {
    std::string text(1 + random() % 30, ' ');
    for (char &c : text)
        c = static_cast<char>('a' + random() % 26);
    return text;
}

} // namespace

void readBody(std::string_view body, const objectType_t &type, void *object) {
    bodyReader_t(body).object(type, object);
}

std::string message(std::int32_t id, const content_t &content) {
    const std::string rest = " 7 41 " + objectText(*content.type, content.get()) + "!!";
    char start[32];
    const std::string number = std::to_string(id);
    std::snprintf(start, sizeof start, "@@%s %5zu", number.c_str(), 2 + number.size() + 1 + 5 + rest.size() + 1);
    return start + rest;
}

void vary(const objectType_t &type, void *object, std::mt19937 &random) {
    for (const member_t &member : type.members) {
        if (member.kind == kind_t::real)
            member.in<double>(object) = member.key.ends_with("PIXEL") ? static_cast<double>(random() % 100000)
                                                                      : anotherReal(member.in<double>(object), random);
        else if (member.kind == kind_t::integer && !member.key.starts_with("NUM_"))
            member.in<std::int32_t>(object) = static_cast<std::int32_t>(random() >> random() % 32);
        else if (member.kind == kind_t::flag)
            member.in<bool>(object) = random() % 2 != 0;
        else if (member.kind == kind_t::name)
            member.in<std::int32_t>(object) = static_cast<std::int32_t>(random() % member.names.size());
        else if (member.kind == kind_t::text)
            member.in<std::string>(object) = anotherText(random);
        else if (member.kind == kind_t::texts)
            for (std::string &text : member.in<std::vector<std::string>>(object))
                text = anotherText(random);
        else if (member.kind == kind_t::object)
            vary(*member.type, &member.in<char>(object), random);
    }
}

void repeat(content_t &content, std::string_view key, std::size_t count) {
    std::size_t due = 0;
    const member_t *const member = content.type->find(key, due);
    if (member->kind == kind_t::codeLists) {
        auto &lists = member->in<std::vector<std::vector<std::int16_t>>>(content.get());
        const std::size_t present = lists.size();
        while (lists.size() < count)
            lists.push_back(std::vector(lists[lists.size() % present]));
        return;
    }
    void *const list = &member->in<char>(content.get());
    const std::span<const char> first = member->bytes(list);
    const std::string body = objectText(*member->type, first.data());
    for (std::size_t present = first.size() / member->type->size; present < count; ++present)
        readBody(body, *member->type, member->append(list));
}

} // namespace bench
