// What the compared libraries read and write: the messages of the comparison as plain structures, and tables of their
// members, from which every peer finds its way. A table is walked with one pass over its keys, in order, as the
// library's own record classes are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

enum class kind_t { real, integer, flag, name, text, reals, texts, codes, codeLists, object, objects };

struct objectType_t;

/// A member of a structure: its key, and where it lies.
struct member_t {
    std::string_view key;
    kind_t kind;
    std::size_t offset;
    std::span<const std::string_view> names{};                  ///< of an enumeration
    const objectType_t *type = nullptr;                         ///< of an object, or of the objects of a list
    void *(*append)(void *list) = nullptr;                      ///< makes one more object in a list
    std::span<const char> (*bytes)(const void *list) = nullptr; ///< the objects of a list

    template <class Value>
    Value &in(void *object) const {
        return *reinterpret_cast<Value *>(static_cast<char *>(object) + offset);
    }
    template <class Value>
    const Value &in(const void *object) const {
        return *reinterpret_cast<const Value *>(static_cast<const char *>(object) + offset);
    }
};

struct objectType_t {
    std::string_view name;
    std::size_t size;
    std::vector<member_t> members;
    void *(*create)();
    void *(*copy)(const void *object);
    void (*destroy)(void *object);

    /// The member with a key, looked for from the one that is due; null when there is none.
    const member_t *find(std::string_view key, std::size_t &due) const;
};

/// Owns an object of any type.
class content_t {
public:
    explicit content_t(const objectType_t &made) : type(&made), object_(made.create()) {}
    content_t(const content_t &other) : type(other.type), object_(other.type->copy(other.object_)) {}
    content_t &operator=(const content_t &) = delete;
    ~content_t() { type->destroy(object_); }

    void *get() { return object_; }
    const void *get() const { return object_; }

    const objectType_t *const type;

private:
    void *object_;
};

const objectType_t &cassetteType();
const objectType_t &cassetteArrayType();
const objectType_t &deviceInfoType();
const objectType_t &resIntTableType();
const objectType_t &exposeParamsType();
const objectType_t &colorTableType();
const objectType_t &jobSepListType();

/// Reads the body of a message that the library wrote, and writes one as the library does.
void readBody(std::string_view body, const objectType_t &type, void *object);
std::string message(std::int32_t id, const content_t &content);

/// Gives every number and text another value of the same kind, as if from another device.
void vary(const objectType_t &type, void *object, std::mt19937 &random);

/// Repeats the first object, or the texts, of the list under `key` until there are so many.
void repeat(content_t &content, std::string_view key, std::size_t count);

} // namespace bench
