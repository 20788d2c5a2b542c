// What each method does.
#include "tools/vekmsg/lsp/methods.hpp"

#include "tools/vekmsg/lsp/features.hpp"
#include "tools/vekmsg/lsp/params.hpp"
#include "vek/inspect/change/explanation.hpp"
#include "vek/inspect/forms/forms.hpp"
#include "vek/inspect/words/words.hpp"

#include <algorithm>

namespace vek::tool::lsp {

namespace {

using inspect::joined;

constexpr int errorMessage = 1, warningMessage = 2, informationMessage = 3;
constexpr int syncIncremental = 2;

// Whether a list of texts at a path has one of them; `otherwise` when there is no such list.
bool offers(const nlohmann::json &params, std::initializer_list<const char *> path, std::string_view wanted,
            bool otherwise) {
    const nlohmann::json *list = findMember(params, path);
    if (list == nullptr || !list->is_array())
        return otherwise;
    return std::any_of(list->begin(), list->end(), [&](const auto &one) { return one.is_string() && one == wanted; });
}

} // namespace

const server_t::method_t *server_t::findMethod(std::string_view name) {
    static constexpr method_t methods[] = {
        {"initialize", &server_t::initialize},
        {"initialized", &server_t::nothing, false},
        {"shutdown", &server_t::shutdown},
        {"exit", &server_t::exit, false},
        {"textDocument/didOpen", &server_t::open, false},
        {"textDocument/didChange", &server_t::change, false},
        {"textDocument/didClose", &server_t::close, false},
        {"textDocument/hover", &server_t::hover},
        {"textDocument/completion", &server_t::complete},
        {"textDocument/documentSymbol", &server_t::symbols},
        {"textDocument/foldingRange", &server_t::fold},
        {"textDocument/formatting", &server_t::format},
        {"textDocument/codeAction", &server_t::act},
        {"workspace/executeCommand", &server_t::execute},
    };
    const auto *const found = std::find_if(std::begin(methods), std::end(methods),
                                           [&](const method_t &method) { return method.name == name; });
    return found != std::end(methods) ? found : nullptr;
}

void server_t::nothing(const json_t & /*params*/, result_t & /*result*/) {}

void server_t::initialize(const json_t &params, result_t &result) {
    state_ = state_t::running;
    const bool isUtf8 = offers(params, {"capabilities", "general", "positionEncodings"}, "utf-8", false);
    encoding_ = isUtf8 ? encoding_t::utf8 : encoding_t::utf16;
    isMarkdown_ = offers(params, {"capabilities", "textDocument", "hover", "contentFormat"}, "markdown", true);
    const json_t *applies = findMember(params, {"capabilities", "workspace", "applyEdit"});
    canApply_ = applies != nullptr && applies->is_boolean() && applies->get<bool>();
    const auto list = [&](std::string_view name, std::initializer_list<std::string_view> values) {
        result.list(name, values, [&](std::string_view value) { result.value(value); });
    };
    result.open('{');
    result.object("capabilities", [&] {
        result.member("positionEncoding", isUtf8 ? "utf-8" : "utf-16");
        result.object("textDocumentSync", [&] {
            result.member("openClose", true);
            result.member("change", syncIncremental);
        });
        for (const std::string_view provider :
             {"hoverProvider", "documentSymbolProvider", "foldingRangeProvider", "documentFormattingProvider"})
            result.member(provider, true);
        result.object("completionProvider", [&] { list("triggerCharacters", {"{", ";", "="}); });
        result.object("codeActionProvider", [&] { list("codeActionKinds", {"quickfix", "refactor.rewrite"}); });
        result.object("executeCommandProvider", [&] {
            list("commands", {toReadableCommand, toLinesCommand, explainCommand});
        });
    });
    result.object("serverInfo", [&] {
        result.member("name", "vekmsg");
        result.member("version", version_);
    });
    result.close('}');
}

void server_t::shutdown(const json_t & /*params*/, result_t & /*result*/) {
    state_ = state_t::shutDown;
    isShutDown_ = true;
    documents_.clear();
}

void server_t::exit(const json_t & /*params*/, result_t & /*result*/) {
    state_ = state_t::over;
}

document_t &server_t::documentOf(const json_t &params) {
    const auto found = documents_.find(textIn(memberOf(params, "textDocument"), "uri"));
    if (found == documents_.end())
        throw rpcError_t(rpcError_t::invalidParams, "this document is not open");
    return found->second;
}

// Of documents that are open, and their names.
std::size_t server_t::textSize() const {
    std::size_t size = 0;
    for (const auto &[uri, document] : documents_)
        size += document.text().size() + 2 * uri.size();
    return size;
}

void server_t::open(const json_t &params, result_t & /*result*/) {
    const json_t &its = memberOf(params, "textDocument");
    std::string uri = textIn(its, "uri"), text = textIn(its, "text");
    const std::int64_t version = numberIn(its, "version");
    documents_.erase(uri);
    if (documents_.size() >= mostDocuments || textSize() + text.size() + 2 * uri.size() > mostText_)
        return show("There are too many or too large documents for vekmsg lsp: it does not look at this one",
                    warningMessage);
    documents_.try_emplace(uri, uri, std::move(text), version, encoding_);
}

void server_t::change(const json_t &params, result_t & /*result*/) {
    document_t &document = documentOf(params);
    const json_t &its = memberOf(params, "textDocument");
    const json_t *version = findMember(its, {"version"});
    std::vector<edit_t> edits;
    std::size_t size = 0;
    try {
        const json_t &changes = memberOf(params, "contentChanges");
        if (!changes.is_array())
            throw rpcError_t(rpcError_t::invalidParams, "the changes are no list");
        for (const json_t &change : changes) {
            edit_t edit{{}, textIn(change, "text")};
            size += edit.text.size();
            if (findMember(change, {"range"}) != nullptr)
                edit.range = rangeIn(change, "range");
            edits.push_back(std::move(edit));
        }
    } catch (const rpcError_t &) {
        return lose(document, "A change made no sense to vekmsg lsp: close this document and open it again");
    }
    if (textSize() + size > mostText_)
        return lose(document, "The documents are too large for vekmsg lsp: it does not look at this one any more");
    document.change(std::move(edits), version != nullptr && version->is_number_integer() ? numberIn(its, "version")
                                                                                         : document.version + 1);
}

// What an editor shows is not known any more.
void server_t::lose(const document_t &document, std::string_view words) {
    show(words, errorMessage);
    forget(document.uri);
}

void server_t::close(const json_t &params, result_t & /*result*/) {
    forget(textIn(memberOf(params, "textDocument"), "uri"));
}

void server_t::forget(std::string uri) {
    if (documents_.erase(uri) == 0)
        return;
    notify("textDocument/publishDiagnostics", [&](result_t &json) {
        json.member("uri", uri);
        json.list("diagnostics", std::initializer_list<int>{}, [](int) {});
    });
}

void server_t::hover(const json_t &params, result_t &result) {
    const document_t &document = documentOf(params);
    appendHover(result, document, document.offsetOf(positionIn(params, "position")), isMarkdown_);
}

void server_t::complete(const json_t &params, result_t &result) {
    const document_t &document = documentOf(params);
    appendCompletion(result, document, document.offsetOf(positionIn(params, "position")));
}

void server_t::symbols(const json_t &params, result_t &result) {
    appendSymbols(result, documentOf(params));
}

void server_t::fold(const json_t &params, result_t &result) {
    appendFolding(result, documentOf(params));
}

void server_t::format(const json_t &params, result_t &result) {
    const document_t &document = documentOf(params);
    const rewritten_t readable = inReadableForm(document);
    if (!readable.error.empty())
        throw rpcError_t(rpcError_t::requestFailed, readable.error);
    positions_t positions = document.positions();
    result.open('[');
    if (readable.text != document.text())
        appendTextEdit(result, positions, {0, static_cast<std::uint32_t>(document.text().size())}, readable.text);
    result.close(']');
}

void server_t::act(const json_t &params, result_t &result) {
    const document_t &document = documentOf(params);
    const json_t *only = findMember(params, {"context", "only"});
    const bool hasOne = only != nullptr && only->is_array() && only->size() == 1 && only->front().is_string();
    appendActions(result, document, document.placeOf(rangeIn(params, "range")),
                  hasOne ? only->front().get<std::string>() : std::string());
}

void server_t::execute(const json_t &params, result_t & /*result*/) {
    const std::string command = textIn(params, "command");
    const json_t &arguments = memberOf(params, "arguments");
    if (!arguments.is_array() || arguments.empty() || !arguments.front().is_string())
        throw rpcError_t(rpcError_t::invalidParams, "a command takes one text");
    const auto argument = inspect::jsonBytes(arguments.front().get_ref<const std::string &>());
    if (command == explainCommand)
        return explain(argument);
    if (command != toReadableCommand && command != toLinesCommand)
        throw rpcError_t(rpcError_t::invalidParams, "there is no such command");
    const auto document = documents_.find(argument);
    if (document == documents_.end())
        throw rpcError_t(rpcError_t::invalidParams, "this document is not open");
    rewrite(document->second, command == toReadableCommand);
}

void server_t::explain(std::string_view name) {
    const auto code = inspect::findingNamed(name);
    if (!code)
        throw rpcError_t(rpcError_t::invalidParams, "no finding has this name");
    const inspect::explanation_t explanation = inspect::explain(inspect::findingKind(*code));
    show(joined({name, ": ", inspect::findingKind(*code).about, "\n", explanation.example, "\n", explanation.words,
                 "\n", inspect::plainWords(explanation.remedy)}),
         informationMessage);
}

// The client makes the change; what is refused is told to the person.
void server_t::rewrite(const document_t &document, bool isToReadable) {
    const rewritten_t rewritten = isToReadable ? inReadableForm(document) : inLines(document);
    if (!rewritten.error.empty() || !canApply_)
        return show(canApply_ ? rewritten.error : "this editor lets no server change a document", errorMessage);
    send([&](result_t &json) {
        json.member("id", joined({"vekmsg-", std::to_string(++asked_)}));
        json.member("method", "workspace/applyEdit");
        json.object("params", [&] {
            json.object("edit", [&] {
                json.object("changes", [&] {
                    positions_t positions = document.positions();
                    json.anyName(document.uri);
                    json.open('[');
                    appendTextEdit(json, positions, {0, static_cast<std::uint32_t>(document.text().size())},
                                   rewritten.text);
                    json.close(']');
                });
            });
        });
    });
}

} // namespace vek::tool::lsp
