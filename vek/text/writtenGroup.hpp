// writtenGroup_t: a record that may be made to write. Then each of its members appends its pair when it is made, so the
// whole text is there when the record is, and the compiler, which sees all of it, leaves out everything but the
// writing.
#pragma once

#include "vek/text/textField.hpp"
#include "vek/text/writtenValue.hpp"

#include <cstddef>
#include <string_view>

namespace vek {

class writtenGroup_t : public textGroup_t {
public:
    /// The group of a member that is made to write.
    static writtenGroup_t &of(textGroup_t &group) { return static_cast<writtenGroup_t &>(group); }

    /// Appends the pair of a member, whose value its codec knows; nothing when it turns out to be empty.
    template <class Codec, class... Value>
    [[gnu::always_inline]] void append(std::string_view key, const Value &...value) {
        goOnAt(writePair(key, Codec::written(value...), out_));
    }

    /// Appends the pair of a member that is a group, of which `writeMembers` writes what stands in the braces; nothing
    /// when it writes nothing.
    template <class Write>
    void appendGroup(std::string_view key, const Write &writeMembers) {
        const std::size_t start = begin(key);
        out_ = writeMembers(out_);
        goOnAt(ended(start, key));
    }

    /// The place behind the record's text, which is nothing at all when no member wrote anything.
    bodyWriter_t ended() const {
        bodyWriter_t out = out_;
        if (out.size() == start_ + 1)
            out.rewind(start_);
        else
            out.put(closeBrace);
        return out;
    }

protected:
    /// A record that is not made to write.
    explicit writtenGroup_t(pass_t pass) : textGroup_t(pass) {}
    /// One that is, behind `out`.
    explicit writtenGroup_t(bodyWriter_t out) : textGroup_t(pass_t::write), out_(out), start_(out.size()) {
        out.put(openBrace);
        goOnAt(out);
    }
    /// A member of another record.
    writtenGroup_t(textGroup_t &parent, std::string_view key) : textGroup_t(parent, key) {
        if (pass() == pass_t::write) {
            out_ = of(parent).out_;
            start_ = begin(key);
        }
    }
    /// When it is made, the other goes on behind it.
    void endIn(textGroup_t &parent) {
        if (pass() == pass_t::write)
            of(parent).goOnAt(ended(start_, key()));
        else
            parent.makeFor(pass());
    }

private:
    // How many characters stand in front.
    std::size_t begin(std::string_view key) {
        const std::size_t start = out_.size();
        char *const open = writeKeyAt(key, out_.room(key.size() + 2));
        *open = openBrace;
        bodyWriter_t out = out_;
        out.advance(open + 1);
        goOnAt(out);
        return start;
    }
    bodyWriter_t ended(std::size_t start, std::string_view key) const {
        bodyWriter_t out = out_;
        if (out.size() == start + key.size() + 2) {
            out.rewind(start);
        } else {
            out.put(closeBrace);
            out.put(semicolon);
        }
        return out;
    }

    void goOnAt(bodyWriter_t out) {
        out_ = out;
        makeFor(pass_t::write);
    }

    bodyWriter_t out_;
    std::size_t start_ = 0;
};

} // namespace vek
