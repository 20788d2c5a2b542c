#include "vek/records/private/statusRecords.hpp"

#include <algorithm>
#include <cstring>
#include <new>

namespace vek {

void ownedTextCodec_t::write(const char *value, bodyWriter_t &out) {
    if (value != nullptr)
        writeText(value, std::strlen(value), out);
}

void ownedTextCodec_t::read(std::string_view text, value_t &value) {
    auto *copy = static_cast<char *>(::operator new(text.size() + 1));
    *std::transform(text.begin(), text.end(), copy, unescaped) = '\0';
    release(value);
    value = copy;
}

void ownedTextCodec_t::release(value_t &value) {
    ::operator delete(value);
    value = nullptr;
}

template struct conversionOf<idRecord_t>;
template struct conversionOf<deviceStatus_t>;
template struct conversionOf<info_t>;

} // namespace vek
