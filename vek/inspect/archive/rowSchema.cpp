// The schemas follow from the same lists of columns as the rows.
#include "vek/inspect/archive/front.hpp"
#include "vek/inspect/archive/rowJson.hpp"
#include "vek/inspect/forms/jsonAppender.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>
#include <iterator>

namespace vek::inspect {

namespace {

std::string_view schemaOf(columnType_t type) {
    switch (type) {
    case columnType_t::integer64:
        return R"({"type": "integer", "minimum": 0})";
    case columnType_t::integer32:
        return R"({"$ref": "#/definitions/integer"})";
    case columnType_t::integer16:
        return R"({"$ref": "#/definitions/short"})";
    case columnType_t::real64:
    case columnType_t::real32:
        return R"({"anyOf": [{"type": "number"}, {"enum": ["inf", "-inf"]}]})";
    case columnType_t::boolean:
        return R"({"enum": [0, 1]})";
    case columnType_t::text:
        break;
    }
    return R"({"type": "string"})";
}

struct frontSchema_t {
    std::string_view type; // in ClickHouse
    std::string_view schema;
    bool isAlwaysThere;
};

// Of the columns in front; without a time there is no fraction of it.
constexpr frontSchema_t frontSchemas[] = {
    {"String", R"({"type": "string"})", true},
    {"UInt64", R"({"type": "integer", "minimum": 0})", true},
    {"UInt32", R"({"type": "integer", "minimum": 0})", false},
    {"UInt8", R"({"enum": [0, 1]})", true},
    {"Nullable(Int32)", R"({"$ref": "#/definitions/integer"})", false},
    {"Nullable(DateTime('UTC'))",
     R"({"type": "string", "pattern": "^[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}$"})", false},
};

// Rows as JSON are for no archive: they have no number of their log.
const frontSchema_t *schemaOf(const frontColumn_t &column) {
    if (column.name == "source_id")
        return nullptr;
    const auto *const found =
        std::find_if(std::begin(frontSchemas), std::end(frontSchemas),
                     [&column](const frontSchema_t &one) { return one.type == column.clickhouse.type; });
    return found != std::end(frontSchemas) ? found : nullptr;
}

void appendProperties(jsonAppender_t &json, const table_t &table) {
    json.object("table", [&] { json.member("const", table.name); });
    for (const frontColumn_t &column : frontColumns())
        if (const frontSchema_t *schema = schemaOf(column)) {
            json.name(column.name);
            json.ready(schema->schema);
        }
    for (std::size_t i = 0; i < table.depth; ++i) {
        json.name(elementColumn(i));
        json.ready(R"({"type": "integer", "minimum": 0})");
    }
    for (const column_t &column : table.columns) {
        json.name(column.name);
        if (column.isList)
            json.ready(joined({R"({"type": "array", "minItems": 1, "items": )", schemaOf(column.type), "}"}));
        else
            json.ready(schemaOf(column.type));
    }
}

void appendRequired(jsonAppender_t &json, const table_t &table) {
    json.name("required");
    json.open('[');
    for (const frontColumn_t &column : frontColumns())
        if (const frontSchema_t *schema = schemaOf(column); schema != nullptr && schema->isAlwaysThere)
            json.value(column.name);
    for (std::size_t i = 0; i < table.depth; ++i)
        json.value(elementColumn(i));
    for (const column_t &column : table.columns)
        if (column.isAlwaysThere)
            json.value(column.name);
    json.close(']');
}

void appendRowSchema(std::string &out, const table_t &table) {
    jsonAppender_t json(out);
    json.open('{');
    json.member("description", table.about);
    json.member("type", "object");
    json.object("properties", [&] { appendProperties(json, table); });
    appendRequired(json, table);
    json.member("additionalProperties", false);
    json.close('}');
}

} // namespace

std::vector<schemaDefinition_t> rowDefinitions() {
    std::vector<schemaDefinition_t> definitions;
    schemaDefinition_t row{"row", {}};
    jsonAppender_t any(row.json);
    any.open('{');
    any.member("description", "A row of any table; where rows of one table alone are given, they are without its name");
    any.name("anyOf");
    any.open('[');
    for (const table_t &table : archiveTables().all()) {
        schemaDefinition_t &definition = definitions.emplace_back();
        definition.name = "row_" + table.name;
        appendRowSchema(definition.json, table);
        any.open('{');
        any.member("$ref", "#/definitions/" + definition.name);
        any.close('}');
    }
    any.close(']');
    any.close('}');
    definitions.push_back(std::move(row));
    return definitions;
}

} // namespace vek::inspect
