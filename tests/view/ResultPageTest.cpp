#include "view/ResultPage.h"

#include "view/Gzip.h"
#include "view/ViewerPage.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

constexpr const char* Page = "<body><script>const end = '</body>';</script></body></html>";

TEST(ResultPage, HasThePacketBehindAllElseOfTheBody)
{
    EXPECT_EQ(PageWithPacket(Page, "foobar"),
              "<body><script>const end = '</body>';</script>"
              "<script type=\"application/x-tarnvexo-result\" id=\"result\">Zm9vYmFy</script>\n</body></html>");
}

TEST(ResultPage, ThatIsServedNamesItsPacket)
{
    EXPECT_NE(PageWithPacketAddress(Page, "packet").find(" id=\"result\" data-packet=\"packet\"></script>\n</body>"),
              std::string::npos);
}

TEST(ResultPage, WithoutBodyTagHasThePacketAtItsEnd)
{
    EXPECT_TRUE(PageWithPacket("<p>", "").starts_with("<p><script "));
}

TEST(ViewerPage, OfThisProgramIsAWholePage)
{
    if (CompressedViewerPage().empty()) {
        GTEST_SKIP() << "built without the viewer";
    }
    const std::string page = ViewerPageText();
    EXPECT_NE(page.find("<html"), std::string::npos);
    EXPECT_NE(page.find("</html>"), std::string::npos);
    EXPECT_EQ(page.find(" src=\""), std::string::npos) << "a part of the page is elsewhere";
}

} // namespace
} // namespace tarnvexo
