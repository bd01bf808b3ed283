#include "view/ResultPage.h"

#include "core/Base64.h"
#include "view/Gzip.h"
#include "view/ViewerPage.h"

namespace tarnvexo {

namespace {

// Behind all that the body holds: the viewer's scripts run when the page has been read to its end. Its texts may speak
// of "</body>", but none stands behind the tag itself.
std::string WithElement(std::string_view page, std::string_view element)
{
    const std::size_t bodyEnd = page.rfind("</body>");
    const std::size_t place = bodyEnd == std::string_view::npos ? page.size() : bodyEnd;
    std::string whole;
    whole.reserve(page.size() + element.size());
    whole += page.substr(0, place);
    whole += element;
    whole += page.substr(place);
    return whole;
}

constexpr std::string_view ElementBegin = "<script type=\"application/x-tarnvexo-result\" id=\"result\"";

} // namespace

std::string ViewerPageText()
{
    const std::string_view page = CompressedViewerPage();
    return page.empty() ? std::string() : GzipDecompressed(page);
}

std::string PageWithPacket(std::string_view page, std::string_view packet)
{
    std::string element(ElementBegin);
    element += ">" + Base64(packet) + "</script>\n";
    return WithElement(page, element);
}

std::string PageWithPacketAddress(std::string_view page, std::string_view address)
{
    std::string element(ElementBegin);
    element += " data-packet=\"";
    element += address;
    element += "\"></script>\n";
    return WithElement(page, element);
}

} // namespace tarnvexo
