#include "vek/text/textField.hpp"

#include <array>
#include <cstddef>

namespace vek {

canonicalCursor_t textField_t::readAt(canonicalCursor_t at) {
    const std::string_view value = at.value();
    if (value.empty())
        return {};
    fromText(value);
    return at;
}

// A group of which no member is set prints nothing, not even braces: its pair disappears with it, at every level. That
// is known only when the members have been asked, so the writer goes back instead of each group being walked twice.
bodyWriter_t textGroup_t::toText(bodyWriter_t out) const {
    const std::size_t start = out.size();
    out.put(openBrace);
    out = collectPairs(out);
    if (out.size() == start + 1)
        out.rewind(start);
    else
        out.put(closeBrace);
    return out;
}

// The key is written first and taken back when no value follows: whether one does, only the member's own toText knows,
// and a set member may print nothing too (an enumeration without a name, an empty text). In a positional body it leaves
// no gap, so there the members behind it move up.
bodyWriter_t textGroup_t::collectPairs(bodyWriter_t out) const {
    const bool keyed = form_ == bodyForm_t::keyed;
    for (const textField_t *member = first_; member != nullptr; member = member->next_) {
        const std::size_t start = out.size();
        if (keyed) {
            out.putKey(member->key());
        }
        const std::size_t valueStart = out.size();
        out = member->toText(out);
        if (out.size() == valueStart)
            out.rewind(start);
        else
            out.put(keyed ? semicolon : comma);
    }
    return out;
}

// A record that is its own structure may be read into again, and then every key counts anew; the records that are bound
// to a structure live for one parse and are spared the walk.
void textGroup_t::fromText(std::string_view text) {
    if (text.empty())
        return;
    if (parsed_ != 0)
        for (textField_t *member = first_; member != nullptr; member = member->next_)
            member->matched_ = false;
    parsed_ = 1;
    tolerantScanner_t pairs(text);
    assignPairs(pairs);
    isSet = 1;
}

// Each member is due once, so whatever comes out of order, or again, ends the reading.
canonicalCursor_t textGroup_t::readAt(canonicalCursor_t at) {
    if (!at.enter())
        return {};
    for (textField_t *member = first_; member != nullptr; member = member->next_) {
        if (!at.skipKey(member->key()))
            continue;
        at = member->readAt(at);
        if (at.isNowhere() || !at.skip(semicolon))
            return {};
    }
    isSet = 1;
    return at.skip(closeBrace) ? at : canonicalCursor_t();
}

// Finds members by their keys, for one body whose keys are not in member order. The first few are looked for among the
// members in turn. A body that goes on like that gets a table of them: one of many short pairs would otherwise take all
// the members' keys for each.
class textGroup_t::memberSearch_t {
public:
    explicit memberSearch_t(textField_t *first) : first_(first) {}

    /// The member with this key, or null. The members are looked at from `hint` on and around, so that keys of which
    /// some are missing cost no more than a step each. It is a hint only: a group's keys differ.
    textField_t *find(std::string_view key, textField_t *hint) {
        if (hasTable_)
            return table_[slotOf(key)];
        if (++walks_ == mostWalks)
            makeTable();
        textField_t *const found = walk(key, hint, nullptr);
        return found != nullptr ? found : walk(key, first_, hint);
    }

private:
    static constexpr int mostWalks = 8;
    static constexpr std::size_t tableSize = 128; // at least twice the members of any record

    // Null when none from `from` to before `to` has the key.
    static textField_t *walk(std::string_view key, textField_t *from, const textField_t *to) {
        while (from != to && from->key() != key)
            from = from->next_;
        return from != to ? from : nullptr;
    }

    // A group with more members goes without.
    void makeTable() {
        std::size_t count = 0;
        for (const textField_t *member = first_; member != nullptr; member = member->next_)
            ++count;
        if (count > tableSize / 2)
            return;
        table_.fill(nullptr);
        for (textField_t *member = first_; member != nullptr; member = member->next_)
            table_[slotOf(member->key())] = member;
        hasTable_ = true;
    }

    // By open addressing: where the member with this key is, or would be.
    std::size_t slotOf(std::string_view key) const {
        const auto at = [key](std::size_t i) -> std::size_t { return static_cast<unsigned char>(key[i]); };
        std::size_t slot = key.size();
        if (!key.empty())
            slot += 7 * at(0) + 11 * at(key.size() / 2) + 3 * at(key.size() - 1);
        for (slot %= tableSize; table_[slot] != nullptr && table_[slot]->key() != key;)
            slot = (slot + 1) % tableSize;
        return slot;
    }

    textField_t *first_;
    int walks_ = 0;
    bool hasTable_ = false;
    std::array<textField_t *, tableSize> table_; // set when it is made
};

// As long as the keys come in member order, which is how the library writes them, each pair goes straight to the member
// that is due, without a search. A member that an earlier pair matched is never due: the first pair with a key counts.
// A key out of order is searched for, and the order goes on behind its member. Keyed or not is known only when a "="
// shows up or the body ends: a positional body is read again from its start, and of a keyed one the pairs without keys
// are no member's.
void textGroup_t::assignPairs(tolerantScanner_t &pairs) {
    const tolerantScanner_t start = pairs;
    memberSearch_t search(first_);
    textField_t *due = first_;
    std::string_view value;
    textPair_t pair;
    while (true) {
        if (due != nullptr && !due->matched_ && pairs.nextOf(due->key(), value)) {
            assign(*due, value);
            due = due->next_;
            continue;
        }
        if (!pairs.nextKeyed(pair))
            break;
        if (textField_t *member = search.find(pair.key, due); member != nullptr && !member->matched_) {
            assign(*member, pair.value);
            due = member->next_;
        }
    }
    if (!pairs.isKeyed()) {
        pairs = start;
        assignByPosition(pairs);
    }
}

// A pair with an empty value uses up its key: `NAME=;NAME=x;` leaves the name as it is.
void textGroup_t::assign(textField_t &member, std::string_view value) {
    member.matched_ = true;
    if (!value.empty())
        member.fromText(value);
}

// Surplus values are dropped. A missing value in the middle can't be told from none, since separators run together.
void textGroup_t::assignByPosition(tolerantScanner_t &pairs) {
    textPair_t pair;
    for (textField_t *member = first_; member != nullptr && pairs.next(pair); member = member->next_)
        assign(*member, pair.value);
}

void textGroup_t::describe(fieldDescription_t &description) const {
    description.kind = fieldKind_t::record;
    description.details = nestedRecord_t{this, {}};
}

} // namespace vek
