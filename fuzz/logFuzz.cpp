// What stands in a log is found however the log comes: in blocks of any size, from a place on that a scanner has told,
// in pieces on several threads, packed; of an editor that changes it, as of one that opens what comes out. A packed
// file that is damaged is read whole or refused. One of these is tried at a time.
#include "fuzz/fuzzInput.hpp"
#include "tools/page/core/logRows.hpp"
#include "tools/vekmsg/lsp/server.hpp"
#include "tools/vekmsg/reading/reader.hpp"
#include "vek/inspect/log/unwrapping.hpp"
#include "vek/inspect/words/trimming.hpp"
#include "vek/inspect/words/words.hpp"

#include <nlohmann/json.hpp>

#include <sys/mman.h>
#include <unistd.h>
#include <zlib.h>
#include <zstd.h>

using namespace vek::test;
using namespace vek::inspect;
using namespace vek::tool;

namespace {

using json_t = nlohmann::json;

struct sink_t : messageSink_t {
    void message(const foundMessage_t &found) override {
        all += std::to_string(found.offset) + ':' + std::to_string(found.line) + ':' + std::to_string(found.column) +
               ' ' + std::string(found.lineHead) + '|' + std::string(hasBefore ? found.before : "") + '|' +
               std::string(found.text) + '\n';
    }
    std::string all;
    bool hasBefore = true;
};

std::string scanned(std::string_view log, std::size_t block) {
    logScanner_t scanner;
    sink_t sink;
    for (std::size_t at = 0; at < log.size(); at += block)
        scanner.feed(log.substr(at, block), sink);
    scanner.finish(sink);
    return sink.all;
}

std::string rowsOf(std::string_view log, std::size_t block) {
    vek::page::logRows_t rows;
    std::string out;
    for (std::size_t at = 0; at < log.size(); at += block)
        rows.take(log.substr(at, block), out);
    rows.take({}, out);
    return out;
}

void tryBlocks(const std::string &log, std::size_t choice) {
    const std::size_t size = log.size();
    if (choice % 8 == 0) // a row holds what check() finds, which takes its time
        return expectSame(log, rowsOf(log, size + 1), rowsOf(log, 1 + choice / 8 % (size + 1)));
    const std::string whole = scanned(log, size + 1);
    for (const std::size_t block : {1 + size / 64, 5 + size / 9}) // single bytes while the log is short
        expectSame(log, whole, scanned(log, block));
}

void tryResuming(const std::string &log, std::size_t choice) {
    sink_t whole, parts;
    whole.hasBefore = parts.hasBefore = false;
    logScanner_t all, first;
    all.feed(log, whole);
    all.finish(whole);
    first.feed(std::string_view(log).substr(0, choice % (log.size() + 1)), parts);
    logScanner_t second(first.position());
    second.feed(std::string_view(log).substr(static_cast<std::size_t>(first.decided())), parts);
    second.finish(parts);
    expectSame(log, whole.all, parts.all);
}

// A file in memory, under a name.
std::string fileOf(std::string_view bytes) {
    static const int file = memfd_create("log", 0);
    if (ftruncate(file, 0) != 0 || pwrite(file, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
        std::abort();
    return "/proc/self/fd/" + std::to_string(file);
}

// Takes lines' numbers as they are, or made right as pieces are joined.
class gathering_t final : public task_t {
public:
    explicit gathering_t(bool needsLines) : needsLines_(needsLines) {}

    void take(const item_t &item) override {
        out.append(joined({std::to_string(item.offset), ":", std::to_string(item.column), " ", item.lineHead, "|",
                           item.before, "|", item.text, "\n"}));
        lines.push_back(item.line);
    }
    std::unique_ptr<task_t> fork() const override { return std::make_unique<gathering_t>(needsLines_); }
    bool needsLines() const override { return needsLines_; }
    void join(task_t &later) override {
        for (const std::uint64_t line : static_cast<gathering_t &>(later).lines)
            lines.push_back(later.linesInFront + line);
    }

    std::vector<std::uint64_t> lines;

private:
    const bool needsLines_;
};

void trySplitting(const std::string &log, std::size_t choice) {
    static const readingOptions_t options;
    static const filter_t filter(options);
    const std::string_view text = withoutByteOrderMark(log);
    gathering_t whole(true), task(choice % 2 == 0);
    itemSink_t sink({}, filter, whole);
    logScanner_t scanner(log.size() - text.size());
    scanner.feed(text, sink);
    scanner.finish(sink);
    std::string all;
    const auto output = [&all](const std::string &out, std::uint64_t) { all += out; };
    splitFile(fileOf(log), 2, filter, task, output, 16 + choice / 2 % 256);
    expectSame(log, whole.out, all);
    if (whole.lines != task.lines)
        std::abort();
}

std::string packed(std::string_view text, bool isZstd) {
    if (isZstd) {
        static ZSTD_CCtx *const context = ZSTD_createCCtx();
        ZSTD_CCtx_setParameter(context, ZSTD_c_checksumFlag, 1);
        std::string room(ZSTD_compressBound(text.size()), '\0');
        room.resize(ZSTD_compress2(context, room.data(), room.size(), text.data(), text.size()));
        return room;
    }
    z_stream stream{};
    std::string room(text.size() + text.size() / 8 + 64, '\0');
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef *>(room.data());
    stream.avail_out = static_cast<uInt>(room.size());
    deflateInit2(&stream, 1, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    deflate(&stream, Z_FINISH);
    room.resize(stream.total_out);
    deflateEnd(&stream);
    return room;
}

// What comes out of a file; nothing when it is refused.
std::optional<std::string> contentsOf(std::string_view bytes) {
    try {
        const std::unique_ptr<source_t> source = openSource(fileOf(bytes));
        std::string all;
        for (std::string_view block = source->next(); !block.empty(); block = source->next())
            all += block;
        return all;
    } catch (const usageError_t &) {
        return {};
    }
}

// A file's first bytes tell what it is: of those of gzip no more is asked than an end with words.
void tryPacked(const std::string &log, std::size_t choice) {
    constexpr std::string_view gzip = "\x1f\x8b";
    const bool isZstd = choice % 2 == 0;
    if (log.starts_with(gzip) || log.starts_with("\x28\xb5\x2f\xfd") || choice % 16 == 1) {
        contentsOf(log.starts_with(gzip[0]) ? log : joined({gzip, "\x08", log}));
        return;
    }
    if (utf16_t::orderOf(log) != utf16_t::order_t::none)
        return;
    const std::string plain = contentsOf(log).value_or("");
    const std::size_t cut = choice / 64 % (log.size() + 1);
    std::string file =
        packed(std::string_view(log).substr(0, cut), isZstd) + packed(std::string_view(log).substr(cut), isZstd);
    expectSame(log, plain, contentsOf(file).value_or("refused"));
    file = packed(log, isZstd);
    const std::size_t place = 4 + choice / 64 % (file.size() - 4);
    if (choice / 16 % 4 == 0)
        file.resize(place);
    else
        file[place] = static_cast<char>(file[place] ^ 1 << choice / 4 % 8);
    if (const std::optional<std::string> read = contentsOf(file))
        expectSame(log, choice / 16 % 4 == 0 ? "refused" : plain, *read);
}

// An editor with one document. What it is told is JSON.
class editor_t {
public:
    explicit editor_t(const std::string &text, int version = 1) {
        ask("initialize", json_t::object());
        ask("textDocument/didOpen",
            {{"textDocument", {{"uri", "u"}, {"version", version}, {"languageId", "x"}, {"text", text}}}});
    }

    std::string ask(const char *method, const json_t &params) {
        told_.clear();
        server_.take({json_t({{"id", 7}, {"method", method}, {"params", params}}).dump()});
        server_.work();
        return told_;
    }
    const std::string &told() const { return told_; }

private:
    std::string told_;
    lsp::server_t server_{"1", [this](std::string_view text) {
                              if (!json_t::accept(text))
                                  expectSame(text, "JSON", "none");
                              told_.append(text).append("\n");
                          }};
};

void tryEditing(const std::string &log, std::size_t choice) {
    const std::string text =
        json_t::parse(json_t(log).dump(-1, ' ', false, json_t::error_handler_t::replace)).get<std::string>();
    std::size_t at = choice / 8 % (text.size() + 1);
    const std::size_t start = at > 0 ? text.rfind('\n', at - 1) + 1 : 0;
    const auto isOther = [](char c) { return c == '\r' || static_cast<unsigned char>(c) >= 0x80; };
    if (std::any_of(text.data() + start, text.data() + at, isOther)) // whose places count otherwise
        at = start;
    const auto line = std::count(text.data(), text.data() + at, '\n');
    constexpr std::string_view pieces[] = {"x", "\n", "!!", "}", "@@4112    30 1 1 {", "\n\n  A = 1\n", " #", "="};
    const std::string_view piece = pieces[choice % std::size(pieces)];
    const std::string longer = std::string(text).insert(at, piece);
    const json_t place{{"line", line}, {"character", at - start}};
    editor_t editor(text);
    editor.ask("textDocument/didChange",
               {{"textDocument", {{"uri", "u"}, {"version", 2}}},
                {"contentChanges", {{{"text", piece}, {"range", {{"start", place}, {"end", place}}}}}}});
    expectSame(longer, editor_t(longer, 2).told(), editor.told());
    for (const char *method : {"hover", "completion", "documentSymbol", "foldingRange", "formatting", "codeAction"}) {
        const json_t params{{"textDocument", {{"uri", "u"}}},
                            {"position", place},
                            {"range", {{"start", place}, {"end", place}}},
                            {"context", {{"diagnostics", json_t::array()}}}};
        if (editor.ask(joined({"textDocument/", method}).c_str(), params).find("\"id\":7") == std::string::npos)
            expectSame(longer, "an answer", method);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string log = textOf(data, size);
    const std::size_t choice = choiceBy(log), rest = choice / 64;
    switch (choice % 64) { // by what they cost
    case 0:
        trySplitting(log, rest);
        break;
    case 1:
        tryEditing(log, rest);
        break;
    case 2:
    case 3:
        tryPacked(log, rest);
        break;
    default:
        (choice % 2 == 0 ? tryBlocks : tryResuming)(log, rest);
    }
    return 0;
}
