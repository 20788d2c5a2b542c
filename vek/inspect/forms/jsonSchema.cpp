// The schema: what is the same in all messages stands here as it is, records are made from the declarations.
//
// A message without findings is held to its record exactly: known keys, values of their kinds. What stands in a message
// with findings can be anything, so there the body is any object. Draft 7, since the validators of most languages take
// it, and take it without being told.
#include "vek/inspect/forms/jsonSchema.hpp"

#include "vek/inspect/check/check.hpp"
#include "vek/inspect/forms/jsonAppender.hpp"
#include "vek/inspect/schema/schema.hpp"
#include "vek/inspect/words/words.hpp"

#include <nlohmann/json.hpp>

#include <cstdint>

namespace vek::inspect {

namespace {

// In the letters of the document, but for objects that may have no other members than these: "members" are their names,
// with "!" when they must be there, and what they hold. There a word is a type, "#word" a definition, "[]#word" a list.
constexpr std::string_view fixedDefinitions = R"({
"version": {"const": 2, "description": "Of the format: it changes when members are renamed or hold something else"},
"integer": {"type": "integer", "minimum": -2147483648, "maximum": 2147483647},
"short": {"type": "integer", "minimum": -32768, "maximum": 32767},
"real": {
  "description": "A number; of more than 300 digits a string of them",
  "anyOf": [{"type": "number"}, {"type": "string", "pattern": "^-?[0-9]{301,}\\.[0-9]+$"}]
},
"text16": {
  "description": "A text of 16-bit characters; the codes when they are no text that ends with a 0",
  "anyOf": [{"type": "string"}, {"type": "array", "items": {"$ref": "#/definitions/integer"}}]
},
"byte": {"type": "integer", "minimum": 0},
"place": {
  "description": "Bytes from start to in front of end, counted from 0",
  "members": {"start!": "#byte", "end!": "#byte"}
},
"severity": {"description": "error: a host reads something else than was meant, or nothing", "enum": ["error", "warning"]},
"node": {
  "description": "A pair of the message; the first one is its body",
  "members": {
    "path!": "string",
    "kind!": {"enum": ["unknown", "nested record", "long integer", "short integer", "double", "float", "pixels",
                       "boolean", "enumeration", "string", "16-bit character string"]},
    "use!": {"enum": ["assigned", "empty", "unknown", "duplicate", "noKey", "surplus", "unread"]},
    "parent": {"description": "The number of the node around it, from 0", "type": "integer", "minimum": 0},
    "key": "#place",
    "value": "#place",
    "whole!": "#place"
  }
},
"bytes": {
  "description": "A number of bytes on 32-bit Windows, 64-bit Windows and 64-bit Linux",
  "members": {"windows32!": "#byte", "windows64!": "#byte", "linux64!": "#byte"}
},
"catalogueEnumeration": {
  "members": {
    "name!": {"type": "string", "pattern": "^[a-z][A-Za-z0-9]*$"},
    "words!": "string",
    "values!": {
      "type": "array",
      "items": {
        "members": {
          "value!": {"type": "integer", "minimum": 0},
          "name!": {"description": "As it stands in messages", "type": "string"},
          "constant!": {"description": "In C", "type": "string", "pattern": "^[A-Z][A-Z0-9_]*$"}
        }
      }
    }
  }
},
"catalogueMessage": {
  "members": {
    "id!": "integer",
    "constant": {"description": "In C", "type": "string", "pattern": "^VEK_MSG_[A-Z0-9_]+$"},
    "record": {"description": "The name of one of the records", "type": "string"}
  },
  "dependencies": {"record": ["constant"], "constant": ["record"]}
},
"stats": {
  "description": "How the numbers at a path are spread, all together or in a group of messages",
  "members": {
    "path!": "string",
    "by": {"description": "What groups are made by", "type": "string"},
    "group": "string",
    "count!": {"type": "integer", "minimum": 1},
    "min!": "number",
    "mean!": "number",
    "max!": "number",
    "percentiles!": {
      "type": "object",
      "patternProperties": {"^p[0-9.]+$": {"type": "number"}},
      "additionalProperties": false
    },
    "error!": {"description": "How far percentiles may be off, as a part of the number", "type": "number", "minimum": 0},
    "histogram!": {
      "description": "The numbers from one on and below another; those that are one, when both are the same",
      "type": "array",
      "items": {"members": {"from!": "number", "to!": "number", "count!": "#byte"}}
    }
  },
  "dependencies": {"by": ["group"], "group": ["by"]}
},
"catalogueKeys": "[]#catalogueKey",
"catalogueKey": {
  "members": {
    "key!": "string",
    "kind!": {
      "description": "Of a list, that of its elements. Pixels are a double in the text and a long integer in the structure",
      "enum": ["nested record", "long integer", "short integer", "double", "float", "pixels", "boolean", "enumeration",
               "string", "16-bit character string"]
    },
    "words!": {"description": "The kind for people", "type": "string"},
    "list!": "boolean",
    "listKind": {"enum": ["list", "container", "array", "range"]},
    "enumeration": {"description": "The name of one of the enumerations", "type": "string"},
    "record": {"description": "Of a list's elements: the name of one of the records", "type": "string"},
    "room": {"description": "Elements, or the size of a character array", "type": "integer", "minimum": 0},
    "elementRoom": {"description": "The size of the character arrays that are elements", "type": "integer", "minimum": 0},
    "count": {"description": "The key that says how many elements are written", "type": "string"},
    "countIsChecked": {"description": "false: so many are written, be there as many or not", "type": "boolean"},
    "rangeType": {"description": "The key of a range's type", "type": "string"},
    "member!": {
      "description": "In the record's structure; of a nested record's keys, in that of the record around it",
      "members": {
        "path!": {"description": "Empty: the structure itself, or its base", "type": "string"},
        "type!": {"description": "In C", "type": "string"},
        "offset!": "#bytes",
        "size!": "#bytes"
      }
    },
    "defaultKind!": {"enum": ["value", "empty", "zero", "null", "not set", "record"]},
    "default": {
      "description": "What a new structure has; of an enumeration the name, or the number as a text when it has none",
      "anyOf": [{"type": "number"}, {"type": "boolean"}, {"type": "string"}, {"type": "null"},
                {"type": "array", "items": {"type": "number"}}]
    },
    "of": "#catalogueNested"
  },
  "dependencies": {"count": ["countIsChecked"], "countIsChecked": ["count"]}
},
"catalogueNested": {
  "description": "A record in the place of a value",
  "members": {
    "name!": "string",
    "structure!": "string",
    "size!": "#bytes",
    "keys!": "#catalogueKeys"
  }
},
"catalogueRecord": {
  "members": {
    "name!": "string",
    "structure!": "string",
    "about!": "string",
    "kind!": {"enum": ["polymorphic", "plain", "own record"]},
    "size!": "#bytes",
    "keys!": "#catalogueKeys"
  }
},
"catalogue": {
  "description": "All messages, enumerations and records",
  "members": {
    "version!": "#version",
    "messages!": "[]#catalogueMessage",
    "enumerations!": "[]#catalogueEnumeration",
    "records!": "[]#catalogueRecord"
  }
}
})";

