#include "output/RangeWriter.h"

#include "core/Parallel.h"
#include "output/ContourFile.h"
#include "output/DxfDrawing.h"
#include "output/NodalAveraging.h"
#include "output/NodalDisplacementFile.h"
#include "output/ShellStressFiles.h"
#include "output/ShellStressRecovery.h"
#include "support/TemporaryDirectory.h"

#include <chrono>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

namespace tarnvexo {
namespace {

using test::TemporaryDirectory;

// So many threads for loops while the object lives.
class Threads {
public:
    explicit Threads(int count) { SetThreadCount(count); }
    ~Threads() { SetThreadCount(0); }
};

std::string FileText(const char* name)
{
    std::ifstream file(name);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void WriteNumbers(TextWriter& text, std::size_t begin, std::size_t end)
{
    for (std::size_t i = begin; i < end; ++i) { text.Integer(static_cast<long long>(i)).EndLine(); }
}

std::string NumbersBelow(std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i) { text += std::to_string(i) + "\n"; }
    return text;
}

TEST(RangeWriter, WritesRangesInOrderBetweenWhatStandsBeforeAndBehindThem)
{
    const TemporaryDirectory directory;
    for (const int threads : {1, 2, 5}) {
        const Threads use(threads);
        for (const std::size_t count : {0, 1, 9, 10, 11, 1000}) {
            TextFile file;
            ASSERT_TRUE(file.Open("table.txt"));
            file.Text().Text("before\n");
            WriteRanges(file, count, 10, WriteNumbers);
            file.Text().Text("behind\n");
            const FileResult result = file.Close();
            const std::string text = FileText("table.txt");
            EXPECT_EQ(text, "before\n" + NumbersBelow(count) + "behind\n") << threads << " threads, " << count;
            EXPECT_EQ(result.bytes, std::filesystem::file_size("table.txt"));
        }
    }
}

// The first range is the slowest: all others have to wait for it.
TEST(RangeWriter, KeepsTheOrderWhenAnEarlyRangeTakesLong)
{
    const TemporaryDirectory directory;
    const Threads use(5);
    TextFile file;
    ASSERT_TRUE(file.Open("table.txt"));
    WriteRanges(file, 100, 1, [](TextWriter& text, std::size_t begin, std::size_t end) {
        if (begin == 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        WriteNumbers(text, begin, end);
    });
    file.Close();
    EXPECT_EQ(FileText("table.txt"), NumbersBelow(100));
}

TEST(RangeWriter, TakesRangesOfAnyLengthWithoutText)
{
    const TemporaryDirectory directory;
    const Threads use(5);
    TextFile file;
    ASSERT_TRUE(file.Open("table.txt"));
    const std::string megabytes(3 << 20, 'x'); // more than a thread's buffer
    WriteRanges(file, 9, 1, [&](TextWriter& text, std::size_t begin, std::size_t) {
        if (begin % 2 == 1) {
            WriteNumbers(text, begin, begin + 1);
            if (begin < 5) {
                text.Text(megabytes).EndLine();
            }
        }
    });
    file.Close();
    EXPECT_TRUE(FileText("table.txt") == "1\n" + megabytes + "\n3\n" + megabytes + "\n5\n7\n");
}

TEST(RangeWriter, HandsOnTheExceptionOfARange)
{
    const TemporaryDirectory directory;
    for (const int threads : {1, 2, 5}) {
        const Threads use(threads);
        TextFile file;
        ASSERT_TRUE(file.Open("table.txt"));
        EXPECT_THROW(WriteRanges(file, 100, 1,
                                 [](TextWriter& text, std::size_t begin, std::size_t end) {
                                     WriteNumbers(text, begin, end);
                                     if (begin <= 50 && 50 < end) {
                                         throw std::runtime_error("range 50");
                                     }
                                 }),
                     std::runtime_error);
        file.Close();
        EXPECT_EQ(NumbersBelow(100).find(FileText("table.txt")), 0u) << threads;
    }
}

// ------------------------------------------------------------ the result files

// A wavy grid of quads, cut triangles beside them and a few beams, with any displacements: several ranges of each.
ModelStore LargeModel()
{
    std::mt19937_64 generator(3);
    std::normal_distribution<double> distribution(0.0, 1e-3);
    const auto random = [&] { return distribution(generator); };
    constexpr int side = 70;
    ModelStore model;
    for (int i = 0; i <= side; ++i) {
        for (int j = 0; j <= side; ++j) {
            model.NodeCoordinates.push_back({0.1 * i, 0.1 * j, 0.02 * std::sin(0.3 * i) + random()});
        }
    }
    const auto setUp = [&](auto& element, const auto& nodes) {
        for (std::size_t k = 0; k < nodes.size(); ++k) { element.coordinates[k] = model.NodeCoordinates[nodes[k]]; }
        element.E = 2e11;
        element.Mu = 0.3;
        element.thickness = 0.01;
        element.axes[0] = Normalised(element.coordinates[1] - element.coordinates[0]);
        element.axes[2] = Normalised(Cross(element.axes[0], element.coordinates[2] - element.coordinates[0]));
        element.axes[1] = Cross(element.axes[2], element.axes[0]);
    };
    for (int i = 0; i < side; ++i) {
        for (int j = 0; j < side; ++j) {
            const int n = i * (side + 1) + j;
            if (j % 3 == 0) {
                for (const auto& nodes : {std::array{n, n + side + 1, n + 1}, {n + 1, n + side + 1, n + side + 2}}) {
                    model.TriConnectivity.push_back(nodes);
                    setUp(model.TriElements.emplace_back(), nodes);
                }
            } else {
                model.QuadConnectivity.push_back({n, n + side + 1, n + side + 2, n + 1});
                setUp(model.QuadElements.emplace_back(), model.QuadConnectivity.back());
            }
        }
    }
    model.NPOIN = static_cast<int>(model.NodeCoordinates.size());
    model.NELEM_S_4ND = static_cast<int>(model.QuadElements.size());
    model.NELEM_S_3ND = static_cast<int>(model.TriElements.size());
    for (int d = 0; d < DofsPerNode * model.NPOIN; ++d) { model.GlobalDisplacement.push_back(random()); }

    model.NELEM_B = 11;
    for (int b = 0; b < model.NELEM_B; ++b) {
        model.BeamConnectivity.push_back({b, b + 1});
        BeamSectionModel section;
        for (int n = 0; n < 4 + b; ++n) {
            section.nodes.push_back({random(), random(), random()});
            for (int k = 0; k < DofsPerNode; ++k) { section.displacements.push_back(random()); }
        }
        section.averaged.resize(section.nodes.size());
        for (auto& stress : section.averaged) { stress.positiveFace[SX] = random(); }
        section.patches.resize(3);
        for (SectionPatch& patch : section.patches) {
            for (int k = 0; k < QuadNodeCount; ++k) { patch.nodes[k] = k; }
        }
        model.BeamStressRecords.push_back(section);
    }
    return model;
}

void WriteAllFiles(const ModelStore& model)
{
    WriteStructureDrawing(model, "0");
    WriteNodalDisplacements(model, "1");
    WriteDeformedDrawing(model, "2");
    WriteShellStresses(model, "3");
    WriteAveragedShellStresses(model, "4");
    WriteContourFile(model, "5");
}

TEST(ResultFiles, HaveTheSameBytesForAnyNumberOfThreads)
{
    const TemporaryDirectory directory;
    const char* const names[] = {"0", "1", "2", "3", "4", "5"};
    std::string expected[6];
    for (const int threads : {1, 2, 5}) {
        const Threads use(threads);
        ModelStore model = LargeModel();
        RecoverShellStresses(model);
        AverageShellStresses(model);
        WriteAllFiles(model);
        for (int f = 0; f < 6; ++f) {
            const std::string text = FileText(names[f]);
            if (threads == 1) {
                expected[f] = text;
                EXPECT_GT(text.size(), 100000u) << names[f];
            }
            EXPECT_TRUE(text == expected[f]) << "file " << names[f] << ", " << threads << " threads";
        }
    }
}

TEST(ShellStresses, AreTheSameToTheLastBitForAnyNumberOfThreads)
{
    const auto stresses = [](int threads) {
        const Threads use(threads);
        ModelStore model = LargeModel();
        RecoverShellStresses(model);
        AverageShellStresses(model);
        std::vector<double> values;
        const auto append = [&](const auto& face) {
            values.insert(values.end(), &face[0][0], &face[0][0] + sizeof face / sizeof(double));
        };
        const auto appendAll = [&](const auto& elements) {
            for (const auto& element : elements) {
                append(element.positiveFace);
                append(element.negativeFace);
                append(element.averagedPositiveFace);
                append(element.averagedNegativeFace);
            }
        };
        appendAll(model.QuadElements);
        appendAll(model.TriElements);
        return values;
    };
    const std::vector<double> expected = stresses(1);
    for (const int threads : {2, 5}) {
        const std::vector<double> found = stresses(threads);
        ASSERT_EQ(found.size(), expected.size());
        EXPECT_EQ(std::memcmp(found.data(), expected.data(), found.size() * sizeof(double)), 0) << threads;
    }
}

TEST(ResultFiles, OnAFullDiskAreIncompleteForAnyNumberOfThreads)
{
    for (const int threads : {1, 2, 5}) {
        SetThreadCount(threads);
        const FileResult file = WriteContourFile(LargeModel(), "/dev/full");
        EXPECT_EQ(file.outcome, FileOutcome::Incomplete);
        EXPECT_EQ(file.bytes, 0u);
        EXPECT_EQ(file.reason, "No space left on device");
    }
    SetThreadCount(0);
}

} // namespace
} // namespace tarnvexo
