// floatingPointGuard_t: the ordinary floating-point environment while a call of the library runs, and the host's again
// when it returns.
//
// Hosts choose how floating point rounds, which exceptions end the process, whether small numbers count as zero and,
// on the x87 unit, how precise it is. None of that is to show in what the library reads and writes, and what the
// library computes is not to show in the host's status flags. Each thread has an environment of its own.
//
// A guard stands in the calls that a host makes from outside, before anything is computed. Reading the processor's
// words takes a few cycles; they are written only when they are not as they should be.
#pragma once

#if defined(__i386__) || defined(__x86_64__)
#    ifdef __SSE__
#        include <xmmintrin.h>
#    endif
#    include <cstdint>
#elif !defined(__EMSCRIPTEN__)
#    include <cfenv>
#endif

namespace vek {

#if defined(__i386__) || defined(__x86_64__)

namespace detail {

#    ifdef __SSE__
/// The control and status word of the SSE unit.
class sseGuard_t {
public:
    sseGuard_t() : hosts_(_mm_getcsr()) {
        if ((hosts_ & control) != ordinary) [[unlikely]]
            _mm_setcsr((hosts_ & ~(control | status)) | ordinary);
    }
    ~sseGuard_t() {
        if (_mm_getcsr() != hosts_)
            _mm_setcsr(hosts_);
    }
    sseGuard_t(const sseGuard_t &) = delete;
    sseGuard_t &operator=(const sseGuard_t &) = delete;

private:
    static constexpr unsigned status = 0x003F;   // the exceptions that happened
    static constexpr unsigned control = 0xFFC0;  // flushing to zero, rounding, masked exceptions, small operands as 0
    static constexpr unsigned ordinary = 0x1F80; // to nearest, all exceptions masked

    unsigned hosts_;
};
#    endif

#    ifdef __i386__
/// The environment of the x87 unit, which 32-bit calls return their reals through. What it computes there is exact with
/// 53 bits and with 64, and both are ordinary.
class x87Guard_t {
public:
    x87Guard_t() : status_(statusWord()) {
        std::uint16_t word = 0;
        asm volatile("fnstcw %0" : "=m"(word));
        if ((word & control) != ordinary) [[unlikely]] {
            save();
            const std::uint16_t all = ordinary | 0x0140; // 64 bits
            asm volatile("fnclex\n\tfldcw %0" : : "m"(all));
        }
    }
    ~x87Guard_t() {
        if (isSaved_)
            restore();
        else if (((statusWord() ^ status_) & status) != 0) [[unlikely]] {
            save();
            environment_[1] = (environment_[1] & ~std::uint32_t{status}) | (status_ & status);
            restore();
        }
    }
    x87Guard_t(const x87Guard_t &) = delete;
    x87Guard_t &operator=(const x87Guard_t &) = delete;

private:
    static unsigned statusWord() {
        std::uint16_t word = 0;
        asm volatile("fnstsw %0" : "=m"(word));
        return word;
    }
    void save() {
        asm volatile("fnstenv %0" : "=m"(environment_));
        isSaved_ = true;
    }
    void restore() { asm volatile("fldenv %0" : : "m"(environment_)); }

    static constexpr unsigned status = 0x477F;   // the exceptions that happened, and the condition codes
    static constexpr unsigned control = 0x0E3F;  // rounding, masked exceptions, and of the precision what 24 bits lack
    static constexpr unsigned ordinary = 0x023F; // to nearest, all exceptions masked

    unsigned status_;
    bool isSaved_ = false;
    std::uint32_t environment_[7] = {}; // control, status, tags and last operation, a word each
};
#    endif

} // namespace detail

class floatingPointGuard_t {
#    ifdef __i386__
    detail::x87Guard_t x87_;
#    endif
#    ifdef __SSE__
    detail::sseGuard_t sse_;
#    endif
};

#elif defined(__EMSCRIPTEN__)

/// Nothing can be set there.
class [[maybe_unused]] floatingPointGuard_t {};

#else

class floatingPointGuard_t {
public:
    floatingPointGuard_t() {
        std::fegetenv(&hosts_);
        std::fesetenv(FE_DFL_ENV);
    }
    ~floatingPointGuard_t() { std::fesetenv(&hosts_); }
    floatingPointGuard_t(const floatingPointGuard_t &) = delete;
    floatingPointGuard_t &operator=(const floatingPointGuard_t &) = delete;

private:
    std::fenv_t hosts_;
};

#endif

} // namespace vek
