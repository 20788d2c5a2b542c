#include "model/bodyMutator.hpp"

#include <algorithm>

namespace model {

namespace {

using namespace std::string_literals;

const std::string structure = "{}=;,\"";

const std::vector<std::string> pieces{"\"\"",
                                      "\"",
                                      "{}",
                                      "{",
                                      "}",
                                      "{{}}",
                                      "=",
                                      ";",
                                      ",",
                                      "=;,",
                                      ";=",
                                      ",=",
                                      "\1",
                                      "\2",
                                      "\3\4\5",
                                      "\x80\xff",
                                      " ",
                                      "\t-",
                                      "-1",
                                      "0",
                                      "10",
                                      "11",
                                      "256",
                                      "257",
                                      "1000000",
                                      "2147483648",
                                      "-2147483648",
                                      "4294967297",
                                      "70000",
                                      "-0",
                                      "0x10",
                                      "1e3",
                                      "1e400",
                                      "-1e-400",
                                      ".5",
                                      "5.",
                                      "inf",
                                      "nan",
                                      "123456789012345678901234567890",
                                      "0.00000049999",
                                      "99999.9999995",
                                      "TRUE",
                                      "FALSE",
                                      "true",
                                      "discrete_e",
                                      "continuous_e",
                                      "sheet_e",
                                      "unknown_e",
                                      "negative_e",
                                      "mediaProof_e",
                                      "TSP",
                                      "\"a;b={c}\"",
                                      "{1,2,3,}",
                                      "{A=1;B=2;}",
                                      "{9,}",
                                      std::string(31, 'l'),
                                      std::string(256, 'm'),
                                      std::string(300, 'n')};

bool isKeyCharacter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

} // namespace

bodyMutator_t::bodyMutator_t(std::uint64_t seed, std::vector<std::string> corpus)
    : random_(seed), corpus_(std::move(corpus)) {}

std::string bodyMutator_t::mutated(std::string body) {
    for (std::size_t changes = 1 + below(6); changes > 0; --changes)
        change(body);
    std::replace(body.begin(), body.end(), '\0', '0');
    return body;
}

std::string bodyMutator_t::piece() {
    if (below(3) > 0)
        return pieces[below(pieces.size())];
    const std::string &other = corpus_[below(corpus_.size())];
    const auto [start, end] = stretch(other);
    return other.substr(start, end - start);
}

std::pair<std::size_t, std::size_t> bodyMutator_t::stretch(const std::string &body) {
    const auto boundary = [&](std::size_t from) {
        const std::size_t found = body.find_first_of(structure, std::min(from, body.size()));
        return found == std::string::npos ? body.size() : found + below(2);
    };
    const std::size_t start = boundary(below(body.size() + 1));
    return {start, boundary(start + below(below(2) == 0 ? 30 : 300))};
}

void bodyMutator_t::change(std::string &body) {
    const auto [start, end] = stretch(body);
    const std::string cut = body.substr(start, end - start);
    const std::size_t anywhere = below(body.size() + 1);
    switch (below(12)) {
    case 0:
        body.insert(anywhere, 1, static_cast<char>(1 + below(255)));
        break;
    case 1:
        body.insert(anywhere, 1, structure[below(structure.size())]);
        break;
    case 2:
        if (anywhere < body.size())
            body[anywhere] = structure[below(structure.size())];
        break;
    case 3:
        body.erase(anywhere, 1 + below(3));
        break;
    case 4:
        body.insert(anywhere, piece());
        break;
    case 5:
        body.replace(start, end - start, piece());
        break;
    case 6:
        body.erase(start, end - start);
        break;
    case 7: { // repeated, now and then often
        for (std::size_t times = below(20) == 0 ? 270 : 1 + below(3); times > 0 && body.size() < 20000; --times)
            body.insert(start, cut);
        break;
    }
    case 8: { // moved elsewhere
        body.erase(start, end - start);
        body.insert(std::min(stretch(body).first, body.size()), cut);
        break;
    }
    case 9:
        takeKeysAway(body);
        break;
    case 10:
        giveElementsKeys(body);
        break;
    default: { // a number for a number
        const std::size_t digit = body.find_first_of("0123456789", anywhere);
        if (digit == std::string::npos)
            break;
        const std::size_t behind = body.find_first_not_of("0123456789.-", digit);
        body.replace(digit, std::min(behind, body.size()) - digit, pieces[below(pieces.size())]);
    }
    }
}

// Makes pairs positional, within a stretch of the body.
void bodyMutator_t::takeKeysAway(std::string &body) {
    auto [start, end] = below(2) == 0 ? stretch(body) : std::pair(std::size_t{0}, body.size());
    for (std::size_t at = body.find('=', start); at != std::string::npos && at < end; at = body.find('=', start)) {
        std::size_t key = at;
        while (key > start && isKeyCharacter(body[key - 1]))
            --key;
        body.erase(key, at + 1 - key);
        end -= at + 1 - key;
        start = key;
    }
}

// Writes the keys of a list's elements into its body: all of them, or some, and not all rightly numbered.
void bodyMutator_t::giveElementsKeys(std::string &body) {
    const std::size_t list = body.find("={", below(body.size() + 1));
    if (list == std::string::npos)
        return;
    std::size_t key = list;
    while (key > 0 && isKeyCharacter(body[key - 1]))
        --key;
    const std::string name = body.substr(key, list - key);
    const std::size_t mistakes = below(4);
    int depth = 1;
    int index = 0;
    bool isDue = true;
    for (std::size_t at = list + 2; at < body.size() && depth > 0 && body.size() < 20000; ++at) {
        if (isDue && body[at] != '}' && (mistakes != 1 || below(2) == 0)) {
            const std::size_t number = mistakes == 2 ? below(5) : static_cast<std::size_t>(index);
            const std::string spelt = name + (mistakes == 3 && below(3) == 0 ? "0" : "") + std::to_string(number) + '=';
            body.insert(at, spelt);
            at += spelt.size();
        }
        isDue = depth == 1 && body[at] == ',';
        index += isDue ? 1 : 0;
        depth += body[at] == '{' ? 1 : body[at] == '}' ? -1 : 0;
    }
}

} // namespace model
