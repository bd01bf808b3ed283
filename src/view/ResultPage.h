// view/ResultPage.h
// One HTML file that shows one result: the viewer's page with a packet (view/ResultPacket) inside, or with the address
// of one that is served beside it (view/PageServer).
#pragma once

#include <string>
#include <string_view>

namespace tarnvexo {

// The viewer's page without a result; empty: the program was built without the viewer.
std::string ViewerPageText();

// The page with a compressed packet inside.
std::string PageWithPacket(std::string_view page, std::string_view packet);

// The page that fetches the packet from an address, relative to its own.
std::string PageWithPacketAddress(std::string_view page, std::string_view address);

} // namespace tarnvexo
