// All that is said to libcurl. Each of its objects has an owner here that releases it.
#include "tools/vekmsg/load/clickhouse/httpClient.hpp"

#include "tools/vekmsg/terminal/password.hpp"

#include <curl/curl.h>
#include <dlfcn.h>

namespace vek::tool {

namespace {

// The calls of libcurl, which is loaded for the first address: with the thirty libraries that it needs, that takes
// longer than most commands.
class curl_t {
    struct call_t {
        void *address;
        template <class Function>
        operator Function *() const {
            return reinterpret_cast<Function *>(address);
        }
    };

    [[noreturn]] static void fail() {
        throw usageError_t(std::string("a database server is reached by libcurl, which can't be used here: ") +
                           dlerror() + "; install libcurl4");
    }
    call_t find(const char *name) const {
        void *const address = library_ != nullptr ? dlsym(library_, name) : nullptr;
        if (address == nullptr)
            fail();
        return {address};
    }

    void *library_ = dlopen("libcurl.so.4", RTLD_NOW | RTLD_LOCAL);

public:
    decltype(&curl_easy_cleanup) easyCleanup = find("curl_easy_cleanup");
    decltype(&curl_easy_escape) easyEscape = find("curl_easy_escape");
    decltype(&curl_easy_getinfo) easyGetinfo = find("curl_easy_getinfo");
    decltype(&curl_easy_init) easyInit = find("curl_easy_init");
    decltype(&curl_easy_perform) easyPerform = find("curl_easy_perform");
    decltype(&curl_easy_setopt) easySetopt = find("curl_easy_setopt");
    decltype(&curl_easy_strerror) easyStrerror = find("curl_easy_strerror");
    decltype(&curl_easy_unescape) easyUnescape = find("curl_easy_unescape");
    decltype(&curl_free) free = find("curl_free");
    decltype(&curl_global_init) globalInit = find("curl_global_init");
    decltype(&curl_url) url = find("curl_url");
    decltype(&curl_url_cleanup) urlCleanup = find("curl_url_cleanup");
    decltype(&curl_url_get) urlGet = find("curl_url_get");
    decltype(&curl_url_set) urlSet = find("curl_url_set");
    decltype(&curl_url_strerror) urlStrerror = find("curl_url_strerror");
};

const curl_t &curl() {
    static const curl_t loaded;
    return loaded;
}

struct urlReleaser_t {
    void operator()(CURLU *url) const { curl().urlCleanup(url); }
};
struct textReleaser_t {
    void operator()(char *text) const { curl().free(text); }
};
using curlText_t = std::unique_ptr<char, textReleaser_t>;

std::string partOf(CURLU *url, CURLUPart part, unsigned flags = CURLU_URLDECODE) {
    char *text = nullptr;
    if (curl().urlGet(url, part, &text, flags) != CURLUE_OK)
        return {};
    return std::string(curlText_t(text).get());
}

std::string decoded(std::string_view text) {
    int size = 0;
    const curlText_t plain(curl().easyUnescape(nullptr, text.data(), static_cast<int>(text.size()), &size));
    return plain ? std::string(plain.get(), static_cast<std::size_t>(size)) : std::string();
}

std::size_t keep(char *bytes, std::size_t, std::size_t size, void *answer) {
    constexpr std::size_t most = std::size_t{64} << 20; // whoever it is, it does not fill the memory
    auto &body = static_cast<httpClient_t::answer_t *>(answer)->body;
    if (size > most - body.size())
        return 0;
    body.append(bytes, size);
    return size;
}

} // namespace

httpAddress_t::httpAddress_t(const std::string &text) {
    const std::unique_ptr<CURLU, urlReleaser_t> url(curl().url());
    const CURLUcode code = curl().urlSet(url.get(), CURLUPART_URL, text.c_str(), 0);
    const std::string example = "; it is written http://HOST:8123/DATABASE";
    if (code != CURLUE_OK)
        throw usageError_t(withoutPassword(text) + " is no address: " + curl().urlStrerror(code) + example);
    const std::string scheme = partOf(url.get(), CURLUPART_SCHEME);
    if (scheme != "http" && scheme != "https")
        throw usageError_t(withoutPassword(text) + " is no address of a database server" + example);
    const std::string port = partOf(url.get(), CURLUPART_PORT);
    server = scheme + "://" + partOf(url.get(), CURLUPART_HOST, 0) + (port.empty() ? "" : ":" + port);
    user = partOf(url.get(), CURLUPART_USER);
    password = partOf(url.get(), CURLUPART_PASSWORD);
    path = partOf(url.get(), CURLUPART_PATH);
    path.erase(0, path.starts_with('/') ? 1 : 0);
    const std::string query = partOf(url.get(), CURLUPART_QUERY, 0);
    for (std::size_t at = 0; at < query.size();) {
        const std::size_t end = std::min(query.find('&', at), query.size());
        const std::string_view word = std::string_view(query).substr(at, end - at);
        const std::size_t equals = std::min(word.find('='), word.size());
        parameters.emplace_back(decoded(word.substr(0, equals)),
                                decoded(word.substr(std::min(equals + 1, word.size()))));
        at = end + 1;
    }
}

httpAddress_t httpAddress_t::at(const std::string &host) const {
    httpAddress_t other = *this;
    const auto portOf = [](std::string_view name) { // where it begins
        const std::size_t port = name.rfind(':');
        return port == name.npos || name.find(']', port) != name.npos || name.substr(port).starts_with("://")
                   ? name.size()
                   : port;
    };
    const std::size_t begin = server.find("//") + 2, port = portOf(server);
    if (!host.empty())
        other.server = server.substr(0, begin) + host + (portOf(host) == host.size() ? server.substr(port) : "");
    return other;
}

struct httpClient_t::connection_t {
    struct releaser_t {
        void operator()(CURL *handle) const { curl().easyCleanup(handle); }
    };
    std::string server;
    std::unique_ptr<CURL, releaser_t> handle;
    char words[CURL_ERROR_SIZE] = "";
};

httpClient_t::httpClient_t(const httpAddress_t &address) : connection_(std::make_unique<connection_t>()) {
    static const CURLcode ready = curl().globalInit(CURL_GLOBAL_DEFAULT);
    connection_->server = address.server;
    connection_->handle.reset(ready == CURLE_OK ? curl().easyInit() : nullptr);
    CURL *const handle = connection_->handle.get();
    if (handle == nullptr)
        throw usageError_t("libcurl can't be used on this system");
    curl().easySetopt(handle, CURLOPT_ERRORBUFFER, connection_->words);
    curl().easySetopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl().easySetopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    curl().easySetopt(handle, CURLOPT_CONNECTTIMEOUT, 10L);
    // A server may think for long, but then something moves again within this time.
    curl().easySetopt(handle, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl().easySetopt(handle, CURLOPT_LOW_SPEED_TIME, 300L);
    curl().easySetopt(handle, CURLOPT_NETRC, static_cast<long>(CURL_NETRC_OPTIONAL));
    if (!address.user.empty())
        curl().easySetopt(handle, CURLOPT_USERNAME, address.user.c_str());
    if (!address.password.empty())
        curl().easySetopt(handle, CURLOPT_PASSWORD, address.password.c_str());
    curl().easySetopt(handle, CURLOPT_WRITEFUNCTION, keep);
}

httpClient_t::~httpClient_t() = default;

httpClient_t::answer_t httpClient_t::post(const parameters_t &parameters, std::string_view body) {
    CURL *const handle = connection_->handle.get();
    std::string url = connection_->server + "/";
    char mark = '?';
    for (const auto &[name, value] : parameters) {
        const curlText_t escaped(curl().easyEscape(handle, value.data(), static_cast<int>(value.size())));
        url.append(1, mark).append(name).append("=").append(escaped ? escaped.get() : "");
        mark = '&';
    }
    answer_t answer;
    curl().easySetopt(handle, CURLOPT_URL, url.c_str());
    curl().easySetopt(handle, CURLOPT_WRITEDATA, &answer);
    curl().easySetopt(handle, CURLOPT_POSTFIELDS, body.data());
    curl().easySetopt(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    connection_->words[0] = '\0';
    const CURLcode code = curl().easyPerform(handle);
    if (code == CURLE_COULDNT_CONNECT)
        throw connectionError_t("nobody answers there");
    if (code != CURLE_OK)
        throw connectionError_t(connection_->words[0] != '\0' ? connection_->words : curl().easyStrerror(code));
    curl().easyGetinfo(handle, CURLINFO_RESPONSE_CODE, &answer.status);
    return answer;
}

} // namespace vek::tool
