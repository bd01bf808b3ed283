// The written bytes against the format, without a reader of ours in the program: offsets, headers and blocks are taken
// from the file itself. VTK's own reader is tried by tests/export/compare_formats.py.
#include "export/VtuFile.h"

#include "core/Parallel.h"
#include "support/SmallModels.h"

#include <cstring>
#include <gtest/gtest.h>
#include <regex>
#include <zlib.h>

namespace tarnvexo {
namespace {

using test::WrittenBytes;

// Points on a line, one number for each.
VtuGrid LineOfPoints(std::size_t points)
{
    VtuGrid grid;
    grid.points = MakeVtuArray<double, 3>("Points", points, [](std::size_t i, double* out) {
        out[0] = static_cast<double>(i);
        out[1] = out[2] = 0.0;
    });
    grid.connectivity = MakeVtuArray<std::int64_t>("connectivity", 0, [](std::size_t, std::int64_t*) {});
    grid.offsets = MakeVtuArray<std::int64_t>("offsets", 0, [](std::size_t, std::int64_t*) {});
    grid.types = MakeVtuArray<std::uint8_t>("types", 0, [](std::size_t, std::uint8_t*) {});
    grid.pointData.push_back(MakeVtuArray<std::int32_t>(
        "number", points, [](std::size_t i, std::int32_t* out) { *out = static_cast<std::int32_t>(7 * i); }));
    return grid;
}

std::string Written(const VtuGrid& grid)
{
    return WrittenBytes("grid.vtu", [&] { WriteVtu(grid, "grid.vtu"); });
}

// Bytes of an array, uncompressed, as the header in front of its blocks says.
std::string ArrayOf(const std::string& file, const std::string& name)
{
    std::smatch offset;
    const std::regex element("Name=\"" + name + "\"[^>]*offset=\"([0-9]+)\"");
    const std::string head = file.substr(0, file.find("<AppendedData"));
    EXPECT_TRUE(std::regex_search(head, offset, element)) << name;
    std::size_t at = file.find('_', file.find("<AppendedData")) + 1 + std::stoul(offset[1]);
    const auto next = [&] {
        std::uint64_t value;
        std::memcpy(&value, file.substr(at, sizeof value).data(), sizeof value);
        at += sizeof value;
        return value;
    };
    const std::uint64_t blocks = next(), blockSize = next(), lastSize = next();
    std::vector<std::uint64_t> compressed;
    for (std::uint64_t b = 0; b < blocks; ++b) { compressed.push_back(next()); }
    std::string bytes;
    for (std::uint64_t b = 0; b < blocks; ++b) {
        std::string block(b + 1 == blocks && lastSize != 0 ? lastSize : blockSize, '\0');
        uLongf size = block.size();
        EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(block.data()), &size,
                             reinterpret_cast<const Bytef*>(file.data() + at), compressed[b]),
                  Z_OK);
        EXPECT_EQ(size, block.size());
        at += compressed[b];
        bytes += block;
    }
    return bytes;
}

// None, one, a block that is just full, one more, and three full ones: 65536 numbers of 4 bytes are 256 kB.
TEST(VtuFile, HasBlocksThatAddUpToTheArray)
{
    for (const std::size_t points : {0u, 1u, 65535u, 65536u, 65537u, 3u * 65536u}) {
        const std::string file = Written(LineOfPoints(points));
        const std::string numbers = ArrayOf(file, "number"), places = ArrayOf(file, "Points");
        ASSERT_EQ(numbers.size(), points * sizeof(std::int32_t)) << points;
        ASSERT_EQ(places.size(), points * 3 * sizeof(double)) << points;
        for (std::size_t i = 0; i < points; ++i) {
            std::int32_t number;
            double x;
            std::memcpy(&number, numbers.data() + i * sizeof number, sizeof number);
            std::memcpy(&x, places.data() + i * 3 * sizeof x, sizeof x);
            ASSERT_EQ(number, static_cast<std::int32_t>(7 * i)) << points;
            ASSERT_EQ(x, static_cast<double>(i)) << points;
        }
    }
}

TEST(VtuFile, DoesNotDependOnTheNumberOfThreads)
{
    const VtuGrid grid = LineOfPoints(200000);
    SetThreadCount(1);
    const std::string one = Written(grid);
    SetThreadCount(3);
    const std::string three = Written(grid);
    SetThreadCount(0);
    EXPECT_TRUE(one == three);
}

TEST(VtuFile, TellsThatItCannotBeCreated)
{
    EXPECT_EQ(WriteVtu(LineOfPoints(1), "not there/grid.vtu").outcome, FileOutcome::NotCreated);
}

} // namespace
} // namespace tarnvexo
