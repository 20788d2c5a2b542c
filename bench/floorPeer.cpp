// The floor under any text format: a row's numbers alone, with the standard library's conversions.
#include "bench/peer.hpp"

#include <charconv>

namespace bench {

namespace {

struct numbers_t {
    std::vector<double> reals;
    std::vector<std::int32_t> integers;
    std::vector<std::string> realTexts;
    std::vector<std::string> integerTexts;
};

void collect(const objectType_t &type, const void *object, numbers_t &numbers) {
    const auto addCodes = [&](const std::vector<std::int16_t> &codes) {
        numbers.integers.insert(numbers.integers.end(), codes.begin(), codes.end());
    };
    for (const member_t &member : type.members) {
        const char *const place = &member.in<char>(object);
        if (member.kind == kind_t::real)
            numbers.reals.push_back(member.in<double>(object));
        else if (member.kind == kind_t::integer)
            numbers.integers.push_back(member.in<std::int32_t>(object));
        else if (member.kind == kind_t::reals)
            for (const double value : member.in<std::vector<double>>(object))
                numbers.reals.push_back(value);
        else if (member.kind == kind_t::codes)
            addCodes(member.in<std::vector<std::int16_t>>(object));
        else if (member.kind == kind_t::codeLists)
            for (const auto &codes : member.in<std::vector<std::vector<std::int16_t>>>(object))
                addCodes(codes);
        else if (member.kind == kind_t::object)
            collect(*member.type, place, numbers);
        else if (member.kind == kind_t::objects)
            for (std::size_t at = 0; at < member.bytes(place).size(); at += member.type->size)
                collect(*member.type, member.bytes(place).data() + at, numbers);
    }
}

char *writeReal(double value, char *to) {
    return std::to_chars(to, to + 330, value, std::chars_format::fixed, 6).ptr;
}

class floor_t : public peer_t {
public:
    explicit floor_t(const row_t &row) {
        char text[340];
        for (const content_t &content : row.contents) {
            numbers_t &numbers = contents_.emplace_back();
            collect(*content.type, content.get(), numbers);
            for (const double value : numbers.reals)
                numbers.realTexts.emplace_back(text, writeReal(value, text));
            for (const std::int32_t value : numbers.integers)
                numbers.integerTexts.push_back(std::to_string(value));
        }
    }

    void read(std::size_t index) override {
        for (const std::string &text : contents_[index].realTexts) {
            double value = 0;
            std::from_chars(text.data(), text.data() + text.size(), value);
            real_ = value;
        }
        for (const std::string &text : contents_[index].integerTexts) {
            std::int32_t value = 0;
            std::from_chars(text.data(), text.data() + text.size(), value);
            integer_ = value;
        }
    }
    void write(std::size_t index) override {
        char text[340];
        for (const double value : contents_[index].reals)
            end_ = *(writeReal(value, text) - 1);
        for (const std::int32_t value : contents_[index].integers)
            end_ = *(std::to_chars(text, text + sizeof text, value).ptr - 1);
    }
    std::string text(std::size_t) override { return {}; }

private:
    std::vector<numbers_t> contents_;
    volatile double real_ = 0; // so that nothing is optimised away
    volatile std::int32_t integer_ = 0;
    volatile char end_ = 0;
};

} // namespace

std::unique_ptr<peer_t> makeFloor(const row_t &row) {
    return std::make_unique<floor_t>(row);
}

} // namespace bench
