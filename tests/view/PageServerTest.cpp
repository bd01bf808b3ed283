#include "view/PageServer.h"

#include <gtest/gtest.h>
#include <httplib.h>

namespace tarnvexo {
namespace {

using namespace std::chrono_literals;

// "http://127.0.0.1:49152/5f0c.../" in its parts.
struct Parts {
    std::string host;
    std::string base;

    explicit Parts(const std::string& address)
    {
        const std::size_t hostBegin = address.find("//") + 2;
        const std::size_t hostEnd = address.find('/', hostBegin);
        host = address.substr(hostBegin, hostEnd - hostBegin);
        base = address.substr(hostEnd);
    }
};

class PageServerTest : public testing::Test {
protected:
    explicit PageServerTest(bool takesPicture = false)
        : server(StartPageServer({"<p>page</p>", std::string("\0packet", 7), takesPicture}))
    {
    }

    int Status(const std::string& method, const std::string& path, const std::string& host)
    {
        httplib::Client client("http://" + Parts(server->Address()).host);
        httplib::Request request;
        request.method = method;
        request.path = path;
        request.headers = {{"Host", host}};
        const httplib::Result result = client.send(request);
        return result ? result->status : -1;
    }

    std::string Base() const { return Parts(server->Address()).base; }
    std::string Host() const { return Parts(server->Address()).host; }

    std::unique_ptr<PageServer> server;
};

class PictureServerTest : public PageServerTest {
protected:
    PictureServerTest() : PageServerTest(true) {}
};

TEST_F(PageServerTest, GivesPageAndPacket)
{
    EXPECT_FALSE(server->HasGivenPage());
    httplib::Client client("http://" + Host());
    const httplib::Result page = client.Get(Base());
    ASSERT_TRUE(page);
    EXPECT_TRUE(server->HasGivenPage());
    EXPECT_EQ(page->status, 200);
    EXPECT_EQ(page->body, "<p>page</p>");
    EXPECT_EQ(page->get_header_value("Content-Type"), "text/html; charset=utf-8");
    EXPECT_EQ(page->get_header_value("Referrer-Policy"), "no-referrer"); // the word stays secret
    const httplib::Result packet = client.Get(Base() + PacketAddress);
    ASSERT_TRUE(packet);
    EXPECT_EQ(packet->body, std::string("\0packet", 7));
}

TEST_F(PageServerTest, IsAtALoopbackAddressWithARandomWord)
{
    EXPECT_TRUE(server->Address().starts_with("http://127.0.0.1:"));
    EXPECT_EQ(Base().size(), 34u);
    EXPECT_NE(Parts(StartPageServer({})->Address()).base, Base());
}

TEST_F(PageServerTest, RefusesOtherHosts)
{
    for (const std::string& host :
         {std::string("example.org"), std::string("localhost"), Host() + "0", std::string()}) {
        EXPECT_EQ(Status("GET", Base(), host), 403) << host;
    }
    EXPECT_EQ(Status("GET", Base(), Host()), 200);
}

TEST_F(PageServerTest, RefusesOtherPaths)
{
    for (const std::string& path : {std::string("/"), std::string("/packet"), std::string("/0000/"), Base() + "other",
                                    Base() + "../", Base() + "packet/", Base() + "picture"}) {
        EXPECT_EQ(Status("GET", path, Host()), 404) << path;
    }
}

TEST_F(PageServerTest, TakesNothing)
{
    for (const char* method : {"POST", "PUT", "DELETE", "OPTIONS", "HEAD"}) {
        EXPECT_EQ(Status(method, Base(), Host()), 405) << method;
    }
    EXPECT_EQ(Status("POST", Base() + "picture", Host()), 405);
    EXPECT_FALSE(server->WaitForPicture(0ms));
}

TEST_F(PictureServerTest, TakesTheFirstPictureThatIsPosted)
{
    httplib::Client client("http://" + Host());
    const std::string png("\x89PNG\0\xff", 6);
    ASSERT_TRUE(client.Post(Base() + "picture", png, "image/png"));
    ASSERT_TRUE(client.Post(Base() + "error", "too late", "text/plain"));
    const std::optional<PostedPicture> posted = server->WaitForPicture(10s);
    ASSERT_TRUE(posted);
    EXPECT_EQ(posted->png, png);
    EXPECT_EQ(posted->error, "");
}

TEST_F(PictureServerTest, TakesAnError)
{
    httplib::Client client("http://" + Host());
    ASSERT_TRUE(client.Post(Base() + "error", "no WebGL", "text/plain"));
    const std::optional<PostedPicture> posted = server->WaitForPicture(10s);
    ASSERT_TRUE(posted);
    EXPECT_EQ(posted->error, "no WebGL");
}

TEST_F(PictureServerTest, RefusesPostsElsewhereAndFromOtherHosts)
{
    EXPECT_EQ(Status("POST", Base() + "other", Host()), 404);
    EXPECT_EQ(Status("POST", "/picture", Host()), 404);
    EXPECT_EQ(Status("POST", Base() + "picture", "example.org"), 403);
    EXPECT_FALSE(server->WaitForPicture(0ms));
}

} // namespace
} // namespace tarnvexo
