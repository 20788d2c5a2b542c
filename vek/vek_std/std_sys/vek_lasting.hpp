// lasting_t: a value that is made once and is there as long as the process.
//
// For static values that the destructors of other static objects may need: those run when the process ends, in an order
// that nobody can know. What the value owns is never released.
#pragma once

#include "vek/vek_std/std_sys/vek_cpp20.hpp"

#include <utility>

namespace vek {

template <class T>
class lasting_t {
public:
    template <class... Arguments>
    explicit lasting_t(Arguments &&...arguments) : value_(std::forward<Arguments>(arguments)...) {}
    ~lasting_t() {}
    lasting_t(const lasting_t &) = delete;
    lasting_t &operator=(const lasting_t &) = delete;

    const T &get() const { return value_; }

private:
    union {
        T value_;
    };
};

} // namespace vek