// Members of findings, and of what stands in front of a message or a finding.
constexpr std::string_view findingMembers = R"("severity!": "#severity",
    "code!": "#code",
    "path!": {"description": "Of the key; empty for the envelope", "type": "string"},
    "start!": "#byte",
    "end!": "#byte",
    "message!": {"description": "What is wrong", "type": "string"},
    "consequence!": {"description": "What a host makes of it", "type": "string"},
    "suggestion!": {"description": "What it should be; empty when that is not known", "type": "string"})";
constexpr std::string_view placeMembers = R"("file": {"type": "string"},
    "line": {"type": "integer", "minimum": 1},
    "offset": {"description": "Of the message's first byte in the file", "type": "integer", "minimum": 0})";

using orderedJson_t = nlohmann::ordered_json;

// What is written in short above, in full.
orderedJson_t inFull(const orderedJson_t &brief) {
    if (brief.is_string()) {
        const auto word = brief.get<std::string>();
        return word.starts_with("[]")  ? orderedJson_t{{"type", "array"}, {"items", inFull(word.substr(2))}}
               : word.starts_with('#') ? orderedJson_t{{"$ref", "#/definitions/" + word.substr(1)}}
                                       : orderedJson_t{{"type", word}};
    }
    orderedJson_t full = orderedJson_t::object();
    for (const auto &[name, value] : brief.items()) {
        if (name == "items")
            full[name] = inFull(value);
        else if (name != "members")
            full[name] = value;
        else
            full["type"] = "object";
        if (name != "members")
            continue;
        for (const auto &[member, holds] : value.items()) {
            const bool mustBe = member.ends_with('!');
            const std::string own = member.substr(0, member.size() - (mustBe ? 1 : 0));
            full["properties"][own] = inFull(holds);
            if (mustBe)
                full["required"].push_back(own);
        }
    }
    if (brief.contains("members"))
        full["additionalProperties"] = false;
    return full;
}

