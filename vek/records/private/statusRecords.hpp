// Record classes of status reports. Each line binds a key to its structure's member; the order is the text's.
#pragma once

#include "vek/records/private/record.hpp"
#include "vek/records/status.hpp"
#include "vek/text/private/listFields.hpp"
#include "vek/text/scalarFields.hpp"

#include <string_view>

namespace vek {

/// 4160, 4189 and 4192
class idRecord_t : public record_t<IdRecord> {
public:
    using record_t::record_t;

    longField_t id{*this, "ID", structure.id};
};

class deviceStatus_t : public record_t<DeviceStatus> {
public:
    using record_t::record_t;

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
    static constexpr std::string_view kind = "string", memberType = "char *";
    static void clear(value_t &value) { read({}, value); }
    static void write(const char *value, bodyWriter_t &out);
    static void read(std::string_view text, value_t &value); ///< throws std::bad_alloc
    static void release(value_t &value);
};

class info_t : public record_t<Info> {
public:
    using record_t::record_t;

    boolField_t type{*this, "TYPE", structure.type};
    boundField_t<ownedTextCodec_t> info{*this, "INFO", structure.info};

    static void releaseMembers(Info &structure) { ownedTextCodec_t::release(structure.info); }
};

} // namespace vek
