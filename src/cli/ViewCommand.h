// cli/ViewCommand.h
// `tarnvexo view`: makes a page that shows a result and opens it in the user's browser.
//
// The page of a small result is a file. Without a name of the user's it stands among the files that the user's programs
// can make again (platform::UserCacheDirectory), which only the user may enter; those older than a day are removed. A
// large result is too much for one file: page and packet are served to this machine until the user interrupts.
#pragma once

#include "cli/CommandParser.h"
#include "view/PageServer.h"

#include <cstddef>
#include <memory>
#include <string>

namespace tarnvexo {

// Bytes of a compressed packet that a page holds at most.
constexpr std::size_t LargestPacketInPage = std::size_t(40) << 20;

// page: the viewer without a result; empty: the program has none, which is refused. Returns the exit code; throws
// RunFailure.
int RunViewCommand(const ViewCommand& command, const std::string& page,
                   std::size_t largestInPage = LargestPacketInPage);

// "file:///home/me/a%20page.html"
std::string FileAddress(const std::string& file);

// A file that leads a browser to the address of a server, and returns its own. Every user of the machine sees with
// which words a browser was started, but only this one may read what stands in a private directory.
std::string WriteStartPage(const std::string& file, const std::string& address);

// Throws RunFailure where that cannot be.
std::unique_ptr<PageServer> ServeOnThisMachine(ServedPage page);

// Throws RunFailure when there is no page.
void RequireViewer(const std::string& page, const char* command);

} // namespace tarnvexo
