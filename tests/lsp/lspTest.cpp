// The language server: what it answers to whatever is said, and that what it tells of a text does not depend on how the
// text came about.
#include "tests/support/messages.hpp"
#include "tools/vekmsg/lsp/params.hpp"
#include "tools/vekmsg/lsp/server.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace vek::tool::lsp {

namespace {

using json_t = nlohmann::json;

const std::string uri = "file:///a%20b/%E2%82%AC.log";

// A server with the other end of its connection.
struct client_t {
    explicit client_t(const char *encoding = "utf-16") {
        tell({{"id", 0},
              {"method", "initialize"},
              {"params",
               {{"capabilities",
                 {{"general", {{"positionEncodings", {encoding}}}}, {"workspace", {{"applyEdit", true}}}}}}}});
        sent.clear();
    }

    void tell(const json_t &message) {
        server.take({message.dump()});
        server.work();
    }
    void notify(const char *method, const json_t &params) { tell({{"method", method}, {"params", params}}); }
    void open(const std::string &text, int version = 1) {
        // As bytes: they need be no UTF-8.
        std::string quoted;
        for (const char c : text)
            quoted += c == '\n'               ? "\\n"
                      : c == '\r'             ? "\\r"
                      : c == '"' || c == '\\' ? std::string("\\") + c
                                              : std::string(1, c);
        server.take({R"({"method":"textDocument/didOpen","params":{"textDocument":{"languageId":"x","uri":")" + uri +
                     R"(","version":)" + std::to_string(version) + R"(,"text":")" + quoted + R"("}}})"});
        server.work();
    }
    // The result, or the error.
    json_t ask(const char *method, json_t params = json_t::object()) {
        if (!params.contains("textDocument"))
            params["textDocument"]["uri"] = uri;
        sent.clear();
        tell({{"id", 7}, {"method", method}, {"params", params}});
        const json_t answer = sent.empty() ? json_t() : json_t::parse(sent.back());
        return answer.contains("error") ? answer["error"] : answer.contains("result") ? answer["result"] : answer;
    }
    json_t askAt(const char *method, std::size_t line, std::size_t character) {
        return ask(method, {{"position", {{"line", line}, {"character", character}}}});
    }

    std::vector<std::string> sent;
    server_t server{"1.0", [this](std::string_view json) { sent.emplace_back(json); }};
};

// Where a position is, found character by character.
std::size_t offsetOf(const std::string &text, std::size_t line, std::size_t character, bool isUtf16) {
    std::size_t at = 0;
    for (; line > 0; --line) {
        at = text.find('\n', at);
        if (at == std::string::npos)
            return text.size();
        ++at;
    }
    const std::size_t end = std::min(text.find('\n', at), text.size());
    const std::size_t last = end < text.size() && end > at && text[end - 1] == '\r' ? end - 1 : end;
    for (std::size_t units = 0; at < last;) {
        const auto lead = static_cast<unsigned char>(text[at]);
        const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1; // all is well-formed here
        units += !isUtf16 ? size : size == 4 ? 2 : 1;
        if (units > character)
            break;
        at += size;
    }
    return at;
}

class edits_t {
public:
    edits_t(std::string &text, unsigned seed, bool isUtf16) : text_(text), random_(seed), isUtf16_(isUtf16) {}

