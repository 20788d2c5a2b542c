#include "tests/support/model/literalModel.hpp"

#include "tests/support/decimalPoint.hpp"
#include "vek/api/private/catalogue.hpp"
#include "vek/text/textField.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>

namespace model {

namespace {

// ---- The trees of keys, from the records' descriptions.

kind_t kindOf(const vek::fieldDescription_t &field) {
    using enum vek::fieldKind_t;
    const std::map<vek::fieldKind_t, kind_t> kinds{{integer32, kind_t::integer}, {integer16, kind_t::shortInteger},
                                                   {float64, kind_t::real},      {float32, kind_t::floating},
                                                   {pixels, kind_t::pixel},      {boolean, kind_t::boolean},
                                                   {enumeration, kind_t::name},  {text, kind_t::text},
                                                   {record, kind_t::record}};
    return kinds.at(field.kind);
}

class builder_t : public vek::recordVisitor_t {
public:
    void visit(const vek::recordDescription_t &description) override {
        node.members = membersOf(description.fields);
        node.isPlacement = description.record == "imageTopLeft_t";
        isSelf = description.kind == vek::structureKind_t::ownRecord;
        for (node_t &member : node.members)
            member.room = node.isPlacement ? -1 : member.room; // its texts are copied without a limit
    }

    node_t node;
    bool isSelf = false;

private:
    static node_t listOf(node_t element) {
        node_t list;
        list.kind = kind_t::list;
        list.members.push_back(std::move(element));
        return list;
    }

    static node_t elementOf(const vek::fieldDescription_t &field) {
        node_t element;
        if (field.kind == vek::fieldKind_t::text16) {
            element.kind = kind_t::shortInteger;
            return field.list ? listOf(element) : element;
        }
        if (const auto *record = field.as<vek::elementRecord_t>()) {
            builder_t builder;
            record->visit(builder);
            return builder.node;
        }
        element.kind = kindOf(field);
        if (const auto *text = field.as<vek::arrayText_t>())
            element.room = text->room;
        return element;
    }

    static node_t nodeOf(const vek::fieldDescription_t &field, const std::vector<const void *> &addresses) {
        if (field.list || field.kind == vek::fieldKind_t::text16) {
            node_t list = listOf(elementOf(field));
            const vek::listDescription_t described = field.list.value_or(vek::listDescription_t());
            list.room = described.room.value_or(-1);
            list.isRange = described.kind == vek::listKind_t::range;
            const auto counter = std::find(addresses.begin(), addresses.end(), described.countMember);
            if (described.countMember != nullptr)
                list.countMember = static_cast<int>(counter - addresses.begin());
            return list;
        }
        node_t node = elementOf(field);
        if (const auto *words = field.as<vek::enumWords_t>())
            node.names.assign(words->names.begin(), words->names.end());
        if (const auto *nested = field.as<vek::nestedRecord_t>())
            node.members = membersOf(*nested->group);
        return node;
    }

    static std::vector<node_t> membersOf(const vek::textGroup_t &group) {
        std::vector<node_t> nodes;
        std::vector<const void *> addresses;
        for (const vek::textField_t *field = group.firstMember(); field != nullptr; field = field->nextMember()) {
            vek::fieldDescription_t description;
            field->describe(description);
            nodes.push_back(nodeOf(description, addresses));
            nodes.back().key = field->key();
            addresses.push_back(description.member);
        }
        return nodes;
    }
};

// ---- Numbers: what stands at the start of a text, converted by the C library.

std::size_t skipDigits(const std::string &text, std::size_t at) {
    while (at < text.size() && text[at] >= '0' && text[at] <= '9')
        ++at;
    return at;
}

std::size_t skipSpaceAndSign(const std::string &text, std::size_t at) {
    while (at < text.size() && std::string(" \t\n\v\f\r").find(text[at]) != std::string::npos)
        ++at;
    return at < text.size() && (text[at] == '-' || text[at] == '+') ? at + 1 : at;
}

std::int32_t toInteger(const std::string &text) {
    const std::size_t start = skipSpaceAndSign(text, 0);
    std::uint64_t value = 0;
    for (std::size_t i = start; i < skipDigits(text, start); ++i)
        value = (value * 10 + static_cast<std::uint64_t>(text[i] - '0')) % 4294967296U;
    const bool isNegative = start > 0 && text[start - 1] == '-';
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(isNegative ? 4294967296U - value : value));
}

double toReal(const std::string &text) {
    const std::size_t start = skipSpaceAndSign(text, 0);
    std::size_t end = skipDigits(text, start);
    std::size_t digits = end - start;
    if (end < text.size() && text[end] == '.') {
        const std::size_t point = end;
        end = skipDigits(text, point + 1);
        digits += end - point - 1;
    }
    if (digits == 0)
        return 0.0;
    if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        const std::size_t sign = end + 1;
        const bool hasSign = sign < text.size() && (text[sign] == '-' || text[sign] == '+');
        const std::size_t exponent = hasSign ? sign + 1 : sign;
        if (skipDigits(text, exponent) > exponent)
            end = skipDigits(text, exponent);
    }
    return vek::test::toDouble(text.substr(0, end));
}

