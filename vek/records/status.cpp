// Record classes of status reports. Each line binds a key to its structure's member; the order is the text's.
#include "vek/records/status.hpp"

#include "vek/records/private/record.hpp"
#include "vek/text/private/listFields.hpp"
#include "vek/text/scalarFields.hpp"

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>

namespace vek {

/// 4160, 4189 and 4192
struct idRecord_t : record_t<IdRecord> {
    using record_t::record_t;
    static constexpr std::string_view about =
        "An id. 4160, 4189 and 4192 differ in nothing but the id in the envelope.";

    longField_t id{*this, "ID", structure.id};
};

struct deviceStatus_t : record_t<DeviceStatus> {
    using record_t::record_t;
    static constexpr std::string_view about =
        "The device's status and its messages. A count above the room for them is the host's fault and is not checked "
        "when a structure is written; reading a text keeps it to the room.";

    longField_t status{*this, "STATUS", structure.status};
    longField_t lowStatus{*this, "LOW_STATUS", structure.lowStatus};
    longField_t severity{*this, "SEVERITY", structure.severity};
    countField_t<10> numOfMessages{*this, "NUM_OF_MESSAGES", structure.numOfMessages};
    roomField_t<fixedTextField_t<255>, 10, counting_t::byMemberUnchecked> msgs{*this, "MSGS", structure.msgs,
                                                                               structure.numOfMessages};
};

/// A text that the structure owns, from the library's allocator. Null prints nothing; an absent key gives "".
struct ownedTextCodec_t {
    using value_t = char *;
    static constexpr fieldKind_t kind = fieldKind_t::text;
    static void clear(value_t &value) { read({}, value); }
    static writtenText_t written(const char *value);
    static void read(std::string_view text, value_t &value); ///< throws std::bad_alloc
    static void release(value_t &value);
};

struct info_t : record_t<Info> {
    using record_t::record_t;
    static constexpr std::string_view about = "An information text. The structure owns the text; a null pointer is not "
                                              "written, and a text without the key gives an empty one.";

    boolField_t type{*this, "TYPE", structure.type};
    boundField_t<ownedTextCodec_t> info{*this, "INFO", structure.info};

    static void releaseMembers(Info &structure) { ownedTextCodec_t::release(structure.info); }
};

writtenText_t ownedTextCodec_t::written(const char *value) {
    const std::size_t length = value != nullptr ? std::strlen(value) : 0;
    return {value, length, length};
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

template struct conversionOf<IdRecord, idRecord_t>;
template struct conversionOf<DeviceStatus, deviceStatus_t>;
template struct conversionOf<Info, info_t>;

} // namespace vek
