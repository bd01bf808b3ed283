#include "view/Gzip.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace tarnvexo {
namespace {

// Of several pieces of the work buffers, and hard to compress.
std::string LongText()
{
    std::string text(3500000, '\0');
    unsigned state = 1;
    for (char& c : text) {
        state = state * 1664525u + 1013904223u;
        c = static_cast<char>(state >> 24);
    }
    return text;
}

TEST(Gzip, GivesBackWhatWasCompressed)
{
    for (const std::string& text : {std::string(), std::string("a"), std::string(2000000, 'x'), LongText()}) {
        EXPECT_TRUE(GzipDecompressed(GzipCompressed(text)) == text) << text.size();
    }
}

TEST(Gzip, RefusesTextsThatAreCutOffOrDamaged)
{
    const std::string whole = GzipCompressed("a text that is long enough to be cut");
    EXPECT_THROW(GzipDecompressed(whole.substr(0, whole.size() - 1)), std::runtime_error);
    EXPECT_THROW(GzipDecompressed("no gzip at all"), std::runtime_error);
    std::string damaged = whole;
    damaged[damaged.size() - 6] ^= 1; // of the checksum
    EXPECT_THROW(GzipDecompressed(damaged), std::runtime_error);
}

// The examples of RFC 4648.
} // namespace
} // namespace tarnvexo
