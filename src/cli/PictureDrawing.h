// cli/PictureDrawing.h
// Pictures of a result by the viewer in a browser without a window. The page is served to that browser alone
// (view/PageServer); it draws what its address says and posts the picture.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace tarnvexo {

// How long a browser is waited for, from its start on.
struct PicturePatience {
    std::chrono::milliseconds untilAsked = std::chrono::seconds(60); // for the page: a program that is none never does
    std::chrono::milliseconds untilDrawn = std::chrono::seconds(120);
};

struct PictureRequest {
    std::string state; // of the view, as the address of the page has it
    int width = 1600;  // pixels
    int height = 1000;
};

// The browser that draws: TARNVEXO_BROWSER, or the first of the usual names. Throws RunFailure (file error) where there
// is none.
std::string FindPictureBrowser();

// The bytes of a PNG file for each request. page: the viewer's; packet: compressed. Throws RunFailure: file error for a
// browser that cannot be started, numerical failure for a page that could not draw. Whatever happens, the browser and
// what it kept are gone.
std::vector<std::string> DrawPictures(const std::vector<PictureRequest>& requests, const std::string& page,
                                      const std::string& packet, const std::string& browser,
                                      const PicturePatience& patience = {});

} // namespace tarnvexo
