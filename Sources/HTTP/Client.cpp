#include "HTTP/Client.h"

#include <curl/curl.h>

#include <cerrno>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <optional>

namespace http {

namespace {

using Milliseconds = std::chrono::milliseconds;
using SteadyClock = std::chrono::steady_clock;
using Kind = Error::Kind;

/// Ends one of libcurl's objects.
template <auto Function>
struct CleanUp {
    template <typename Handle>
    void operator()(Handle* handle) const {
        Function(handle);
    }
};

using Easy = std::unique_ptr<CURL, CleanUp<curl_easy_cleanup>>;
using Multi = std::unique_ptr<CURLM, CleanUp<curl_multi_cleanup>>;
using HeaderList = std::unique_ptr<curl_slist, CleanUp<curl_slist_free_all>>;

template <typename Handle>
Handle made(Handle handle) {
    if (!handle) {
        throw std::bad_alloc();
    }
    return handle;
}

void prepareLibrary() {
    static const CURLcode prepared = curl_global_init(CURL_GLOBAL_DEFAULT);
    if (prepared != CURLE_OK) {
        throw Error(Kind::other, curl_easy_strerror(prepared));
    }
}

bool isSecure(const std::string& url) {
    constexpr std::string_view scheme = "https://";
    return curl_strnequal(url.c_str(), scheme.data(), scheme.size()) != 0;
}

HeaderList headerList(const Request& request) {
    HeaderList list;
    const auto add = [&list](const std::string& line) {
        if (line.find_first_of(std::string_view("\r\n\0", 3)) != std::string::npos) {
            throw Error(Kind::other, "A header of the request holds a line break.");
        }
        curl_slist* longer = made(curl_slist_append(list.get(), line.c_str()));
        static_cast<void>(list.release()); // Now the tail, or the whole, of `longer`.
        list.reset(longer);
    };
    for (const auto& [name, value] : request.headers) {
        add(std::string(name).append(": ").append(value));
    }
    add("Expect:"); // No waiting for leave to send a long body.
    return list;
}

Error errorFrom(CURLcode code, CURL* easy) {
    switch (code) {
    case CURLE_URL_MALFORMAT:
        return {Kind::badURL, "The server’s address isn’t a valid URL."};
    case CURLE_COULDNT_RESOLVE_HOST:
        return {Kind::cannotFindHost, "A server with this name couldn’t be found."};
    case CURLE_COULDNT_RESOLVE_PROXY:
        return {Kind::dnsLookupFailed, "The proxy’s name couldn’t be found."};
    case CURLE_COULDNT_CONNECT: {
        long number = 0;
        curl_easy_getinfo(easy, CURLINFO_OS_ERRNO, &number);
        if (number == ENETUNREACH) {
            return {Kind::notConnectedToInternet, "There is no connection to the internet."};
        }
        return {Kind::cannotConnectToHost, "The server couldn’t be reached."};
    }
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
        return {Kind::networkConnectionLost, "The connection to the server was lost."};
    case CURLE_OPERATION_TIMEDOUT:
        return {Kind::timedOut, "The server took too long to answer."};
    case CURLE_PEER_FAILED_VERIFICATION:
        return {Kind::serverCertificateUntrusted, "The server’s certificate isn’t trusted, so nothing was sent."};
    case CURLE_SSL_CONNECT_ERROR:
        return {Kind::secureConnectionFailed, "A secure connection to the server couldn’t be made."};
    // HTTP/0.9, which is to say any bytes, or another protocol behind an upgrade.
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_WEIRD_SERVER_REPLY:
        return {Kind::notHTTP, "The server doesn’t answer in HTTP."};
    default:
        return {Kind::other, curl_easy_strerror(code)};
    }
}

/// One request under way.
class Exchange {
public:
    Exchange(const Request& request, const Receiver& receiver)
        : easy_(made(Easy(curl_easy_init()))), multi_(made(Multi(curl_multi_init()))), headers_(headerList(request)),
          receiver_(receiver), longestStill_(request.timeout), mayRedirect_(request.mostRedirects > 0) {
        set(CURLOPT_URL, request.url.c_str());
        set(CURLOPT_PROTOCOLS_STR, "http,https");
        if (request.method == "GET" && request.body.empty()) {
            set(CURLOPT_HTTPGET, 1L);
        } else {
            set(CURLOPT_CUSTOMREQUEST, request.method.c_str());
            set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body.size()));
            set(CURLOPT_POSTFIELDS, request.body.c_str());
        }
        set(CURLOPT_HTTPHEADER, headers_.get());
        set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L); // Those of a proxy are not the response's.
        set(CURLOPT_HEADERFUNCTION, &Exchange::receive<&Exchange::addLine>);
        set(CURLOPT_HEADERDATA, this);
        set(CURLOPT_WRITEFUNCTION, &Exchange::receive<&Exchange::addBytes>);
        set(CURLOPT_WRITEDATA, this);
        set(CURLOPT_TIMEOUT_MS, static_cast<long>(request.overallTimeout.value_or(Milliseconds(0)).count()));
        set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(request.timeout.count()));
        set(CURLOPT_NOSIGNAL, 1L);
        set(CURLOPT_QUICK_EXIT, 1L); // A name that is still being looked up must not hold up the end.
        if (!request.usesProxy) {
            set(CURLOPT_PROXY, "");
        }
        if (const char* authorities = std::getenv("SSL_CERT_FILE"); authorities != nullptr && *authorities != '\0') {
            set(CURLOPT_CAINFO, authorities);
        }
        if (curl_multi_add_handle(multi_.get(), easy_.get()) != CURLM_OK) {
            throw std::bad_alloc();
        }
    }

    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    ~Exchange() { curl_multi_remove_handle(multi_.get(), easy_.get()); }

    /// Waits for the response; gives its status. Throws as `send`.
    int finish(const std::stop_token& stop) {
        const std::stop_callback wake(stop, [this] { curl_multi_wakeup(multi_.get()); });
        auto lastMove = SteadyClock::now();
        curl_off_t moved = -1;
        while (!stop.stop_requested()) {
            int running = 0;
            check(curl_multi_perform(multi_.get(), &running));
            if (running == 0) {
                return result();
            }
            if (const curl_off_t total = bytesMoved(); total != moved) {
                moved = total;
                lastMove = SteadyClock::now();
            }
            const auto left = std::chrono::ceil<Milliseconds>(lastMove + longestStill_ - SteadyClock::now());
            if (left.count() <= 0) {
                throw errorFrom(CURLE_OPERATION_TIMEDOUT, easy_.get());
            }
            // libcurl wakes up earlier where it has time-outs of its own.
            check(curl_multi_poll(multi_.get(), nullptr, 0, static_cast<int>(left.count()), nullptr));
        }
        throw Cancellation();
    }

    /// Where the response that has been received says to go on; nothing for one that has been given to the receiver.
    [[nodiscard]] std::optional<std::string> redirection() const {
        const char* target = nullptr;
        curl_easy_getinfo(easy_.get(), CURLINFO_REDIRECT_URL, &target);
        return isHeldBack() && target != nullptr ? std::optional<std::string>(target) : std::nullopt;
    }

