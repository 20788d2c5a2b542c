// strictReading_t: what of a message's body a reader would ignore or read as something else than it says, found from
// the descriptions of its record class.
//
// Made once for each kind of structure. A body that looks as the library writes it is right if it can be read in one
// go; any other one is gone over token by token, as the reader takes it, up to the first problem. Part of vekTypes;
// what passes between a host and vekTypes is of C types, as of structureCheck_t. It owns its plan and nothing of what
// it reads; a finished one may be used by several threads at once.
#pragma once

#include "vek/api/problem.hpp"
#include "vek/text/description.hpp"

#include <cstddef>
#include <string_view>

namespace vek {

class strictReading_t {
public:
    /// Makes a structure of an ordinary body; null of any other one.
    using make_t = void *(*)(const char *body, std::size_t size);

    /// For the structures of the record class that `show` shows, which `make` makes. Throws std::bad_alloc.
    strictReading_t(void (*show)(recordVisitor_t &), make_t make);
    ~strictReading_t();
    strictReading_t(const strictReading_t &) = delete;
    strictReading_t &operator=(const strictReading_t &) = delete;

    /// The structure of a body, which stands in an envelope, if it looks as the library writes it: then all of it is
    /// read as it says. Null of any other one. Throws std::bad_alloc.
    void *readOrdinary(std::string_view body) const { return readOrdinary(body.data(), body.size()); }

    /// The first thing in a message's body that would be ignored or read otherwise, if any. `text`: a message without
    /// its NUL whose envelope is right.
    problem_t first(std::string_view text) const {
        problem_t problem;
        const take_t take = [](void *taker, problemCode_t code, std::size_t offset, const char *why, const char *path) {
            *static_cast<problem_t *>(taker) = {code, offset, why, path};
        };
        tell(text.data(), text.size(), take, &problem);
        if (problem)
            problem.numbers = readEnvelopeHead(text).numbers();
        return problem;
    }

    struct plan_t;

private:
    /// Takes a problem: its code, its place in the text, why, and the path of the key.
    using take_t = void (*)(void *taker, problemCode_t code, std::size_t offset, const char *why, const char *path);

    void *readOrdinary(const char *body, std::size_t size) const;
    void tell(const char *text, std::size_t size, take_t take, void *taker) const;

    const plan_t *plan_;
    make_t make_;
};

} // namespace vek