class schemaWriter_t {
public:
    explicit schemaWriter_t(std::string &out) : json_(out) {}

    void write(std::span<const schemaDefinition_t> further, std::span<const std::string_view> documents) {
        json_.open('{');
        json_.member("$schema", "http://json-schema.org/draft-07/schema#");
        json_.member("$id", joined({"urn:vekmsg:json:", std::to_string(jsonVersion)}));
        json_.member("title", joined({"The JSON of vekmsg and vekInspect, version ", std::to_string(jsonVersion)}));
        json_.name("anyOf");
        json_.open('[');
        for (const std::string_view name : {"message", "checkFinding", "catalogue", "stats"})
            reference(name);
        for (const std::string_view name : documents)
            reference(name);
        json_.close(']');
        json_.object("definitions", [&] {
            const orderedJson_t fixed = orderedJson_t::parse(fixedDefinitions);
            for (const auto &[name, definition] : fixed.items())
                define(name, definition);
            writeFindings();
            for (const recordSchema_t *record : schema().records())
                writeRecord(record->name, *record);
            writeMessages();
            for (const schemaDefinition_t &definition : further) {
                json_.name(definition.name);
                json_.ready(definition.json);
            }
        });
        json_.close('}');
    }

private:
    void define(std::string_view name, const orderedJson_t &brief) {
        json_.name(name);
        json_.ready(inFull(brief).dump());
    }
    void reference(std::string_view name) {
        json_.open('{');
        json_.member("$ref", joined({"#/definitions/", name}));
        json_.close('}');
    }
    void typed(std::string_view type) {
        json_.open('{');
        json_.member("type", type);
        json_.close('}');
    }