    json_t next() {
        json_t edits = json_t::array();
        const std::size_t lines = static_cast<std::size_t>(std::count(text_.begin(), text_.end(), '\n')) + 1;
        std::size_t line = upTo(lines + 1);
        for (std::size_t i = upTo(4); i < 5 && line <= lines; ++i) {
            const std::size_t last = upTo(8) == 0 ? line + upTo(4) : line, from = upTo(130);
            const std::size_t to = last == line ? from + upTo(6) : upTo(130);
            const std::string &by = pieces()[upTo(pieces().size())];
            edits.push_back(
                {{"text", by},
                 {"range",
                  {{"start", {{"line", line}, {"character", from}}}, {"end", {{"line", last}, {"character", to}}}}}});
            const std::size_t start = offsetOf(text_, line, from, isUtf16_), end = offsetOf(text_, last, to, isUtf16_);
            text_.replace(start, std::max(end, start) - start, by);
            line = upTo(3) == 0 ? upTo(lines) : line - upTo(7); // often in front of it, as replacements all over come
        }
        return edits;
    }

private:
    std::size_t upTo(std::size_t end) { return random_() % end; }
    static const std::vector<std::string> &pieces() {
        static const std::vector<std::string> all{"",
                                                  "",
                                                  "x",
                                                  "\n",
                                                  "\r\n",
                                                  "\r",
                                                  "!!",
                                                  "}!!",
                                                  "@@",
                                                  "@@4112 ",
                                                  "{",
                                                  "}",
                                                  ";",
                                                  ",",
                                                  "=",
                                                  "\xC3\xBC",
                                                  "\xF0\x9F\x92\xA1",
                                                  " # x",
                                                  "  ",
                                                  "focusValue_t 4112\n",
                                                  test::sampleOf(4112).text,
                                                  test::sampleOf(4161).text + "\n",
                                                  "@@4112 9999999 1 1 {",
                                                  "FOCUS_VALUE = 3,5\n"};
        return all;
    }

    std::string &text_;
    std::mt19937 random_;
    const bool isUtf16_;
};

// After any edits the same is told as of the whole text opened anew.
void editAndCompare(std::string text, unsigned seed, int rounds, const char *encoding) {
    client_t client(encoding);
    client.open(text);
    edits_t edits(text, seed, encoding == std::string("utf-16"));
    for (int version = 2; version < 2 + rounds; ++version) {
        client.sent.clear();
        client.notify("textDocument/didChange",
                      {{"textDocument", {{"uri", uri}, {"version", version}}}, {"contentChanges", edits.next()}});
        client_t fresh(encoding);
        fresh.open(text, version);
        ASSERT_EQ(client.sent, fresh.sent) << "seed " << seed << ", version " << version;
    }
}

std::string logOf(std::size_t size) {
    std::ifstream file(std::string(VEK_EXAMPLES) + "/device.log", std::ios::binary);
    std::ostringstream log;
    log << file.rdbuf();
    std::string text;
    while (text.size() < size)
        text += log.str();
    return text;
}

TEST(Lsp, TellsTheSameHoweverATextCameAbout) {
    const std::string readable = "# two\nfocusValue_t 4112, echo 7\n  MEDIA_NAME = a\n  FOCUS_VALUE = 3.5\n"
                                 "deviceStatus_t 4161\n  STATUS = 1\n  MSGS = [a,\n    b]\n";
    for (unsigned seed = 0; seed < 4; ++seed)
        for (const std::string &text : {logOf(1), test::sampleOf(4100).text, readable, std::string()})
            editAndCompare(text, seed, test::rounds(10), seed % 2 == 0 ? "utf-16" : "utf-8");
    editAndCompare(logOf(1'600'000), 1, 6, "utf-8"); // of so much only a part is looked at again
}

