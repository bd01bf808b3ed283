// view/PageServer.h
// Serves one page and its packet to a browser of this machine. Only the loopback device is listened to, at a port that
// the system chooses; the address holds a random word that other pages do not know, nor other users as long as it
// stands in no command line. A request must name this host (a page of another one cannot reach this server under a name
// of its own) and one of these:
//
//     GET  /WORD/          the page
//     GET  /WORD/packet    the packet
//     POST /WORD/picture   from a page that draws a picture: its PNG
//     POST /WORD/error     the same, a text that says why there is none
//
// Posts are taken only by a server that is there for a picture. All else is refused.
//
// The service (server/HttpPageServer) stands in a library of its own that is loaded when it is first wanted: what it
// needs of the system would make every run begin later, and only `tarnvexo picture` and large results are served. On
// Windows it is linked into the program.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace tarnvexo {

struct ServedPage {
    std::string page;   // HTML
    std::string packet; // compressed
    bool takesPicture = false;
};

constexpr const char* PacketAddress = "packet"; // relative to the page

// What a page has posted.
struct PostedPicture {
    std::string png;
    std::string error; // empty: there is a picture
};

class PageServer {
public:
    virtual ~PageServer() = default; // ends the service

    // Begins the service in threads of its own. Returns why it cannot, or an empty text.
    virtual std::string Start() = 0;

    // "http://127.0.0.1:49152/5f0c.../", once it has been started.
    virtual std::string Address() const = 0;

    // True once a browser has asked for the page.
    virtual bool HasGivenPage() const = 0;

    // Waits at most so long for the first post.
    virtual std::optional<PostedPicture> WaitForPicture(std::chrono::milliseconds most) = 0;
};

// The text is a complete message.
struct PageNotServed : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A server that has been started. Throws PageNotServed when its library cannot be loaded or there is no port.
std::unique_ptr<PageServer> StartPageServer(ServedPage page);

} // namespace tarnvexo
