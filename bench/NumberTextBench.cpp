// Writing result tables: fields of 15 columns as a stress or displacement file has them, with an output stream and
// with TextWriter, to a file and to memory. Compare within one run:
//     tarnvexo_bench --benchmark_filter=NumberText --benchmark_min_time=1 --benchmark_repetitions=5
//                    --benchmark_report_aggregates_only=true
#include "core/NumberText.h"
#include "core/TextWriter.h"
#include "output/TextFile.h"

#include <benchmark/benchmark.h>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr int RowCount = 20000;
constexpr int ValuesPerRow = 7;
constexpr int FieldWidth = 15;

// Signed values of the magnitudes that results have: from round-off (1e-14) to stresses in Pa (1e9), one in sixteen 0.
const std::vector<double>& Values()
{
    static const std::vector<double> values = [] {
        std::mt19937_64 generator(8);
        std::uniform_real_distribution<double> exponent(-14.0, 9.0);
        std::vector<double> made(RowCount * ValuesPerRow);
        for (double& value : made) {
            const auto choice = generator();
            value = choice % 16 == 0 ? 0.0 : std::pow(10.0, exponent(generator)) * (choice & 16 ? 1.0 : -1.0);
        }
        return made;
    }();
    return values;
}

void WriteRows(std::ostream& out)
{
    for (int row = 0; row < RowCount; ++row) {
        out << std::setw(FieldWidth) << row;
        for (int k = 0; k < ValuesPerRow; ++k) {
            out << std::setw(FieldWidth) << Values()[static_cast<std::size_t>(row * ValuesPerRow + k)];
        }
        out << '\n';
    }
}

void WriteRows(tarnvexo::TextWriter& out)
{
    for (int row = 0; row < RowCount; ++row) {
        out.Integer(row, FieldWidth);
        for (int k = 0; k < ValuesPerRow; ++k) {
            out.Number(Values()[static_cast<std::size_t>(row * ValuesPerRow + k)], FieldWidth);
        }
        out.EndLine();
    }
}

std::string ScratchFile()
{
    return (std::filesystem::temp_directory_path() / "tarnvexo_number_text_bench.txt").string();
}

void CountValues(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * RowCount * ValuesPerRow);
}

void NumberText_MemoryStream(benchmark::State& state)
{
    for (auto _ : state) {
        std::ostringstream out;
        WriteRows(out);
        benchmark::DoNotOptimize(out.tellp());
    }
    CountValues(state);
}
BENCHMARK(NumberText_MemoryStream)->Unit(benchmark::kMillisecond);

void NumberText_MemoryTextWriter(benchmark::State& state)
{
    for (auto _ : state) {
        std::string text;
        tarnvexo::TextWriter out([&text](std::string_view piece) { text += piece; });
        WriteRows(out);
        out.Flush();
        benchmark::DoNotOptimize(text.size());
    }
    CountValues(state);
}
BENCHMARK(NumberText_MemoryTextWriter)->Unit(benchmark::kMillisecond);

void NumberText_FileStream(benchmark::State& state)
{
    const std::string name = ScratchFile();
    for (auto _ : state) {
        std::ofstream out(name);
        WriteRows(out);
    }
    std::filesystem::remove(name);
    CountValues(state);
}
BENCHMARK(NumberText_FileStream)->Unit(benchmark::kMillisecond);

void NumberText_FileTextFile(benchmark::State& state)
{
    const std::string name = ScratchFile();
    for (auto _ : state) {
        tarnvexo::TextFile out;
        out.Open(name);
        WriteRows(out.Text());
    }
    std::filesystem::remove(name);
    CountValues(state);
}
BENCHMARK(NumberText_FileTextFile)->Unit(benchmark::kMillisecond);

// The conversion alone.
void NumberText_Printf(benchmark::State& state)
{
    char text[64];
    for (auto _ : state) {
        for (const double value : Values()) { benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%g", value)); }
    }
    CountValues(state);
}
BENCHMARK(NumberText_Printf)->Unit(benchmark::kMillisecond);

void NumberText_ToChars(benchmark::State& state)
{
    char text[64];
    for (auto _ : state) {
        for (const double value : Values()) {
            benchmark::DoNotOptimize(std::to_chars(text, text + sizeof text, value, std::chars_format::general, 6));
        }
    }
    CountValues(state);
}
BENCHMARK(NumberText_ToChars)->Unit(benchmark::kMillisecond);

void NumberText_WriteNumber(benchmark::State& state)
{
    char text[tarnvexo::NumberTextCapacity];
    for (auto _ : state) {
        for (const double value : Values()) { benchmark::DoNotOptimize(tarnvexo::WriteNumber(text, value)); }
    }
    CountValues(state);
}
BENCHMARK(NumberText_WriteNumber)->Unit(benchmark::kMillisecond);

} // namespace
