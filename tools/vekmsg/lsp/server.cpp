// The life of the connection: what comes is put in a queue, answered, and what has changed is told.
#include "tools/vekmsg/lsp/server.hpp"

#include "tools/vekmsg/lsp/features.hpp"
#include "tools/vekmsg/lsp/methods.hpp"
#include "tools/vekmsg/lsp/params.hpp"

#include <utility>

namespace vek::tool::lsp {

namespace {

std::string_view methodIn(const nlohmann::json &message) {
    const nlohmann::json *method = findMember(message, {"method"});
    return method != nullptr && method->is_string() ? std::string_view(method->get_ref<const std::string &>())
                                                    : std::string_view();
}

// As JSON; empty when it is none that a request can have.
std::string idIn(const nlohmann::json &object) {
    const nlohmann::json *id = findMember(object, {"id"});
    return id != nullptr && (id->is_string() || id->is_number()) ? id->dump() : std::string();
}

} // namespace

server_t::server_t(std::string version, send_t send, std::size_t mostText)
    : version_(std::move(version)), send_(std::move(send)), mostText_(mostText) {}

server_t::~server_t() = default;

void server_t::take(const wire_t::received_t &received) {
    try {
        if (!received.problem.empty())
            throw rpcError_t(rpcError_t::parseError, received.problem);
        queue_.push_back(parsed(received.json));
    } catch (const rpcError_t &error) {
        return fail("null", error.code, error.what());
    }
    if (methodIn(queue_.back()) == "$/cancelRequest")
        if (const json_t *params = findMember(queue_.back(), {"params"}))
            cancelled_.insert(idIn(*params));
}

void server_t::work() {
    for (; !queue_.empty() && !isOver(); queue_.pop_front())
        handle(queue_.front());
    cancelled_.clear();
    if (state_ == state_t::running)
        tellProblems();
}

void server_t::handle(const json_t &message) {
    const std::string id = idIn(message);
    const std::string_view name = methodIn(message);
    const bool isAnswer = message.is_object() && (message.contains("result") || message.contains("error"));
    if (name.empty())
        return isAnswer ? void() : fail(id.empty() ? "null" : id, rpcError_t::invalidRequest, "there is no method");
    const method_t *method = findMethod(name);
    const json_t none, *const params = findMember(message, {"params"});
    if (!message.contains("id") && (method == nullptr || method->isRequest))
        return; // what is told and not known
    try {
        answer(id, name, method, params != nullptr ? *params : none);
    } catch (const rpcError_t &error) {
        fail(id, error.code, error.what());
    }
}

// To what is told nothing is answered, and neither is it looked at before the beginning.
void server_t::answer(const std::string &id, std::string_view name, const method_t *method, const json_t &params) {
    const bool isBeginning = name == "initialize", isEnd = name == "exit";
    if (state_ == state_t::new_ && !isBeginning && !isEnd)
        throw rpcError_t(rpcError_t::notInitialized, "the server waits for \"initialize\"");
    if (state_ != state_t::new_ && (isBeginning || (state_ == state_t::shutDown && !isEnd)))
        throw rpcError_t(rpcError_t::invalidRequest,
                         isBeginning ? "the server is initialized already" : "the server is shut down");
    if (method == nullptr)
        throw rpcError_t(rpcError_t::methodNotFound, "this server does not know " + std::string(name.substr(0, 100)));
    if (cancelled_.contains(id))
        throw rpcError_t(rpcError_t::requestCancelled, "called off");
    std::string json;
    result_t result(json);
    (this->*method->handler)(params, result);
    if (method->isRequest)
        send([&](result_t &whole) {
            whole.name("id");
            whole.ready(id);
            whole.name("result");
            whole.ready(json.empty() ? "null" : json);
        });
}

void server_t::fail(const std::string &id, int code, std::string_view words) {
    if (id.empty())
        return;
    send([&](result_t &json) {
        json.name("id");
        json.ready(id);
        json.object("error", [&] {
            json.member("code", code);
            json.member("message", words);
        });
    });
}

void server_t::send(const std::function<void(result_t &json)> &write) {
    std::string text;
    result_t json(text);
    json.open('{');
    json.member("jsonrpc", "2.0");
    write(json);
    json.close('}');
    send_(text);
}

void server_t::notify(std::string_view method, const std::function<void(result_t &json)> &write) {
    send([&](result_t &json) {
        json.member("method", method);
        json.object("params", [&] { write(json); });
    });
}

void server_t::show(std::string_view words, int kind) {
    notify("window/showMessage", [&](result_t &json) {
        json.member("type", kind);
        json.member("message", words);
    });
}

void server_t::tellProblems() {
    for (auto &one : documents_)
        if (document_t &document = one.second; std::exchange(document.isToldAnew, false))
            notify("textDocument/publishDiagnostics", [&](result_t &json) { appendProblems(json, document); });
}

} // namespace vek::tool::lsp
