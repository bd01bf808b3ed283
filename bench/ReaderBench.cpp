// Reading a model file of 100,000 nodes and 100,000 four-node shells (a torus), generated in memory.
//   ScanAgainstFscanf   the same formats on the same text, both ways in turn within one run: node and shell records are
//                       scanned into the same kind of tables, nothing else is done. Counters: least time of each over
//                       all iterations in ms, and their ratio.
//   ReadModel           the whole reader, element set-up included, from memory; ns of each number in the text.
//   ReadModelFile       the same from a file that the system holds in its cache.
// Run:  tarnvexo_bench --benchmark_filter=Reader
#include "core/ModelFileFormats.h"
#include "input/FormatScanner.h"
#include "input/ModelFileReader.h"

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace tarnvexo;

constexpr int RingCount = 250;    // around the axis of the torus
constexpr int NodesPerRing = 400; // around the tube
constexpr int RecordCount = RingCount * NodesPerRing;

template <class... Values> void AppendRecord(std::string& text, const char* format, Values... values)
{
    char record[160];
    text.append(record, std::size_t(std::snprintf(record, sizeof record, format, values...)));
}

// Coordinates in mm with nine digits, as pre-processors write them.
const std::string& TorusModel()
{
    static const std::string model = [] {
        const double pi = std::acos(-1.0);
        std::string text = "### Quor_Tarn+Vexo release=3.0 ###\nNumber of materials:NMT=1\n#0:\nE=206000\nMu=0.3\n"
                           "Density=7.85e-09\nNumber of shell thicknesses:NTK=1\n#0:\nTK=12.5\n"
                           "Number of T_beam sections:NTBS=0\nNumber of L_beam sections:NLBS=0\n"
                           "Number of C_beam sections:NCBS=0\n";
        AppendRecord(text, "Number of nodal points:NPOIN=%d\n", RecordCount);
        for (int ring = 0; ring < RingCount; ++ring) {
            for (int i = 0; i < NodesPerRing; ++i) {
                const double phi = 2 * pi * ring / RingCount, theta = 2 * pi * i / NodesPerRing;
                const double radius = 12000.0 + 2500.0 * std::cos(theta);
                AppendRecord(text, "%d:%.9g,%.9g,%.9g\n", ring * NodesPerRing + i, radius * std::cos(phi),
                             radius * std::sin(phi), 2500.0 * std::sin(theta));
            }
        }
        AppendRecord(text, "Number of four-nodes shell elements:NELEM_S_4ND=%d\n", RecordCount);
        for (int ring = 0; ring < RingCount; ++ring) {
            for (int i = 0; i < NodesPerRing; ++i) {
                const int here = ring * NodesPerRing, next = (ring + 1) % RingCount * NodesPerRing;
                const int j = (i + 1) % NodesPerRing;
                AppendRecord(text, "%d:%d,%d,%d,%d[0,0]\n", here + i, here + i, here + j, next + j, next + i);
            }
        }
        text += "Number of three-nodes shell elements:NELEM_S_3ND=0\nNumber of beam elements:NELEM_B=0\n"
                "Number of restricted nodal points:NRN=0\nNumber of forces:NFOR=0\n"
                "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=0\n"
                "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=0\n"
                "Number of distributed loads on beam elements:NDL_B=0\n";
        return text;
    }();
    return model;
}

// From the count of nodes to the last shell.
std::string_view NodesAndQuads()
{
    const std::string_view model = TorusModel();
    const std::size_t begin = model.find("Number of nodal points");
    return model.substr(begin, model.find("Number of three-nodes") - begin);
}

struct Records {
    int nodeCount = 0, quadCount = 0, label = 0;
    std::vector<std::array<double, 3>> nodes = std::vector<std::array<double, 3>>(RecordCount);
    std::vector<std::array<int, 6>> quads = std::vector<std::array<int, 6>>(RecordCount);
};

