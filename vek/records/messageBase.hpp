// What the polymorphic message structures have in common.
//
// A host reads and fills their public members. Reading a text replaces every member that a key stands for, by zero or
// empty when the key is absent; only members that no key stands for keep their defaults.
#pragma once

#include "vek/records/messages.hpp"

#include <cstdint>

namespace vek {

/// The base of the structures of messages 4096 to 4136 and of the structures nested in them.
class MessageBase {
public:
    MessageBase() = default;
    MessageBase(const MessageBase &) = default;
    /// The kind stays: a structure that is assigned to is the message that it was.
    MessageBase &operator=(const MessageBase &) { return *this; }
    virtual ~MessageBase() = default;

    /// Structures are equal when they are of the same kind and their members are equal.
    bool operator==(const MessageBase &) const = default;

    /// The message id less 4096; -1 in a structure that is no message of its own.
    std::int32_t kind = -1;
#if defined(_WIN64)
    std::int32_t filling_ = 0; ///< else MinGW would begin the next structure here, and Microsoft's compiler behind it
#endif

protected:
    explicit MessageBase(vekMessageId id) : kind(static_cast<std::int32_t>(id) - VEK_MSG_DEVICE_INFO) {}
};

} // namespace vek
