#include "tests/support/model/bodyMutator.hpp"

#include <algorithm>

namespace model {

namespace {

const std::string structure = "{}=;,\"";

const std::vector<std::string> pieces = [] {
    // One piece between two blanks.
    const std::string all =
        "\"\" \" {} { } {{}} = ; , =;, ;= ,= \1 \2 \3\4\5 \x80\xff \t- -1 0 10 11 256 257 1000000 "
        "2147483648 -2147483648 4294967297 70000 -0 0x10 1e3 1e400 -1e-400 .5 5. inf nan "
        "123456789012345678901234567890 0.00000049999 99999.9999995 TRUE FALSE true discrete_e "
        "continuous_e sheet_e unknown_e negative_e mediaProof_e TSP \"a;b={c}\" {1,2,3,} {A=1;B=2;} ";
    std::vector<std::string> cut{" ", std::string(31, 'l'), std::string(256, 'm'), std::string(300, 'n')};
    for (std::size_t at = 0, blank = 0; (blank = all.find(' ', at)) != std::string::npos; at = blank + 1)
        cut.push_back(all.substr(at, blank - at));
    return cut;
}();

// Where the key starts that ends at `end`.
std::size_t keyStart(const std::string &body, std::size_t end) {
    const std::size_t before = body.find_last_of("{}=;,\"", end == 0 ? 0 : end - 1);
    return before == std::string::npos ? 0 : std::min(before + 1, end);
}

} // namespace

std::string bodyMutator_t::mutated(std::string body) {
    for (std::size_t changes = 1 + below(6); changes > 0; --changes)
        change(body);
    return body;
}

std::pair<std::size_t, std::size_t> bodyMutator_t::stretch(const std::string &body) {
    const auto boundary = [&](std::size_t from) {
        const std::size_t found = body.find_first_of(structure, std::min(from, body.size()));
        return std::min(found == std::string::npos ? found : found + below(2), body.size());
    };
    const std::size_t start = boundary(below(body.size() + 1));
    return {start, std::max(start, boundary(start + below(below(2) == 0 ? 30 : 300)))};
}

std::string bodyMutator_t::piece() {
    if (const std::size_t kind = below(9); kind < 6)
        return kind == 0 ? anyReal() : pieces[below(pieces.size())];
    const std::string &other = corpus_[below(corpus_.size())];
    const auto [start, end] = stretch(other);
    return other.substr(start, end - start);
}

void bodyMutator_t::change(std::string &body) {
    const auto [start, end] = stretch(body);
    const std::string cut = body.substr(start, end - start);
    const std::size_t anywhere = below(body.size() + 1);
    const std::size_t kind = below(10);
    if (kind == 0)
        body.insert(anywhere, 1, static_cast<char>(1 + below(255)));
    else if (kind == 1)
        body.replace(anywhere, below(2), 1, structure[below(structure.size())]);
    else if (kind == 2)
        body.erase(anywhere, 1 + below(3));
    else if (kind == 3)
        body.insert(anywhere, piece());
    else if (kind == 4)
        body.replace(start, end - start, piece());
    else if (kind == 5)
        body.erase(start, end - start);
    else if (kind == 7) // moved elsewhere
        body.erase(start, end - start).insert(stretch(body).first, cut);
    else if (kind == 6) // repeated, now and then often
        for (std::size_t times = below(20) == 0 ? 270 : 1 + below(3); times > 0 && body.size() < 20000; --times)
            body.insert(start, cut);
    else if (kind == 8)
        takeKeysAway(body);
    else
        giveElementsKeys(body);
}

std::string bodyMutator_t::anyReal() {
    std::string real = below(3) == 0 ? "-" : "";
    const std::size_t digits = below(3) == 0 ? 1 + below(20) : 15 + below(6);
    const std::size_t point = below(2 * digits);
    for (std::size_t i = 0; i < digits; ++i)
        real.append(i == point ? "." : "").append(1, static_cast<char>('0' + below(10)));
    if (below(2) == 0)
        real += 'e' + std::to_string(static_cast<int>(below(46)) - 23);
    if (below(50) == 0)
        real += 'e' + std::to_string(static_cast<int>(below(700)) - 350);
    return real;
}

std::string bodyMutator_t::withOtherReals(std::string body) {
    for (std::size_t at = 0; (at = body.find_first_of("0123456789", at)) != std::string::npos;) {
        const std::string real = anyReal();
        body.replace(at, body.find_first_not_of("0123456789.", at) - at, real);
        at += real.size();
    }
    return body;
}

// Makes pairs positional: those of a stretch, or all.
void bodyMutator_t::takeKeysAway(std::string &body) {
    auto [start, end] = below(2) == 0 ? stretch(body) : std::pair(std::size_t{0}, body.size());
    for (std::size_t at = 0; (at = body.find('=', start)) < end; end -= at + 1 - start) {
        start = keyStart(body, at);
        body.erase(start, at + 1 - start);
    }
}

// Writes the keys of a list's elements into its body: all of them, or some, and not always rightly numbered.
void bodyMutator_t::giveElementsKeys(std::string &body) {
    const std::size_t list = body.find("={", below(body.size() + 1));
    if (list == std::string::npos)
        return;
    const std::size_t start = keyStart(body, list);
    const std::string key = body.substr(start, list - start);
    const std::size_t mistakes = below(4);
    std::size_t at = list + 2;
    for (std::size_t index = 0; at < body.size() && body[at] != '}' && body.size() < 20000; ++index) {
        std::string spelt = key + (mistakes == 3 && below(3) == 0 ? "0" : "");
        spelt += std::to_string(mistakes == 2 ? below(5) : index) + '=';
        if (mistakes == 1 && below(2) == 0)
            spelt.clear();
        body.insert(at, spelt);
        at += spelt.size();
        const std::size_t end = body[at] == '{' ? body.find('}', at) : at; // over a record
        at = std::min(body.find(',', std::min(end, body.size())), body.size() - 1) + 1;
    }
}

} // namespace model