    void writeFindings() {
        json_.object("code", [&] {
            json_.name("enum");
            json_.open('[');
            for (std::size_t i = 0; i < findingCodeCount; ++i)
                json_.value(findingName(static_cast<findingCode_t>(i)));
            json_.close(']');
        });
        const auto finding = [](std::string_view about, std::string_view front) {
            return orderedJson_t::parse(
                joined({R"({"description": ")", about, R"(", "members": {)", front, findingMembers, "}}"}));
        };
        define("finding", finding("Something that check finds; its place in the message", ""));
        define("checkFinding", finding("A finding of a file of messages, in an object of its own: line and column are "
                                       "where it is",
                                       R"("file!": "string", "line!": {"type": "integer", "minimum": 1},
    "offset!": {"description": "Of the message's first byte in the file", "type": "integer", "minimum": 0},
    "column!": {"type": "integer", "minimum": 1}, "id": "integer", )"));
    }

    void writeRecord(std::string_view name, const recordSchema_t &record) {
        json_.object(name, [&] {
            if (!record.isNested)
                json_.member("description", record.about);
            json_.member("type", "object");
            json_.object("properties", [&] {
                for (const fieldSchema_t &field : record.fields)
                    writeField(field);
            });
            json_.member("additionalProperties", false);
        });
    }

    void writeField(const fieldSchema_t &field) {
        if (!field.isList() && field.record() != nullptr)
            return writeRecord(field.key, *field.record());
        json_.name(field.key);
        if (!field.isList())
            return writeScalar(field);
        json_.open('{');
        json_.member("type", "array");
        if (field.list->room)
            json_.member("maxItems", *field.list->room);
        json_.name("items");
        if (field.record() != nullptr)
            reference(field.record()->name);
        else
            writeScalar(field);
        json_.close('}');
    }

    void writeScalar(const fieldSchema_t &field) {
        switch (field.kind) {
        case fieldKind_t::integer32:
        case fieldKind_t::pixels: // with decimals, which are zeros
            return reference("integer");
        case fieldKind_t::integer16:
            return reference("short");
        case fieldKind_t::float64:
        case fieldKind_t::float32:
            return reference("real");
        case fieldKind_t::boolean:
            return typed("boolean");
        case fieldKind_t::text16:
            return reference("text16");
        case fieldKind_t::enumeration:
            json_.open('{');
            json_.list("enum", field.words().names, [this](const char *name) { json_.value(name); });
            json_.close('}');
            return;
        default:
            typed("string");
        }
    }

    // The members under which bodies stand.
    void writeBodies(bool areExact) {
        for (const recordSchema_t *record : schema().records()) {
            if (!isOfMessage(*record))
                continue;
            json_.name(record->name);
            areExact ? reference(record->name) : typed("object");
        }
    }
    static bool isOfMessage(const recordSchema_t &record) {
        for (const messageSchema_t &message : schema().messages())
            if (message.record == &record)
                return true;
        return false;
    }

    void writeMessages() {
        json_.object("message", [&] {
            json_.member("description", "A message, as it is given out");
            json_.member("type", "object");
            json_.object("properties", [&] {
                json_.ready(placeMembers);
                json_.ready(R"("before": {"description": "What stands in front of it on its line", "type": "string"},
    "time": {"description": "Of its line", "type": "string", "pattern": "^([0-9]{4,}-[0-9]{2}-[0-9]{2}T)?[0-9]{2}:"},
    "severity": {"$ref": "#/definitions/severity"},
    "length": {"$ref": "#/definitions/integer"},
    "problems": {"type": "array", "items": {"$ref": "#/definitions/finding"}, "minItems": 1},
    "nodes": {"type": "array", "items": {"$ref": "#/definitions/node"}, "minItems": 1})");
                writeGiven();
                writeBodies(false);
                json_.ready(R"("body": {"description": "Of an id without a record", "type": "object"})");
            });
            json_.member("additionalProperties", false);
            json_.ready(R"("if": {"not": {"required": ["problems"]}})");
            json_.object("then", [&] {
                json_.ready(R"("required": ["id", "name", "echo", "seq", "length"])");
                json_.object("properties", [&] { writeBodies(true); });
            });
        });
        json_.object("givenMessage", [&] {
            json_.member("description",
                         "A message, as it is taken in: what is to be written. One of \"message\" is taken "
                         "too");
            json_.member("type", "object");
            json_.object("properties", [&] {
                writeGiven();
                writeBodies(true);
            });
            json_.ready(R"("required": ["id"], "additionalProperties": false)");
        });
    }

    void writeGiven() {
        json_.ready(R"("id": {"type": "integer"},
    "echo": {"$ref": "#/definitions/integer"},
    "seq": {"$ref": "#/definitions/integer"},
    "text": {
      "description": "The message itself, when the rest does not say it all; it counts while the rest is what it was",
      "type": "string"
    })");
        json_.object("name", [&] {
            json_.name("enum");
            json_.open('[');
            for (const recordSchema_t *record : schema().records())
                if (isOfMessage(*record))
                    json_.value(record->name);
            json_.close(']');
        });
    }

    jsonAppender_t json_;
};

} // namespace

void appendJsonSchema(std::string &out, std::span<const schemaDefinition_t> further,
                      std::span<const std::string_view> documents) {
    std::string text;
    schemaWriter_t(text).write(further, documents);
    out += nlohmann::ordered_json::parse(text).dump(2);
    out += '\n';
}

} // namespace vek::inspect
