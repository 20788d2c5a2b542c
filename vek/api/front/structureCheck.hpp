// structureCheck_t: what of a structure would not come back from its text, found from the descriptions of its record
// class.
//
// A check is made once for each kind of structure: it keeps a rule for every member that can hold what the format can't
// carry, and none for the others. Part of vekTypes, so that hosts check structures in their own module; a host may have
// another standard library than vekTypes, so that what passes between them is of C types, and the others are made here.
// It owns its rules and nothing of what it checks; a finished check may be used by several threads at once.
#pragma once

#include "vek/api/problem.hpp"
#include "vek/text/description.hpp"

#include <utility>
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
    problem_t first(const void *structure) const { return std::move(told(structure, true).front()); }

    /// Everything that does not come back. Of a list with too many problems to be of use, as many as there are.
    std::vector<problem_t> all(const void *structure) const { return told(structure, false); }

    /// Takes a problem: its code, why, and the member.
    using take_t = void (*)(void *taker, problemCode_t code, const char *text, const char *member);

    struct plan_t;

private:
    std::vector<problem_t> told(const void *structure, bool onlyFirst) const {
        std::vector<problem_t> problems;
        const take_t take = [](void *taker, problemCode_t code, const char *text, const char *member) {
            static_cast<std::vector<problem_t> *>(taker)->push_back({code, 0, text, member});
        };
        tell(structure, onlyFirst, take, &problems);
        return problems;
    }

    void tell(const void *structure, bool onlyFirst, take_t take, void *taker) const;

    const plan_t *plan_;
};

} // namespace vek