private:
    template <typename Value>
    void set(CURLoption option, Value value) {
        if (const CURLcode code = curl_easy_setopt(easy_.get(), option, value); code != CURLE_OK) {
            throw Error(Kind::other, curl_easy_strerror(code));
        }
    }

    static void check(CURLMcode code) {
        if (code != CURLM_OK) {
            throw Error(Kind::other, curl_multi_strerror(code));
        }
    }

    int result() {
        int left = 0;
        const CURLMsg* message = curl_multi_info_read(multi_.get(), &left);
        const CURLcode code = message == nullptr ? CURLE_FAILED_INIT : message->data.result;
        if (thrown_) {
            std::rethrow_exception(thrown_);
        }
        if (code != CURLE_OK) {
            throw errorFrom(code, easy_.get());
        }
        if (!headEnded_) { // Which libcurl lets pass.
            throw errorFrom(CURLE_PARTIAL_FILE, easy_.get());
        }
        return status();
    }

    [[nodiscard]] int status() const {
        long status = 0;
        curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
        return static_cast<int>(status);
    }

    /// Whether the response may only say where to go on.
    [[nodiscard]] bool isHeldBack() const { return mayRedirect_ && status() / 100 == 3; }

    [[nodiscard]] curl_off_t bytesMoved() const {
        curl_off_t sent = 0;
        curl_easy_getinfo(easy_.get(), CURLINFO_SIZE_UPLOAD_T, &sent);
        return sent + static_cast<curl_off_t>(headSize_ + received_);
    }

    void addLine(std::string_view line) {
        headSize_ += line.size();
        if (headSize_ > longestHead) {
            throw Error(Kind::headTooLong, "The server’s headers are too long.");
        }
        if (line.starts_with("HTTP/")) {
            headEnded_ = false;
        } else if ((line == "\r\n" || line == "\n") && !headEnded_) { // Not those that may follow the body.
            headEnded_ = true;
            if (status() >= 200 && !isHeldBack()) { // One more head follows "100 Continue".
                receiver_.head(status());
            }
        }
    }

    void addBytes(std::string_view bytes) {
        const bool isTaken = !isHeldBack();
        const std::uint64_t room = receiver_.longest - received_;
        for (std::string_view rest = bytes.substr(0, room); !rest.empty();) {
            const std::string_view next = rest.substr(0, progressStep - received_ % progressStep);
            rest.remove_prefix(next.size());
            if (isTaken) {
                receiver_.body(next);
            }
            received_ += next.size();
            if (isTaken && received_ % progressStep == 0) {
                receiver_.progress(received_);
            }
        }
        if (bytes.size() > room) {
            throw Error(Kind::bodyTooLong, "The server’s answer is too long.");
        }
    }

    /// What is called by libcurl, through which no exception may pass.
    template <void (Exchange::*Add)(std::string_view)>
    static std::size_t receive(const char* bytes, std::size_t /*one*/, std::size_t size, void* self) {
        auto& exchange = *static_cast<Exchange*>(self);
        try {
            (exchange.*Add)({bytes, size});
            return size;
        } catch (...) {
            exchange.thrown_ = std::current_exception();
            return size + 1; // Any other count than `size` ends the exchange, also where that is 0.
        }
    }

    /// Bytes. Below what libcurl would take for a broken connection.
    static constexpr std::size_t longestHead = 256UL * 1024;

    Easy easy_;
    Multi multi_;
    HeaderList headers_;
    const Receiver& receiver_;
    Milliseconds longestStill_;
    bool mayRedirect_;
    std::size_t headSize_ = 0;
    bool headEnded_ = false;
    /// Bytes of the body.
    std::uint64_t received_ = 0;
    /// Why the receiver takes no more.
    std::exception_ptr thrown_;
};

} // namespace

int send(const Request& request, const Receiver& receiver, const std::stop_token& stop) {
    prepareLibrary();
    Request next = request;
    while (true) {
        Exchange exchange(next, receiver);
        const int status = exchange.finish(stop);
        const auto target = exchange.redirection();
        if (!target || !isSecure(next.url) || !isSecure(*target) || next.method != "GET") {
            if (next.mostRedirects > 0 && status / 100 == 3) {
                receiver.head(status); // Held back until now.
            }
            return status;
        }
        next.url = *target;
        next.headers.clear();
        --next.mostRedirects;
    }
}

} // namespace http