TEST(Lsp, AnswersWhateverComes) {
    struct row_t {
        std::vector<std::string> told; // in one go
        std::string answers;           // "ID:CODE" of errors, "ID" of results, names of what is told
    };
    const std::string begin = R"({"id":0,"method":"initialize","params":{}})";
    const std::string end = R"({"id":9,"method":"shutdown"})";
    const std::string opened = R"({"method":"textDocument/didOpen","params":{"textDocument":{"uri":"u","version":1,)"
                               R"("languageId":"","text":"@@4112"}}})";
    const std::string told = " textDocument/publishDiagnostics";
    const std::string many(90, 'x'); // more than 100 characters with its name, which counts twice, and the text there
    const auto change = [](const std::string &changes) {
        return R"({"method":"textDocument/didChange","params":{"textDocument":{"uri":"u"},"contentChanges":)" +
               changes + "}}";
    };
    const std::vector<row_t> rows{
        {{"x", "[", "", "\xFF", R"({"a":1e999})", R"({"a":"\ud800"})"},
         "null:-32700 null:-32700 null:-32700 null:-32700 null:-32700 null:-32600"},
        {{"[]", "1", "null", "{}", R"({"id":[]})", R"({"id":1,"method":2})"},
         "null:-32600 null:-32600 null:-32600 null:-32600 null:-32600 1:-32600"},
        {{std::string(100, '[') + std::string(100, ']')}, "null:-32600"},
        {{R"({"id":1,"method":"shutdown"})", opened, R"({"id":"a","method":"textDocument/hover"})", begin},
         R"(1:-32002 "a":-32002 0)"},
        {{begin, begin, R"({"id":1,"method":"$/odd"})", R"({"method":"$/odd"})", R"({"id":3,"result":null})"},
         "0 0:-32600 1:-32601"},
        {{begin, end, R"({"id":1,"method":"textDocument/hover"})", end, opened}, "0 9 1:-32600 9:-32600"},
        {{begin, R"({"id":1,"method":"textDocument/hover"})",
          R"({"id":"x","method":"textDocument/hover","params":)"
          R"({"textDocument":{"uri":"none"}}})",
          R"({"id":2,"method":"workspace/executeCommand","params":)"
          R"({"command":"rm","arguments":["u"]}})"},
         R"(0 1:-32602 "x":-32602 2:-32602)"},
        {{begin, R"({"id":5,"method":"shutdown"})", R"({"method":"$/cancelRequest","params":{"id":5}})"}, "0 5:-32800"},
        {{begin, opened, R"({"method":"textDocument/didClose","params":{"textDocument":{"uri":"u"}}})"}, "0" + told},
        {{begin, opened,
          change(R"([{"text":"a"},{"text":"b","range":{"start":{"line":99999999999999999999,)"
                 R"("character":1}}}])")},
         "0 window/showMessage" + told},
        {{begin, opened, change(R"([{"text":"b","range":{"start":{"line":9,"character":1e300}}}])"), change("7")},
         "0 window/showMessage" + told},
        {{begin, opened, change("[]"), change(R"([{"text":""}])")}, "0" + told},
        {{begin, opened, change(R"([{"text":")" + many + R"("}])"), change(R"([{"text":"a"}])")}, "0" + told},
    };
    for (const row_t &row : rows) {
        std::string answers;
        const auto note = [&](std::string_view text) {
            const json_t json = json_t::parse(text);
            answers += answers.empty() ? "" : " ";
            answers += json.contains("method") ? json["method"].get<std::string>() : json["id"].dump();
            answers += json.contains("error") ? ":" + json["error"]["code"].dump() : "";
        };
        server_t server("1.0", note, 100);
        for (const std::string &json : row.told)
            server.take({json});
        server.work();
        EXPECT_EQ(answers, row.answers) << row.told.back();
    }
}

