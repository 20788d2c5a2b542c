// structureCheck_t: what of a structure would not come back from its text, found from the descriptions of its record
// class.
//
// A check is made once for each kind of structure: it keeps a rule for every member that can hold what the format can't
// carry, and none for the others. Part of vekTypes, so that hosts check structures in their own module. It owns its
// rules and nothing of what it checks; a finished check may be used by several threads at once.
#pragma once

#include "vek/api/problem.hpp"
#include "vek/text/description.hpp"

#include <memory>
#include <vector>

namespace vek {

class structureCheck_t {
public:
    /// For the structures of the record class that `show` shows. Throws std::bad_alloc.
    explicit structureCheck_t(void (*show)(recordVisitor_t &));
    ~structureCheck_t();
    structureCheck_t(const structureCheck_t &) = delete;
    structureCheck_t &operator=(const structureCheck_t &) = delete;

    /// Whether everything in the structure comes back.
    bool isKept(const void *structure) const;

    /// The first thing that does not come back, in the order of the text, of a structure that isn't kept.
    problem_t first(const void *structure) const;

    /// Everything that does not come back. Of a list with too many problems to be of use, as many as there are.
    std::vector<problem_t> all(const void *structure) const;

    struct plan_t;

private:
    std::unique_ptr<const plan_t> plan_;
};

} // namespace vek
