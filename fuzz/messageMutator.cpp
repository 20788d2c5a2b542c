// How libFuzzer makes messages of messages: pairs are dropped, repeated, exchanged, taken from other messages, counts
// and names put to others; then the envelope is sealed, or
// not quite.
#include "fuzz/bodyTree.hpp"
#include "tests/support/messages.hpp"
#include "tests/support/model/bodyMutator.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t maxSize);
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t maxSize,
                                               unsigned seed);

namespace {

using namespace vek::test;

class messageMutator_t {
public:
    explicit messageMutator_t(std::uint64_t seed) : random_(seed, bodies()) {
        for (const sample_t &sample : samples())
            collect(trees_.emplace_back(treeOf(sample.body)));
    }

    std::string mutated(const std::string &text) {
        auto id =
            static_cast<std::int32_t>(std::strtol(text.c_str() + std::min<std::size_t>(2, text.size()), nullptr, 10));
        const std::size_t start = std::min(text.find('{'), text.size());
        std::string body = text.substr(start, text.find("!!", start) - start);
        if (start == text.size() || random_.below(50) == 0) {
            const sample_t &sample = any(samples());
            id = sample.id;
            body = sample.body;
        }
        if (random_.below(3) == 0) {
            body = random_.mutated(body);
        } else {
            bodyTree_t tree = treeOf(body);
            for (std::size_t changes = 1 + random_.below(4); changes > 0; --changes)
                change(tree, changes == 1);
            body = bodyOf(tree);
        }
        std::string sealed = message(id, body, number(7), number(41));
        if (random_.below(8) == 0)
            damageEnvelope(sealed);
        return sealed;
    }

private:
    static std::vector<std::string> bodies() {
        std::vector<std::string> all;
        for (const sample_t &sample : samples())
            all.push_back(sample.body);
        return all;
    }

    template <class List>
    auto any(List &list) -> decltype(list[0]) {
        return list[random_.below(list.size())];
    }

    void collect(const bodyTree_t &tree) {
        if (!tree.key.empty())
            keys_.push_back(tree.key);
        if (!tree.value.empty())
            values_.push_back(tree.value);
        for (const bodyTree_t &pair : tree.pairs)
            collect(pair);
    }

    bodyTree_t &anyGroup(bodyTree_t &top) {
        bodyTree_t *group = &top;
        while (!group->pairs.empty() && random_.below(3) > 0)
            if (bodyTree_t &inner = any(group->pairs); inner.isGroup)
                group = &inner;
            else
                break;
        return *group;
    }

    std::string anyKey() {
        std::string key = any(keys_);
        if (random_.below(4) == 0)
            key += std::to_string(random_.below(3)); // as the elements of a keyed list have it
        if (random_.below(8) == 0)
            key[random_.below(key.size())] ^= ' ';
        return key;
    }

    std::string otherValue(const std::string &value) {
        const std::size_t kind = random_.below(4);
        if (const char *end = value.c_str() + value.size(); kind == 0 && value.find_first_not_of("0123456789-") > 8) {
            char *behind = nullptr;
            const long number = std::strtol(value.c_str(), &behind, 10); // a count too many, or too few
            if (behind == end)
                return std::to_string(number + static_cast<long>(random_.below(5)) - 2);
        }
        return kind == 1 ? any(values_) : kind == 2 ? random_.anyReal() : random_.piece();
    }

    // `isLast`: many copies of many would take gigabytes.
    void change(bodyTree_t &top, bool isLast) {
        bodyTree_t &group = anyGroup(top);
        std::vector<bodyTree_t> &pairs = group.pairs;
        const std::size_t kind = random_.below(10);
        if (pairs.empty() || kind == 0) {
            bodyTree_t other = anyGroup(any(trees_)); // a copy: it may be cut
            pairs.push_back(other.pairs.empty() || random_.below(2) == 0 ? other : any(other.pairs));
            return;
        }
        const auto at = pairs.begin() + static_cast<std::ptrdiff_t>(random_.below(pairs.size()));
        if (kind == 1)
            pairs.erase(at);
        else if (kind == 2)
            std::swap(*at, any(pairs));
        else if (kind == 3)
            pairs.insert(at, isLast && random_.below(20) == 0 ? 270 : 1 + random_.below(3), bodyTree_t(*at));
        else if (kind == 4)
            at->key = random_.below(2) == 0 ? "" : anyKey();
        else if (kind == 5)
            at->isGroup = !at->isGroup;
        else if (kind == 6)
            pairs.insert(at, {anyKey(), random_.piece()});
        else
            at->value = otherValue(at->value);
    }

    std::int32_t number(std::int32_t usual) {
        return random_.below(16) > 0 ? usual : static_cast<std::int32_t>(random_.below(std::uint64_t{1} << 32));
    }

    void damageEnvelope(std::string &text) {
        const std::size_t head = std::min(text.find('{'), text.size());
        const std::size_t at = random_.below(head + 1);
        const std::size_t kind = random_.below(6);
        if (kind == 0)
            text.resize(text.size() - 1 - random_.below(3));
        else if (kind == 1)
            text += random_.piece();
        else if (kind == 2)
            text.insert(at, random_.piece());
        else if (kind == 3)
            text.erase(at, 1);
        else if (kind == 4)
            text.replace(2, 4, std::to_string(4096 + random_.below(110)));
        else
            text.replace(7, 5, std::to_string(text.size() + random_.below(5)));
    }

    model::bodyMutator_t random_;
    std::vector<bodyTree_t> trees_;
    std::vector<std::string> keys_, values_;
};

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
    static messageMutator_t mutator(seed); // made once: from then on it goes by its own numbers
    if (seed % 4 == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    const std::string made = mutator.mutated({reinterpret_cast<const char *>(data), size});
    const std::size_t room = std::min(made.size(), maxSize);
    std::copy_n(made.begin(), room, data);
    return room;
}