std::string fromReal(double value) {
    char text[400];
    std::snprintf(text, sizeof text, "%lf", value);
    return vek::test::withPoint(text);
}

// ---- Pairs.

using text_t = std::optional<std::string>;

struct pair_t {
    text_t key;
    text_t value;
};

struct pairList_t {
    bool keyed = false;
    std::vector<pair_t> pairs;
};

bool isSeparator(char c) {
    return c == '=' || c == ';' || c == ',';
}

struct tokenizer_t {
    std::string text;
    std::size_t at = 0;

    // Reads a token and the run of separators behind it.
    text_t read(text_t &delimiter) {
        delimiter.reset();
        if (at == text.size())
            return {};
        text_t token = readToken(delimiter);
        if (!delimiter)
            return token;
        for (; at < text.size() && isSeparator(text[at]); ++at)
            *delimiter += text[at];
        return token;
    }

private:
    // Leaves the delimiter null when the rest of the text is consumed for want of an end.
    text_t readToken(text_t &delimiter) {
        const std::size_t start = at;
        if (text[at] == '{') {
            int depth = 1;
            for (++at; at < text.size() && depth > 0; ++at)
                depth += text[at] == '{' ? 1 : text[at] == '}' ? -1 : 0;
            if (depth > 0)
                return {};
            delimiter = "";
            return text.substr(start, at - start);
        }
        if (text[at] == '"') {
            const std::size_t quote = text.find('"', start + 1);
            at = quote == std::string::npos ? text.size() : quote + 1;
            if (quote == std::string::npos)
                return text.substr(start + 1);
            delimiter = "";
            return text.substr(start + 1, quote - start - 1);
        }
        while (at < text.size() && !isSeparator(text[at]))
            ++at;
        if (at < text.size())
            delimiter = "";
        return at > start ? text_t(text.substr(start, at - start)) : text_t();
    }
};

pairList_t scan(const std::string &body) {
    tokenizer_t tokenizer{body.size() < 2 ? std::string() : body.substr(1, body.size() - 2)};
    pairList_t list;
    while (tokenizer.at < tokenizer.text.size()) {
        pair_t pair;
        text_t delimiter;
        const text_t token = tokenizer.read(delimiter);
        if (delimiter && delimiter->find('=') != std::string::npos) {
            pair.key = token;
            pair.value = tokenizer.read(delimiter);
            list.keyed = true;
        } else {
            pair.value = token;
        }
        if (pair.key || pair.value)
            list.pairs.push_back(pair);
    }
    return list;
}

const pair_t *find(const pairList_t &list, const std::string &key, std::size_t index) {
    if (!list.keyed)
        return index < list.pairs.size() ? &list.pairs[index] : nullptr;
    for (const pair_t &pair : list.pairs)
        if (pair.key && *pair.key == key)
            return &pair;
    return nullptr;
}

// ---- Fields.

struct field_t {
    explicit field_t(const node_t &described, const std::string &withKey = {})
        : node(&described), key(withKey.empty() ? described.key : withKey) {
        if (node->kind == kind_t::record)
            for (const node_t &member : node->members)
                fields.emplace_back(member);
    }

    void fromText(const std::string &value);
    void assignPairs(const pairList_t &list);
    void throughStructure();
    std::string toText() const;

    const node_t *node;
    std::string key;
    bool isSet = false;
    std::int32_t integer = 0; // also booleans and the index of a name
    double real = 0.0;
    std::string text;
    std::vector<field_t> fields; // members or elements

private:
    std::string printedPairs() const;
    void listThroughStructure(std::vector<field_t> &siblings, std::size_t position);
    void placeTexts();
};

