#include "vek/inspect/archive/rowJson.hpp"
#include "vek/inspect/forms/jsonAppender.hpp"

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
        return R"({"type": "number"})";
    case columnType_t::boolean:
        return R"({"enum": [0, 1]})";
    case columnType_t::text:
        break;
    }
    return R"({"type": "string"})";
}

void appendRowSchema(std::string &out, const table_t &table) {
    jsonAppender_t json(out);
    json.open('{');
    json.member("description", table.about);
    json.member("type", "object");
    json.object("properties", [&] {
        json.object("table", [&] { json.member("const", table.name); });
        json.ready(R"("source": {"type": "string"},
    "byte_offset": {"type": "integer", "minimum": 0},
    "log_time": {"type": "string", "pattern": "^[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}$"},
    "log_microsecond": {"type": "integer", "minimum": 0, "maximum": 999999},
    "echo_tag": {"$ref": "#/definitions/integer"},
    "sequence_number": {"$ref": "#/definitions/integer"},
    "damaged": {"enum": [0, 1]})");
        for (std::size_t i = 0; i < table.depth; ++i) {
            json.name(elementColumn(i));
            json.ready(R"({"type": "integer", "minimum": 0})");
        }
        for (const column_t &column : table.columns) {
            json.name(column.name);
            if (column.isList)
                json.ready(std::string(R"({"type": "array", "minItems": 1, "items": )").append(schemaOf(column.type)) +
                           '}');
            else
                json.ready(schemaOf(column.type));
        }
    });
    json.name("required");
    json.open('[');
    for (const std::string_view name : {"source", "byte_offset", "damaged"})
        json.value(name);
    for (std::size_t i = 0; i < table.depth; ++i)
        json.value(elementColumn(i));
    for (const column_t &column : table.columns)
        if (column.isAlwaysThere)
            json.value(column.name);
    json.close(']');
    json.member("additionalProperties", false);
    json.close('}');
}

} // namespace

std::vector<schemaDefinition_t> rowDefinitions() {
    std::vector<schemaDefinition_t> definitions;
    schemaDefinition_t row{"row", {}};
    jsonAppender_t any(row.json);
    any.open('{');
    any.member("description", "A line of vekmsg json --rows; those of --table are without the table's name");
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
