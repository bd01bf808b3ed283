// view/ViewerPage.h
// The page of viewer/, put into the program when it is built (cmake/ViewerPage.cmake).
#pragma once

#include <string_view>

namespace tarnvexo {

// gzip; empty: the program was built without the viewer.
std::string_view CompressedViewerPage();

} // namespace tarnvexo
