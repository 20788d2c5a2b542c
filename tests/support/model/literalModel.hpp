// literalModel_t: a second, naive implementation of how bodies are read and written, to compare the library with.
//
// It follows the description of the format step by step: texts and pairs are copies on the heap, lists of pairs are
// vectors, numbers are the C library's. It shares nothing with the library but the trees of keys, which it takes from
// the records' own descriptions. Slow on purpose; nothing is to be made faster here.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace vek {
class textField_t;
class textGroup_t;
} // namespace vek

namespace model {

enum class kind_t { integer, shortInteger, real, floating, pixel, boolean, name, text, record, list };

/// What a field is: a copy of its description.
struct node_t {
    std::string key;
    kind_t kind = kind_t::record;
    std::vector<std::string> names; ///< of an enumeration
    int room = -1;                  ///< characters of a text's array, elements of a list's array
    std::vector<node_t> members;    ///< of a record; of a list: its element
    int countMember = -1;           ///< of a list: the position of the member that counts it in its record
    bool isRange = false;           ///< of a list: the member in front of it is its range type
    bool isPlacement = false;       ///< of a record: the image placement with its two texts
};

/// The header numbers of messages.
struct header_t {
    std::int32_t echoTag = -1;
    std::int32_t sequenceNumber = 0;
};

class literalModel_t {
public:
    /// Describes every record of the catalogue.
    literalModel_t();

    /// The body that a body of this message gives when it goes through a structure.
    std::string convertedBody(std::int32_t id, const std::string &body) const;

    /// The same for a whole text: what vekValToStr gives for what vekStrToVal gives. `id` is the caller's, before and
    /// after. The empty string when no structure is made.
    std::string converted(const std::string &text, std::int32_t &id, header_t &header) const;

private:
    struct record_t {
        node_t node;
        bool isSelf; // the record is the structure: unset fields stay unset
    };
    std::map<std::int32_t, record_t> records_;
};

} // namespace model