// However it is cut, and whatever stands between: what is whole and right arrives.
TEST(Lsp, FindsMessagesInBytes) {
    std::string tooLong = "Content-Length: 67108865\r\n\r\n";
    tooLong.append(67108865, 'x'); // above what is taken
    const std::pair<std::string, std::string> rows[] = {
        {framed("{1}") + framed("") + framed("{2}"), "{1}||{2}|"},
        {"content-length : 3\r\n\r\n" + framed("{2}"), "?{2}|"},
        {"Content-Type: x\r\nCONTENT-LENGTH:3\r\n\r\n{1}Content-Length: 3\n\n{2}", "{1}|{2}|"},
        {"Content-Length: 2\r\n\r\n{1}" + framed("{2}"), "{1|?{2}|"},
        {"Content-Length: 25\r\n\r\n{1}" + framed("{2}") + framed("{3}"),
         "{1}" + framed("{2}").substr(0, 22) + "|?{3}|"},
        {"Content-Length: 3\r\nContent-Length\r\n\r\n" + framed("{2}"), "?{2}|"},
        {"Content-Length: -3\r\n\r\n" + framed("{2}"), "?{2}|"},
        {"Content-Length: 99999999999999999999\r\n\r\n" + framed("{2}"), "?{2}|"},
        {tooLong + framed("{2}"), "?{2}|"},
        {std::string(9000, 'x') + framed("{2}"), "?{2}|"},
    };
    for (const auto &[bytes, wanted] : rows)
        for (const std::size_t step : {std::size_t{1}, std::size_t{7}, std::size_t{1000}, bytes.size()}) {
            if (bytes.size() / step > 100'000)
                continue;
            wire_t wire;
            std::string got;
            for (std::size_t at = 0; at < bytes.size(); at += step) {
                wire.feed(std::string_view(bytes).substr(at, step));
                while (const auto received = wire.next())
                    got += received->problem.empty() ? received->json + "|" : "?";
            }
            EXPECT_EQ(got, wanted) << bytes.substr(0, 60) << " by " << step;
        }
}

// A document with a "^" where it is asked.
json_t askAtMark(const char *method, std::string text) {
    const std::size_t mark = text.find('^');
    text.erase(mark, 1);
    client_t client("utf-8");
    client.open(text);
    const std::string before = text.substr(0, mark);
    return client.askAt(method, static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')),
                        before.size() - (before.rfind('\n') + 1));
}

TEST(Lsp, OffersWhatIsValidHere) {
    const std::pair<const char *, std::string> rows[] = {
        {"@@4112    80 7 41 {^MEDIA_NAME=a;}!!", "FOCUS_VALUE="},
        {"@@4112    80 7 41 {MEDIA_NAME=a;FO^", "FOCUS_VALUE="},
        {"@@4112    80 7 41 {MEDIA_NAME=a;FOCUS_VALEU^=3;}!!", "FOCUS_VALUE"},
        {"@@4112    80 7 41 {MEDIA_NAME=^a;}!!", ""},
        {"@@41^12    80 7 41 {}!!", ""},
        {"@@4103 1 1 1 {OUTPUT_TYPE=^;}!!", "roller_e sheet_e"},
        {"@@4101 1 1 1 {ARRAY_CASSETTE={{NAME=a;},{NAME=b;VERSION={THICK=2;EXPOSURE_TYPE=n^", "negative_e positive_e"},
        {"focusValue_t 4112\n  MEDIA_NAME = a\n  ^\n", "FOCUS_VALUE = "},
        {"focusValue_t 4112\n  FO^ = 1\n", "MEDIA_NAME FOCUS_VALUE"},
        {"cassette_t 4100\n  NAME = a\n  VERSION\n    EXPOSURE_TYPE = ^\n", "negative_e positive_e"},
    };
    for (const auto &[text, wanted] : rows) {
        std::string got;
        for (const json_t &item : askAtMark("textDocument/completion", text))
            got += (got.empty() ? "" : " ") + item["textEdit"]["newText"].get<std::string>();
        EXPECT_EQ(got, wanted) << text;
    }
}

TEST(Lsp, SaysWhatStandsThere) {
    const std::pair<const char *, const char *> rows[] = {
        {"@@4112    80 7 41 {MEDIA_NAME=a;FOCUS_^VALUE=1.000000;}!!", "`FOCUS_VALUE`: double; default"},
        {"x @@4^112    80 7 41 {MEDIA_NAME=a;}!!", "`4112 focusValue_t` VEK_MSG_FOCUS_VALUE"},
        {"x @@4112    9^9 7 41 {MEDIA_NAME=a;}!!", "`vekmsg explain wrong-length`"},
        {"cassette_t 4100\n  VERSION\n    EXPOSURE_TYPE = posit^ive_e\n", "One of `negative_e`, `positive_e`"},
        {"cassette_t 4100\n  VERSION\n    THICK = ^x\n", "is no number"},
    };
    for (const auto &[text, wanted] : rows) {
        const std::string got = askAtMark("textDocument/hover", text).dump();
        EXPECT_NE(got.find(wanted), std::string::npos) << text << "\n" << got;
    }
    EXPECT_TRUE(askAtMark("textDocument/hover", "no mess^age").is_null());
}

// Into the readable form and back: the same bytes, or it is refused with a reason.
TEST(Lsp, WritesTheOtherFormAndBack) {
    const auto edited = [](client_t &client) { // what the server asks the editor for
        return json_t::parse(client.sent.front())["params"]["edit"]["changes"][uri][0]["newText"].get<std::string>();
    };
    std::vector<std::string> texts{test::sampleOf(4112).text + "\n" + test::sampleOf(4161).text + "\n"};
    for (const test::sample_t &sample : test::samples())
        texts.push_back(sample.text);
    for (const std::string &text : texts) {
        client_t client;
        client.open(text);
        const json_t formatted = client.ask("textDocument/formatting");
        ASSERT_TRUE(formatted.is_array() && formatted.size() == 1) << formatted << text;
        const std::string readable = formatted[0]["newText"];
        client.open(readable);
        EXPECT_EQ(client.ask("textDocument/formatting"), json_t::array()) << readable;
        client.ask("workspace/executeCommand", {{"command", "vekmsg.toLines"}, {"arguments", {uri}}});
        EXPECT_EQ(edited(client), text);
    }
    const std::pair<std::string, const char *> refused[] = {
        {logOf(1), "line 1: other words"},
        {"no message", "there is no message here"},
        {"focusValue_t 4112 # mine\n  MEDIA_NAME = a\n", "line 1: a message can't hold this comment"},
        {"# mine\nfocusValue_t 4112\n  MEDIA_NAME = a\n", "line 1: a message can't hold this comment"},
        {"focusValue_t 4112\n  MEDIA_NAME = \"a\"  # mine\n", "line 2: a message can't hold this comment"},
        {"focusValue_t 4112\n  FOCUS_VALUE = x\n", "line 2: FOCUS_VALUE: \"x\" is no number"},
    };
    for (const auto &[text, why] : refused) {
        client_t client;
        client.open(text);
        const json_t answer = client.ask("textDocument/formatting");
        EXPECT_TRUE(answer.is_object() && answer["message"].get<std::string>().starts_with(why)) << answer;
    }
    client_t client;
    client.open("focusValue_t 4112\n  MEDIA_NAME = \"\\xff\"\n"); // bytes that are no UTF-8 can't be told
    client.ask("workspace/executeCommand", {{"command", "vekmsg.toLines"}, {"arguments", {uri}}});
    EXPECT_NE(client.sent.front().find("no UTF-8"), std::string::npos) << client.sent.front();
}

TEST(Lsp, OutlinesAndFolds) {
    client_t client;
    client.open("cassette_t 4100\n  NAME = a\n  VERSION\n    THICK = 1\n  RES_INT_TABLE_N = 1\n");
    std::string names;
    const auto walk = [&](const auto &self, const json_t &symbols) -> void {
        for (const json_t &symbol : symbols) {
            names += symbol["name"].get<std::string>() + "(";
            self(self, symbol["children"]);
            names += ")";
        }
    };
    walk(walk, client.ask("textDocument/documentSymbol"));
    EXPECT_EQ(names, "4100 cassette_t(NAME()VERSION(THICK())RES_INT_TABLE_N())");
    EXPECT_EQ(client.ask("textDocument/foldingRange").dump(),
              R"([{"endLine":4,"startLine":0},{"endLine":3,"startLine":2}])");
}

// As a program: how it ends.
TEST(Lsp, EndsAsTheProtocolSays) {
    const std::string begin = framed(R"({"id":0,"method":"initialize","params":{}})");
    const std::string exit = framed(R"({"method":"exit"})");
    const std::pair<std::string, int> rows[] = {
        {begin + framed(R"({"id":1,"method":"shutdown"})") + exit, 0},
        {begin + exit, 1},
        {exit, 1},
        {begin, 1},
        {"x", 1},
    };
    for (const auto &[told, wanted] : rows) {
        FILE *const pipe = popen(VEK_TOOL " lsp --stdio >/dev/null", "w");
        ASSERT_NE(pipe, nullptr);
        std::fwrite(told.data(), 1, told.size(), pipe);
        const int status = pclose(pipe);
        EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, wanted) << told;
    }
}

} // namespace

} // namespace vek::tool::lsp
