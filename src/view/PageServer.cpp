#include "view/PageServer.h"

#include "platform/Platform.h"

#include <utility>

namespace tarnvexo {

namespace {

using MakeServer = PageServer* (*)(ServedPage& page);

PageNotServed Fault(const std::string& reason, const std::string& expected, const std::string& toDo)
{
    return PageNotServed("the page: error: it cannot be served: " + reason + "\n  expected: " + expected +
                         "\n  to do:    " + toDo + "; tarnvexo view --out FILE makes a page that needs no server");
}

#ifdef TARNVEXO_SERVER_IS_LINKED
extern "C" PageServer* MakeHttpPageServer(ServedPage& page);

MakeServer LoadServer()
{
    return MakeHttpPageServer;
}
#else
MakeServer LoadServer()
{
    std::string reason;
    void* const library = platform::LoadPlugin("libtarnvexo_server.so", reason);
    void* const symbol = library == nullptr ? nullptr : platform::PluginSymbol(library, "MakeHttpPageServer");
    if (symbol == nullptr) {
        throw Fault(reason,
                    "libtarnvexo_server.so beside the program or in ../lib/tarnvexo, with libcpp-httplib on the system",
                    "install the package libcpp-httplib0.11");
    }
    return reinterpret_cast<MakeServer>(symbol);
}
#endif

} // namespace

std::unique_ptr<PageServer> StartPageServer(ServedPage page)
{
    static const MakeServer makeServer = LoadServer();
    std::unique_ptr<PageServer> server(makeServer(page));
    const std::string reason = server->Start();
    if (!reason.empty()) {
        throw Fault(reason, "a system that lets programs listen on this machine", "run it where that is allowed");
    }
    return server;
}

} // namespace tarnvexo
