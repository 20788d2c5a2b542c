// server_t: the language server, from messages of the protocol to messages of the protocol.
//
// It holds the documents that are open, within bounds, and answers in the order in which it is asked. What makes no
// sense is answered with an error, or passed over. One thread at a time.
#pragma once

#include "tools/vekmsg/lsp/document.hpp"
#include "tools/vekmsg/lsp/wire.hpp"
#include "vek/inspect/forms/jsonAppender.hpp"

#include <nlohmann/json_fwd.hpp>

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace vek::tool::lsp {

class server_t {
public:
    static constexpr std::size_t mostDocuments = 1000;

    using send_t = std::function<void(std::string_view json)>;

    /// `mostText`: of all documents together; one beyond that is not looked at.
    server_t(std::string version, send_t send, std::size_t mostText = std::size_t{256} << 20);
    server_t(const server_t &) = delete;
    server_t &operator=(const server_t &) = delete;
    ~server_t();

    /// Takes what came, and then does it: what was called off meanwhile is not done, and problems are told once.
    void take(const wire_t::received_t &received);
    void work();

    /// The client said that it is over, and how the program ends then.
    bool isOver() const { return state_ == state_t::over; }
    int exitCode() const { return isShutDown_ ? 0 : 1; }

private:
    using json_t = nlohmann::json;
    using result_t = inspect::jsonAppender_t;
    enum class state_t : std::uint8_t { new_, running, shutDown, over };
    struct method_t;
    static const method_t *findMethod(std::string_view name);

    void handle(const json_t &message);
    void answer(const std::string &id, std::string_view name, const method_t *method, const json_t &params);
    void fail(const std::string &id, int code, std::string_view words);
    void send(const std::function<void(result_t &json)> &write);
    void notify(std::string_view method, const std::function<void(result_t &json)> &write);
    void show(std::string_view words, int kind);
    void tellProblems();

    void initialize(const json_t &params, result_t &result);
    void shutdown(const json_t &params, result_t &result);
    void exit(const json_t &params, result_t &result);
    void open(const json_t &params, result_t &result);
    void change(const json_t &params, result_t &result);
    void close(const json_t &params, result_t &result);
    void hover(const json_t &params, result_t &result);
    void complete(const json_t &params, result_t &result);
    void symbols(const json_t &params, result_t &result);
    void fold(const json_t &params, result_t &result);
    void format(const json_t &params, result_t &result);
    void act(const json_t &params, result_t &result);
    void execute(const json_t &params, result_t &result);
    void nothing(const json_t &params, result_t &result);

    document_t &documentOf(const json_t &params);
    std::size_t textSize() const;
    void forget(std::string uri);
    void lose(const document_t &document, std::string_view words);
    void explain(std::string_view name);
    void rewrite(const document_t &document, bool isToReadable);

    const std::string version_;
    const send_t send_;
    const std::size_t mostText_;
    state_t state_ = state_t::new_;
    bool isShutDown_ = false, isMarkdown_ = false, canApply_ = false;
    encoding_t encoding_ = encoding_t::utf16;
    std::map<std::string, document_t, std::less<>> documents_;
    std::deque<json_t> queue_;
    std::set<std::string> cancelled_; // ids of what was called off
    std::size_t asked_ = 0;           // by the server
};

} // namespace vek::tool::lsp
