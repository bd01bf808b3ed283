#include "view/PageServer.h"

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

} // namespace

struct PageServer::Service {
    ServedPage content;
    std::string word = RandomWord();
    int port = -1;
    httplib::Server server;
    std::thread thread;
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
        // None: with SO_REUSEPORT, which the library would set, another process could listen at the same port.
        server.set_socket_options([](socket_t) {});
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

PageServer::PageServer(ServedPage page) : service(std::make_unique<Service>())
{
    service->content = std::move(page);
    service->SetUp();
}

PageServer::~PageServer()
{
    if (service->thread.joinable()) {
        service->server.stop();
        service->thread.join();
    }
}

std::string PageServer::Start()
{
    service->port = service->server.bind_to_any_port(Host);
    if (service->port < 0) {
        return "no port of the loopback device (127.0.0.1) can be had";
    }
    service->thread = std::thread([this] { service->server.listen_after_bind(); });
    while (!service->server.is_running()) { std::this_thread::yield(); } // stop() before that would be lost
    return "";
}

std::string PageServer::Address() const
{
    return "http://" + service->HostName() + "/" + service->word + "/";
}

std::optional<PostedPicture> PageServer::WaitForPicture(std::chrono::milliseconds most)
{
    std::unique_lock lock(service->mutex);
    service->isPosted.wait_for(lock, most, [&] { return service->posted.has_value(); });
    return service->posted;
}

} // namespace tarnvexo