void ScanWithFormatScanner(std::string_view text, Records& r)
{
    FormatScanner scanner(text);
    scanner.Scan(formats::NodeCount, r.nodeCount);
    for (auto& n : r.nodes) { scanner.Scan<formats::Node>(r.label, n[0], n[1], n[2]); }
    scanner.Scan(formats::QuadCount, r.quadCount);
    for (auto& q : r.quads) {
        scanner.Scan<formats::ElementLabel>(r.label);
        scanner.Scan<formats::Quad>(q[0], q[1], q[2], q[3], q[4], q[5]);
    }
}

// A scan that stores less than it should is a fault of this benchmark.
void Require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

void ScanWithFscanf(std::FILE* file, Records& r)
{
    Require(std::fscanf(file, formats::NodeCount, &r.nodeCount) == 1);
    for (auto& n : r.nodes) { Require(std::fscanf(file, formats::Node, &r.label, &n[0], &n[1], &n[2]) == 4); }
    Require(std::fscanf(file, formats::QuadCount, &r.quadCount) == 1);
    for (auto& q : r.quads) {
        Require(std::fscanf(file, formats::ElementLabel, &r.label) == 1);
        Require(std::fscanf(file, formats::Quad, &q[0], &q[1], &q[2], &q[3], &q[4], &q[5]) == 6);
    }
}

// Processor time: other programs on the machine do not count.
template <class Work> double Milliseconds(const Work& work)
{
    const std::clock_t start = std::clock();
    work();
    return 1e3 * double(std::clock() - start) / CLOCKS_PER_SEC;
}

void ReaderScanAgainstFscanf(benchmark::State& state)
{
    const std::string_view text = NodesAndQuads();
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), std::fclose);
    Require(file && std::fwrite(text.data(), 1, text.size(), file.get()) == text.size());
    Records ours, library;
    double least = std::numeric_limits<double>::infinity(), leastLibrary = least;
    for (auto _ : state) {
        std::rewind(file.get());
        leastLibrary = std::min(leastLibrary, Milliseconds([&] { ScanWithFscanf(file.get(), library); }));
        least = std::min(least, Milliseconds([&] { ScanWithFormatScanner(text, ours); }));
    }
    Require(ours.nodes == library.nodes && ours.quads == library.quads);
    state.counters["fscanf_ms"] = leastLibrary;
    state.counters["scanner_ms"] = least;
    state.counters["ratio"] = leastLibrary / least;
    state.counters["MB"] = double(text.size()) / 1e6;
}
BENCHMARK(ReaderScanAgainstFscanf)->Iterations(10)->Unit(benchmark::kMillisecond);

void CountReading(benchmark::State& state)
{
    constexpr double numbers = RecordCount * (4.0 + 7.0); // of a node and of a shell
    state.SetBytesProcessed(state.iterations() * std::int64_t(TorusModel().size()));
    state.counters["numbers"] =
        benchmark::Counter(numbers, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters["nodes"] = RecordCount;
    state.counters["quads"] = RecordCount;
}

void ReaderReadModel(benchmark::State& state)
{
    const std::string& text = TorusModel();
    for (auto _ : state) {
        ModelStore model;
        const ModelReading reading = ReadModelText(model, text, "fem_solving.txt");
        Require(reading.end == ModelReading::End::Complete && reading.warnings.empty());
        benchmark::DoNotOptimize(model.QuadElements.data());
    }
    CountReading(state);
}
BENCHMARK(ReaderReadModel)->Unit(benchmark::kMillisecond);

void ReaderReadModelFile(benchmark::State& state)
{
    const std::string name = (std::filesystem::temp_directory_path() / "tarnvexo_reader_bench.txt").string();
    std::ofstream(name, std::ios::binary) << TorusModel();
    for (auto _ : state) {
        ModelStore model;
        ReadModelFile(model, name.c_str());
        benchmark::DoNotOptimize(model.QuadElements.data());
    }
    std::filesystem::remove(name);
    CountReading(state);
}
BENCHMARK(ReaderReadModelFile)->Unit(benchmark::kMillisecond);

} // namespace
