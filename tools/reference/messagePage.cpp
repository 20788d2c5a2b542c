#include "tools/reference/pages.hpp"

#include "tools/reference/keyTable.hpp"
#include "tools/reference/markdown.hpp"
#include "vek/inspect/private/memberPlace.hpp"

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

constexpr std::string_view introduction = R"(# Messages

What each message id holds, and what the four calls do with it. Where the members lie in full, with their sizes, is on
[layouts.md](layouts.md); who owns and releases what, on [hosts.md](hosts.md).

- **Keys** stand in the text in the order of the table; rows with a `·` are the keys of the nested record above them.
- **Kinds**: integers and reals stand in decimal, reals with six decimals; texts stand as they are but for the characters
  `= ; , { }`, which are written as the control codes 1 to 5; booleans stand as `TRUE` or `FALSE`, enumerations by
  [name](#enumerations), lists as `{a,b,}`. A range has two keys, its type and its list: of a `continuous_e` range the
  minimum and the maximum are written, of a `discrete_e` one all values. Its type is written only when it has values.
  All the rules, for reading too, are on [text-format.md](text-format.md).
- **Member** and **C type** are those of the structure, and its offset there in bytes, for 32-bit Windows and for 64-bit
  Linux. Enumerations are stored as their values, booleans as 0 or 1.
- **Defaults** are what `vekStrToVal` gives for a null text. In a conversion from text, a key that is absent gives 0,
  `FALSE`, an empty text or an empty list, not the default.
- Units are the device's own, unless a section names one.
- The samples are wrapped here; a message has no line breaks.

)";

// What the three calls do, in words.
constexpr std::string_view readingWords(const recordSchema_t *record) {
    if (record == nullptr)
        return "makes nothing, result 0";
    switch (record->kind) {
    case structureKind_t::polymorphic:
        return "makes a polymorphic structure";
    case structureKind_t::plain:
        return "makes a plain structure";
    case structureKind_t::ownRecord:
        break;
    }
    return "makes the record, which is the structure";
}

constexpr std::string_view writingWords(service_t write, const recordSchema_t *record) {
    if (write != service_t::full || record == nullptr)
        return write == service_t::refused ? "refuses the id" : "gives an empty string, result 0";
    return record->kind == structureKind_t::ownRecord ? "lets it write itself" : "writes it";
}

constexpr std::string_view releaseWords(service_t release, const recordSchema_t *record) {
    if (release != service_t::full || record == nullptr)
        return release == service_t::refused ? "refuses the id" : "sets the pointer to null";
    if (record->kind != structureKind_t::plain)
        return "calls its virtual destructor";
    return record->ownsMemory ? "frees it and its text" : "frees it";
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

// In lines of readable width, the middle of a long message left out.
void writeSample(std::ostream &out, std::string_view message) {
    constexpr std::size_t width = 110, most = 14, head = 5, tail = 2;
    std::vector<std::string_view> lines;
    while (message.size() > width) {
        std::size_t end = message.find_last_of(';', width - 1);
        if (end == std::string_view::npos || end < width / 2)
            end = message.find_last_of(",;", width - 1);
        lines.push_back(message.substr(0, end == std::string_view::npos ? width : end + 1));
        message.remove_prefix(lines.back().size());
    }
    lines.push_back(message);
    const std::size_t left = lines.size() > most ? lines.size() - head - tail : 0;
    out << "```text\n";
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (left == 0 || i < head || i >= head + left)
            out << lines[i] << "\n";
        else if (i == head)
            out << "... (" << left << " lines more)\n";
    out << "```\n";
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
        out_ << generatedNotice << introduction;
        writeOverview();
        for (const messageSchema_t &message : schema().messages())
            if (message.record != nullptr)
                writeMessage(message, *message.record);
        writeEnumerations();
    }

private:
    static std::string headingOf(const messageSchema_t &message) {
        return joined({std::to_string(message.id), " ", message.record->name});
    }

    void writeOverview() {
        out_ << "| Id | Constant | Record | `vekStrToVal` | `vekValToStr` | `vekParamsDeleteStruct` |\n"
                "|---|---|---|---|---|---|\n";
        std::string gaps;
        std::int32_t next = schema().messages().front().id;
        for (const messageSchema_t &message : schema().messages()) {
            if (message.id > next)
                gaps += (gaps.empty() ? "" : ", ") + std::to_string(next) +
                        (message.id > next + 1 ? " to " + std::to_string(message.id - 1) : "");
            next = message.id + 1;
            writeRow(message);
        }
        out_ << "\nAll calls refuse every other id, those in between too: " << gaps << ".\n";
    }

    void writeRow(const messageSchema_t &message) {
        const std::string id = std::to_string(message.id);
        const recordSchema_t *record = message.record;
        out_ << "| " << (record != nullptr ? link(id, anchorOf(headingOf(message))) : id) << " | "
             << code(message.constant) << " | " << code(record != nullptr ? record->name : "") << " | "
             << readingWords(record) << " | " << writingWords(message.write, record) << " | "
             << releaseWords(message.release, record) << " |\n";
    }

    void writeMessage(const messageSchema_t &message, const recordSchema_t &record) {
        out_ << "\n## " << headingOf(message) << "\n\n" << record.about << "\n\n";
        writeStructure(joined({code(message.constant), ", structure"}), record);
        out_ << "`vekStrToVal` " << readingWords(&record) << ", `vekValToStr` " << writingWords(message.write, &record)
             << ", `vekParamsDeleteStruct` " << releaseWords(message.release, &record)
             << (message.release == service_t::refused ? ": delete the structure through its virtual destructor.\n\n"
                                                       : ".\n\n");
        writeSample(out_, sampleOf(samples_, message.id));
        out_ << "\n";
        writeKeyTable(out_, record, references_);
        while (!references_.elements.empty()) {
            const recordSchema_t *element = references_.elements.front();
            references_.elements.erase(references_.elements.begin());
            writeElement(*element);
        }
    }

    void writeElement(const recordSchema_t &record) {
        out_ << "\n### " << record.name << "\n\n" << record.about << "\n\n";
        writeStructure("An element, structure", record);
        out_ << "\n";
        writeKeyTable(out_, record, references_);
    }

    void writeStructure(std::string_view label, const recordSchema_t &record) {
        const structureLayout_t *layout = layoutNamed(record.structure);
        if (layout == nullptr)
            throw std::runtime_error(joined(
                {"no layout of ", record.structure,
                 ": pin it in vek/records/private/layouts, and name it in its family's list"}));
        const std::string page = joined({"layouts.md", anchorOf(record.structure)});
        const bool isPlain = record.kind == structureKind_t::plain;
        out_ << label << " " << link(code(record.structure), page) << " of "
             << code(isPlain ? "vek/records/messages.h" : headerOf(*layout)) << ", " << layout->size.windows32
             << " bytes on Windows and " << layout->size.linux64 << " on Linux.\n";
    }

    void writeEnumerations() {
        out_ << "\n## Enumerations\n\nA value is stored as a 32-bit integer and written by its name. An unknown name "
                "is ignored, and a value without a name is not written. The constants are those of "
                "`vek/records/enumerations.h`.\n";
        for (const fieldSchema_t *field : references_.enumerations) {
            out_ << "\n### " << field->enumeration << "\n\n| Value | Name | Constant |\n|--:|---|---|\n";
            for (std::size_t value = 0; value < field->names.size(); ++value)
                out_ << "| " << value << " | " << code(field->names[value]) << " | "
                     << code(constantNamed(enumerations_, field->names[value])) << " |\n";
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
