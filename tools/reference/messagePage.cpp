#include "tools/reference/pages.hpp"

#include "tools/reference/keyTable.hpp"
#include "tools/reference/markdown.hpp"
#include "vek/inspect/schema/members.hpp"

#include <fstream>
#include <iterator>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace vek {

namespace {

namespace fs = std::filesystem;
using namespace inspect;

constexpr std::string_view messageIntroduction = R"(# Messages

Every message: what it is for, a sample, its keys. Jump to the [messages](#index), to [a key](#keys) or to the
[enumerations](#enumerations). On the command line `vekmsg describe` tells the same of an id, a name or a key.

- A **sample** is a whole message in one line, ready to be pasted: into a file, a test, or `vekmsg show` and Ctrl-D.
- **Keys** stand in the text in the order of the table; rows with a `·` are the keys of the nested record above them.
- **Kinds**: integers and reals stand in decimal, reals with six decimals; texts stand as they are but for the characters
  `= ; , { }`, which are written as the control codes 1 to 5; booleans stand as `TRUE` or `FALSE`, enumerations by
  [name](#enumerations), lists as `{a,b,}`. A range has two keys, its type and its list: of a `continuous_e` range the
  minimum and the maximum are written, of a `discrete_e` one all values. Its type is written only when it has values.
  All the rules, for reading too, are on [text-format.md](text-format.md).
- **Member** and **C type** are those of the structure. Enumerations are stored as their values, booleans as 0 or 1. Where
  the members lie is on [layouts.md](layouts.md); who owns and releases what, on [hosts.md](hosts.md).
- **Defaults** are what `vekStrToVal` gives for a null text. In a conversion from text, a key that is absent gives 0,
  `FALSE`, an empty text or an empty list, not the default.
- Units are the device's own, unless a section names one.

)";

constexpr std::string_view indexWords = R"(## Index

`vekStrToVal` makes the structure of an id, `vekValToStr` writes it, `vekParamsDeleteStruct` releases it. Of an id that has
*no structure* the first makes nothing, with result 0, the second refuses it, and the third sets the pointer to null.
What differs from this is in the table; ids that are not there all three refuse.

| Id | Record | What it is |
|---|---|---|
)";

// What the calls don't do for an id, though they do it for others like it.
std::string exceptionsOf(const messageSchema_t &message) {
    const bool hasRecord = message.record != nullptr;
    std::string words;
    if (!hasRecord && message.write != service_t::refused)
        words += " `vekValToStr` gives an empty string, result 0.";
    if (message.release == service_t::refused)
        words += hasRecord ? " `vekParamsDeleteStruct` refuses it: delete it through its virtual destructor."
                           : " `vekParamsDeleteStruct` refuses it.";
    return words;
}

constexpr std::string_view structureWords(structureKind_t kind) {
    switch (kind) {
    case structureKind_t::polymorphic:
        return "polymorphic structure";
    case structureKind_t::plain:
        return "plain structure";
    case structureKind_t::ownRecord:
        break;
    }
    return "the record itself is the structure,";
}

std::string readFile(const fs::path &file) {
    std::ifstream in(file, std::ios::binary);
    if (!in)
        throw std::runtime_error("can't read " + file.string());
    return {std::istreambuf_iterator<char>(in), {}};
}

// The header that declares a structure.
std::string_view headerOf(const structureLayout_t &layout) {
    for (const layoutFamily_t *family : layoutFamilies())
        for (const structureLayout_t *one : family->structures)
            if (one == &layout)
                return family->header;
    return {};
}

// The constant of an enumeration that a C header declares with this name.
std::string_view constantNamed(std::string_view header, std::string_view name) {
    const std::size_t end = header.find(joined({", \"", name, "\""}));
    if (end == std::string_view::npos)
        throw std::runtime_error(joined({"no constant for ", name, " in the headers of enumerations"}));
    const std::size_t start = header.rfind('(', end) + 1;
    return header.substr(start, end - start);
}

std::string sampleOf(const fs::path &folder, std::int32_t id) {
    for (const fs::directory_entry &entry : fs::directory_iterator(folder))
        if (entry.path().filename().string().starts_with(std::to_string(id) + "-"))
            return readFile(entry.path());
    throw std::runtime_error("no sample of " + std::to_string(id) + " in examples/messages");
}

class messagePage_t {
public:
    messagePage_t(std::ostream &out, const fs::path &root)
        : out_(out), samples_(root / "examples/messages"),
          enumerations_(readFile(root / "vek/records/enumerations.h") + readFile(root / "vek/text/enumeration.h")) {
        for (const messageSchema_t &message : schema().messages())
            if (message.record != nullptr) {
                const std::string anchor = anchorOf(headingOf(message));
                references_.anchors.emplace(message.record->name, anchor);
                references_.anchors.emplace(message.record->structure, anchor);
            }
    }

    void write() {
        out_ << generatedNotice << messageIntroduction << indexWords;
        for (const messageSchema_t &message : schema().messages())
            writeRow(message);
        for (const messageSchema_t &message : schema().messages())
            if (message.record != nullptr)
                writeMessage(message, *message.record);
        out_ << "\n## Keys\n\nA key that means different things has a row for each.\n\n";
        writeKeyIndex(out_, references_);
        writeEnumerations();
    }

private:
    static std::string headingOf(const messageSchema_t &message) {
        return joined({std::to_string(message.id), " ", message.record->name});
    }

    void writeRow(const messageSchema_t &message) {
        const std::string id = std::to_string(message.id);
        out_ << "| ";
        if (const recordSchema_t *record = message.record)
            out_ << link(id, anchorOf(headingOf(message))) << " | " << code(record->name) << " | " << record->purpose();
        else
            out_ << id << " | | *No structure.*";
        out_ << exceptionsOf(message) << " |\n";
    }

    void writeMessage(const messageSchema_t &message, const recordSchema_t &record) {
        const std::string heading = headingOf(message);
        out_ << "\n## " << heading << "\n\n"
             << record.about << exceptionsOf(message) << "\n\n```text\n"
             << sampleOf(samples_, message.id) << "\n```\n\n";
        writeStructure(code(message.constant), record);
        writeKeyTable(out_, record, heading, references_);
        while (!references_.elements.empty()) {
            const recordSchema_t *element = references_.elements.front();
            references_.elements.erase(references_.elements.begin());
            writeElement(*element);
        }
    }

    void writeElement(const recordSchema_t &record) {
        out_ << "\n### " << record.name << "\n\n" << record.about << "\n\n";
        writeStructure("An element", record);
        writeKeyTable(out_, record, record.name, references_);
    }

    void writeStructure(std::string_view label, const recordSchema_t &record) {
        const structureLayout_t *layout = layoutNamed(record.structure);
        if (layout == nullptr)
            throw std::runtime_error(
                joined({"no layout of ", record.structure,
                        ": pin it in vek/records/private/layouts, and name it in its family's list"}));
        out_ << label << ", " << structureWords(record.kind) << " "
             << link(code(record.structure), joined({"layouts.md", anchorOf(record.structure)})) << " of "
             << code(record.kind == structureKind_t::plain ? "vek/records/messages.h" : headerOf(*layout)) << ".\n\n";
    }

    void writeEnumerations() {
        out_ << "\n## Enumerations\n\nA value is stored as a 32-bit integer and written by its name. An unknown name "
                "is ignored, and a value without a name is not written. The constants are those of "
                "`vek/records/enumerations.h`.\n";
        for (const fieldSchema_t *field : references_.enumerations) {
            out_ << "\n### " << field->words().title << "\n\n| Value | Name | Constant |\n|--:|---|---|\n";
            for (std::size_t value = 0; value < field->words().names.size(); ++value)
                out_ << "| " << value << " | " << code(field->words().names[value]) << " | "
                     << code(constantNamed(enumerations_, field->words().names[value])) << " |\n";
        }
    }

    std::ostream &out_;
    fs::path samples_;
    std::string enumerations_;
    references_t references_;
};

} // namespace

void writeMessagePage(std::ostream &out, const fs::path &root) {
    messagePage_t(out, root).write();
}

} // namespace vek
