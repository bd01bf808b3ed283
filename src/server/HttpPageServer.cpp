// The service of view/PageServer.h by cpp-httplib, as a library that is loaded at run time.
#include "view/PageServer.h"

#include <atomic>
#include <condition_variable>
#include <httplib.h>
#include <mutex>
#include <random>
#include <thread>
#include <utility>

namespace tarnvexo {

namespace {

constexpr const char* Host = "127.0.0.1";
constexpr std::size_t ServerThreads = 4;
constexpr std::size_t LargestPost = std::size_t(256) << 20; // bytes

enum HttpStatus { Forbidden = 403, NotFound = 404, MethodNotAllowed = 405 };

// 128 bits from the system, as 32 hexadecimal digits.
std::string RandomWord()
{
    constexpr char digits[] = "0123456789abcdef";
    std::random_device device;
    std::uniform_int_distribution<int> digit(0, 15);
    std::string word;
    for (int i = 0; i < 32; ++i) { word += digits[digit(device)]; }
    return word;
}

class HttpPageServer final : public PageServer {
public:
    explicit HttpPageServer(ServedPage page) : content(std::move(page)) { SetUp(); }

    ~HttpPageServer() override
    {
        if (thread.joinable()) {
            server.stop();
            thread.join();
        }
    }

    HttpPageServer(const HttpPageServer&) = delete;
    HttpPageServer& operator=(const HttpPageServer&) = delete;

    std::string Start() override
    {
        port = server.bind_to_any_port(Host);
        if (port < 0) {
            return "no port of the loopback device (127.0.0.1) can be had";
        }
        thread = std::thread([this] { server.listen_after_bind(); });
        while (!server.is_running()) { std::this_thread::yield(); } // stop() before that would be lost
        return "";
    }

    std::string Address() const override { return "http://" + HostName() + "/" + word + "/"; }

    bool HasGivenPage() const override { return pageIsGiven; }

    std::optional<PostedPicture> WaitForPicture(std::chrono::milliseconds most) override
    {
        std::unique_lock lock(mutex);
        isPosted.wait_for(lock, most, [&] { return posted.has_value(); });
        return posted;
    }

private:
    const ServedPage content;
    const std::string word = RandomWord();
    int port = -1;
    httplib::Server server;
    std::thread thread;
    std::atomic<bool> pageIsGiven = false;
    std::mutex mutex; // of posted
    std::condition_variable isPosted;
    std::optional<PostedPicture> posted;

    std::string HostName() const { return std::string(Host) + ":" + std::to_string(port); }

    // 0: the request may be answered.
    int Refusal(const httplib::Request& request) const
    {
        if (request.get_header_value("Host") != HostName()) {
            return Forbidden;
        }
        const bool isGet = request.method == "GET";
        if (!isGet && !(content.takesPicture && request.method == "POST")) {
            return MethodNotAllowed;
        }
        const std::string base = "/" + word + "/";
        const std::string& path = request.path;
        const bool isThere =
            isGet ? path == base || path == base + PacketAddress : path == base + "picture" || path == base + "error";
        return isThere ? 0 : NotFound;
    }

    void Post(PostedPicture picture)
    {
        const std::lock_guard lock(mutex);
        if (!posted) {
            posted = std::move(picture);
        }
        isPosted.notify_all();
    }

    // The texts are not copied for every request.
    static void Answer(const std::string& text, const char* type, httplib::Response& response)
    {
        response.set_content_provider(text.size(), type,
                                      [&text](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
                                          return sink.write(text.data() + offset, length);
                                      });
    }

    void SetUp()
    {
        using httplib::Request;
        using httplib::Response;
        // No other process may listen at the same port: with SO_REUSEPORT, which the library would set, one could, and
        // on Windows unless the socket forbids it.
        server.set_socket_options([]([[maybe_unused]] socket_t socket) {
#ifdef SO_EXCLUSIVEADDRUSE
            const int on = 1;
            setsockopt(socket, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&on), sizeof on);
#endif
        });
        server.new_task_queue = [] { return new httplib::ThreadPool(ServerThreads); };
        server.set_payload_max_length(LargestPost);
        server.set_default_headers(
            {{"Cache-Control", "no-store"}, {"Referrer-Policy", "no-referrer"}, {"X-Content-Type-Options", "nosniff"}});
        server.set_pre_routing_handler([this](const Request& request, Response& response) {
            const int refusal = Refusal(request);
            if (refusal == 0) {
                return httplib::Server::HandlerResponse::Unhandled;
            }
            response.status = refusal;
            return httplib::Server::HandlerResponse::Handled;
        });
        const std::string base = "/" + word + "/";
        server.Get(base, [this](const Request&, Response& response) {
            pageIsGiven = true;
            Answer(content.page, "text/html; charset=utf-8", response);
        });
        server.Get(base + PacketAddress, [this](const Request&, Response& response) {
            Answer(content.packet, "application/octet-stream", response);
        });
        server.Post(base + "picture", [this](const Request& request, Response&) { Post({request.body, ""}); });
        server.Post(base + "error", [this](const Request& request, Response&) {
            Post({"", request.body.empty() ? "the page did not say why" : request.body});
        });
    }
};

} // namespace

extern "C" PageServer* MakeHttpPageServer(ServedPage& page)
{
    return new HttpPageServer(std::move(page));
}

} // namespace tarnvexo
