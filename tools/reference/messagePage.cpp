#include "tools/reference/pages.hpp"

#include "tools/reference/keyTable.hpp"
#include "tools/reference/markdown.hpp"
#include "tools/reference/memberPlace.hpp"
#include "vek/api/private/catalogue.hpp"

#include <fstream>
#include <iterator>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace vek {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view introduction = R"(# Messages

What each message id holds, and what the four calls do with it. Where the members lie in full, with their sizes, is on
[layouts.md](layouts.md); who owns and releases what, on [hosts.md](hosts.md).

- **Keys** stand in the text in the order of the table; rows with a `·` are the keys of the nested record above them.
- **Kinds**: integers, reals and texts stand as they are, booleans as `TRUE` or `FALSE`, enumerations by
  [name](#enumerations), lists as `{a,b,}`. Reals are written with six decimals. A range has two keys, its type and its
  list: of a `continuous_e` range the minimum and the maximum are written, of a `discrete_e` one all values. Its type
  is written only when it has values.
- **Member** and **C type** are those of the structure, and its offset there in bytes, for 32-bit Windows and for 64-bit
  Linux. Enumerations are stored as their values, booleans as 0 or 1.
- **Defaults** are what `vekStrToVal` gives for a null text. In a conversion from text, a key that is absent gives 0,
  `FALSE`, an empty text or an empty list, not the default.
- Units are the device's own, unless a section names one.
- The samples are wrapped here; a message has no line breaks.

)";

// What the three calls do, in words.
constexpr std::string_view readingWords(const recordDescription_t *record) {
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

constexpr std::string_view writingWords(service_t write, const recordDescription_t *record) {
    if (write != service_t::full || record == nullptr)
        return write == service_t::refused ? "refuses the id" : "gives an empty string, result 0";
    return record->kind == structureKind_t::ownRecord ? "lets it write itself" : "writes it";
}

constexpr std::string_view releaseWords(service_t release, const recordDescription_t *record) {
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

// The name of an id's constant in the C header.
std::string constantOf(std::string_view header, std::int32_t id) {
    const std::size_t end = header.find(joined({" = ", std::to_string(id)}));
    if (end == std::string_view::npos)
        throw std::runtime_error(joined({"no constant for ", std::to_string(id), " in vek/records/messages.h"}));
    const std::size_t start = header.rfind(' ', end - 1) + 1;
    return std::string(header.substr(start, end - start));
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
        : out_(out), samples_(root / "examples/messages"), header_(readFile(root / "vek/records/messages.h")) {
        for (const catalogueRow_t &row : catalogueRows())
            if (row.conversion != nullptr)
                show(row.conversion->visit, [&](const recordDescription_t &record) {
                    const std::string anchor = anchorOf(headingOf(row, record));
                    references_.anchors.emplace(record.record, anchor);
                    references_.anchors.emplace(record.structure, anchor);
                });
    }

    void write() {
        out_ << generatedNotice << introduction;
        writeOverview();
        for (const catalogueRow_t &row : catalogueRows())
            if (row.conversion != nullptr)
                show(row.conversion->visit, [&](const recordDescription_t &record) { writeMessage(row, record); });
        writeEnumerations();
    }

private:
    template <class Function>
    static void show(void (*visit)(recordVisitor_t &), const Function &function) {
        struct visitor_t : recordVisitor_t {
            explicit visitor_t(const Function &wanted) : function(wanted) {}
            void visit(const recordDescription_t &record) override { function(record); }
            const Function &function;
        } visitor(function);
        visit(visitor);
    }

    static std::string headingOf(const catalogueRow_t &row, const recordDescription_t &record) {
        return joined({std::to_string(row.id), " ", record.record});
    }

    void writeOverview() {
        out_ << "| Id | Constant | Record | `vekStrToVal` | `vekValToStr` | `vekParamsDeleteStruct` |\n"
                "|---|---|---|---|---|---|\n";
        std::string gaps;
        std::int32_t next = catalogueRows().front().id;
        for (const catalogueRow_t &row : catalogueRows()) {
            if (row.id > next)
                gaps += (gaps.empty() ? "" : ", ") + std::to_string(next) +
                        (row.id > next + 1 ? " to " + std::to_string(row.id - 1) : "");
            next = row.id + 1;
            const std::string id = std::to_string(row.id);
            if (row.conversion == nullptr)
                writeRow(row, nullptr, id, {}, {});
            else
                show(row.conversion->visit, [&](const recordDescription_t &record) {
                    writeRow(row, &record, link(id, anchorOf(headingOf(row, record))), constantOf(header_, row.id),
                             record.record);
                });
        }
        out_ << "\nAll calls refuse every other id, those in between too: " << gaps << ".\n";
    }

    void writeRow(const catalogueRow_t &row, const recordDescription_t *record, std::string_view id,
                  std::string_view constant, std::string_view name) {
        out_ << "| " << id << " | " << code(constant) << " | " << code(name) << " | " << readingWords(record) << " | "
             << writingWords(row.write, record) << " | " << releaseWords(row.release, record) << " |\n";
    }

    void writeMessage(const catalogueRow_t &row, const recordDescription_t &record) {
        out_ << "\n## " << headingOf(row, record) << "\n\n" << record.about << "\n\n";
        writeStructure(joined({code(constantOf(header_, row.id)), ", structure"}), record);
        out_ << "`vekStrToVal` " << readingWords(&record) << ", `vekValToStr` " << writingWords(row.write, &record)
             << ", `vekParamsDeleteStruct` " << releaseWords(row.release, &record)
             << (row.release == service_t::refused ? ": delete the structure through its virtual destructor.\n\n"
                                                   : ".\n\n");
        writeSample(out_, sampleOf(samples_, row.id));
        out_ << "\n";
        writeKeyTable(out_, record, references_);
        while (!references_.elements.empty()) {
            const auto visit = references_.elements.front();
            references_.elements.erase(references_.elements.begin());
            show(visit, [&](const recordDescription_t &element) { writeElement(element); });
        }
    }

    void writeElement(const recordDescription_t &record) {
        out_ << "\n### " << record.record << "\n\n" << record.about << "\n\n";
        writeStructure("An element, structure", record);
        out_ << "\n";
        writeKeyTable(out_, record, references_);
    }

    void writeStructure(std::string_view label, const recordDescription_t &record) {
        const foundLayout_t found = layoutNamed(record.structure);
        const std::string page = joined({"layouts.md", anchorOf(record.structure)});
        const bool isPlain = record.kind == structureKind_t::plain;
        out_ << label << " " << link(code(record.structure), page) << " of "
             << code(isPlain ? "vek/records/messages.h" : found.header) << ", " << found.layout.size.windows32
             << " bytes on Windows and " << found.layout.size.linux64 << " on Linux.\n";
    }

    void writeEnumerations() {
        out_ << "\n## Enumerations\n\nA value is stored as a 32-bit integer and written by its name. An unknown name "
                "is ignored, and a value without a name is not written.\n";
        for (const enumeration_t &enumeration : references_.enumerations) {
            out_ << "\n### " << enumeration.title << "\n\n| Value | Name |\n|--:|---|\n";
            for (std::int32_t value = 0; value < enumeration.nameCount; ++value)
                out_ << "| " << value << " | `" << enumeration.names[value] << "` |\n";
        }
    }

    std::ostream &out_;
    fs::path samples_;
    std::string header_;
    references_t references_;
};

} // namespace

void writeMessagePage(std::ostream &out, const fs::path &root) {
    messagePage_t(out, root).write();
}

} // namespace vek
