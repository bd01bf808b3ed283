// view/PageServer.h
// Serves one page and its packet to a browser of this machine. Only the loopback device is listened to, at a port that
// the system chooses; the address holds a random word that other pages do not know, nor other users where the system
// hides the browser's command line from them. A request must name this host (a page of another one cannot reach this
// server under a name of its own) and one of these:
//
//     GET  /WORD/          the page
//     GET  /WORD/packet    the packet
//     POST /WORD/picture   from a page that draws a picture: its PNG
//     POST /WORD/error     the same, a text that says why there is none
//
// Posts are taken only by a server that is there for a picture. All else is refused.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
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
    explicit PageServer(ServedPage page);
    ~PageServer(); // ends the service

    PageServer(const PageServer&) = delete;
    PageServer& operator=(const PageServer&) = delete;

    // Begins the service in threads of its own. Returns why it cannot, or an empty text.
    std::string Start();

    // "http://127.0.0.1:49152/5f0c.../", once it has been started.
    std::string Address() const;

    // Waits at most so long for the first post.
    std::optional<PostedPicture> WaitForPicture(std::chrono::milliseconds most);

private:
    struct Service;
    std::unique_ptr<Service> service;
};

} // namespace tarnvexo