void field_t::fromText(const std::string &value) {
    switch (node->kind) {
    case kind_t::integer:
        integer = toInteger(value);
        break;
    case kind_t::shortInteger:
        integer = static_cast<std::int16_t>(toInteger(value));
        break;
    case kind_t::real:
    case kind_t::pixel:
        real = toReal(value);
        break;
    case kind_t::floating:
        real = static_cast<double>(static_cast<float>(toReal(value)));
        break;
    case kind_t::boolean:
        integer = value == "TRUE" ? 1 : 0;
        break;
    case kind_t::name: {
        const auto name = std::find(node->names.begin(), node->names.end(), value);
        if (name == node->names.end())
            return;
        integer = static_cast<std::int32_t>(name - node->names.begin());
        break;
    }
    case kind_t::text:
        text = value;
        for (char &c : text)
            c = c >= 1 && c <= 3 ? "=;,"[c - 1] : c == 4 ? '{' : c == 5 ? '}' : c;
        break;
    case kind_t::record:
    case kind_t::list: {
        if (value.empty())
            return;
        const pairList_t list = scan(value);
        if (list.pairs.empty())
            return;
        assignPairs(list);
        break;
    }
    }
    isSet = true;
}

void field_t::assignPairs(const pairList_t &list) {
    if (node->kind == kind_t::list)
        for (std::size_t i = fields.size(); i < list.pairs.size(); ++i)
            fields.emplace_back(node->members[0], key + std::to_string(i));
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const pair_t *pair = find(list, fields[i].key, i);
        if (pair != nullptr && pair->value && !pair->value->empty())
            fields[i].fromText(*pair->value);
    }
}

// What copying into a structure, and from it into a new record, makes of a field: set, whatever it was, and with a
// value that the structure can hold.
void field_t::throughStructure() {
    isSet = true;
    if (node->kind == kind_t::text && node->room > 0)
        text = text.substr(0, static_cast<std::size_t>(node->room - 1));
    if (node->kind == kind_t::pixel) {
        const bool isInRange = real > -2147483649.0 && real < 2147483648.0;
        real = isInRange ? static_cast<double>(static_cast<std::int32_t>(real)) : 0.0;
    }
    if (node->isPlacement)
        placeTexts();
    for (field_t &field : fields)
        field.throughStructure();
    if (node->kind == kind_t::record)
        for (std::size_t i = 0; i < fields.size(); ++i)
            if (fields[i].node->kind == kind_t::list)
                fields[i].listThroughStructure(fields, i);
}

void field_t::listThroughStructure(std::vector<field_t> &siblings, std::size_t position) {
    if (node->room > 0)
        while (fields.size() != static_cast<std::size_t>(node->room)) { // the array is all there
            if (fields.size() > static_cast<std::size_t>(node->room)) {
                fields.pop_back();
                continue;
            }
            fields.emplace_back(node->members[0], key);
            fields.back().throughStructure();
        }
    if (node->countMember >= 0) {
        std::int32_t &count = siblings[static_cast<std::size_t>(node->countMember)].integer;
        if (node->room > 0)
            count = std::min(count, node->room);
        while (!fields.empty() && static_cast<std::int64_t>(fields.size()) > count)
            fields.pop_back();
    }
    if (!node->isRange)
        return;
    field_t &type = siblings[position - 1];
    if (fields.empty()) {
        type.isSet = false;
    } else if (type.integer != 0) {
        double minimum = fields[0].real;
        double maximum = -1.0;
        for (const field_t &value : fields) {
            minimum = value.real < minimum ? value.real : minimum;
            maximum = value.real > maximum ? value.real : maximum;
        }
        while (fields.size() > 1)
            fields.pop_back();
        fields.emplace_back(fields[0]);
        fields[0].real = minimum;
        fields[1].real = maximum;
    }
}

// The image placement copies its two texts without a limit into one run of 256 and 132 bytes.
void field_t::placeTexts() {
    std::string run(256 + 132, '\0');
    field_t &name = fields[fields.size() - 2];
    field_t &separation = fields.back();
    const auto place = [&run](const std::string &placed, std::size_t start) {
        for (std::size_t i = 0; i <= placed.size() && start + i < run.size(); ++i)
            run[start + i] = i < placed.size() ? placed[i] : '\0';
        run.back() = '\0';
    };
    place(name.text, 0);
    place(separation.text, 256);
    name.text = run.c_str();
    separation.text = run.c_str() + 256;
}

std::string field_t::toText() const {
    if (node->kind == kind_t::record || node->kind == kind_t::list) {
        const std::string pairs = printedPairs();
        return pairs.empty() ? "" : '{' + pairs + '}';
    }
    if (!isSet)
        return "";
    switch (node->kind) {
    case kind_t::integer:
    case kind_t::shortInteger:
        return std::to_string(integer);
    case kind_t::boolean:
        return integer != 0 ? "TRUE" : "FALSE";
    case kind_t::name:
        return node->names[static_cast<std::size_t>(integer)];
    case kind_t::text: {
        std::string escaped = text;
        for (char &c : escaped) {
            const std::size_t code = std::string("=;,{}").find(c);
            c = code != std::string::npos ? static_cast<char>(code + 1) : c;
        }
        return escaped;
    }
    default:
        return fromReal(real);
    }
}

std::string field_t::printedPairs() const {
    std::string all;
    for (const field_t &field : fields) {
        const std::string value = field.toText();
        if (!value.empty())
            all += node->kind == kind_t::record ? field.key + '=' + value + ';' : value + ',';
    }
    return all;
}

// ---- Envelopes.

struct reader_t {
    const std::string &text;
    std::size_t at;

    // Keeps the target when there is no number; beyond 32 bits it saturates.
    void number(std::int32_t &target) {
        const std::size_t start = skipSpaceAndSign(text, at);
        const bool isNegative = start > at && text[start - 1] == '-';
        at = skipDigits(text, start);
        if (at == start)
            return;
        const double value = vek::test::toDouble(text.substr(start, at - start)) * (isNegative ? -1.0 : 1.0);
        target = value > 2147483647.0    ? std::numeric_limits<std::int32_t>::max()
                 : value < -2147483648.0 ? std::numeric_limits<std::int32_t>::min()
                                         : static_cast<std::int32_t>(value);
    }
};

std::string readBody(const std::string &text, std::int32_t &id, header_t &header) {
    if (text.substr(0, 2) != "@@")
        return "";
    reader_t reader{text, 2};
    reader.number(id);
    std::int32_t length = 0;
    reader.number(length);
    const std::size_t size = text.size() + 1;
    if (static_cast<std::int64_t>(size) != length)
        return "";
    reader.number(header.echoTag);
    reader.number(header.sequenceNumber);
    const std::size_t unread = size - reader.at;
    return unread > 3 ? text.substr(reader.at + 1, unread - 4) : "";
}

std::string envelope(std::int32_t id, const std::string &body, header_t &header) {
    const std::int64_t next = std::int64_t{header.sequenceNumber} + 1;
    header.sequenceNumber = next > 2147483647 ? std::numeric_limits<std::int32_t>::min() : static_cast<int>(next);
    const std::string start = "@@" + std::to_string(id) + ' ';
    const std::string rest =
        ' ' + std::to_string(header.echoTag) + ' ' + std::to_string(header.sequenceNumber) + ' ' + body + "!!";
    char length[32];
    std::snprintf(length, sizeof length, "%5zu", start.size() + 5 + rest.size() + 1);
    return start + std::string(length).substr(0, 5) + rest;
}

} // namespace

literalModel_t::literalModel_t() {
    for (const vek::catalogueRow_t &row : vek::catalogueRows()) {
        if (row.conversion == nullptr)
            continue;
        builder_t builder;
        vek::visitOf(row.id)(builder);
        records_[row.id] = {builder.node, builder.isSelf};
    }
}

std::string literalModel_t::convertedBody(std::int32_t id, const std::string &body) const {
    const record_t &described = records_.at(id);
    field_t record(described.node);
    record.fromText(body);
    if (!described.isSelf)
        record.throughStructure();
    return record.toText();
}

std::string literalModel_t::converted(const std::string &text, std::int32_t &id, header_t &header) const {
    const std::string body = text.empty() ? "" : readBody(text, id, header);
    return text.empty() || !records_.contains(id) ? "" : envelope(id, convertedBody(id, body), header);
}

} // namespace model
