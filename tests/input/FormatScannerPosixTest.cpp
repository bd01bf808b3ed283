// The scanner beside the C library, on streams that only this system can make of a text.
#include "core/ModelFileFormats.h"
#include "input/FormatScanner.h"
#include "support/ModelText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace tarnvexo {
namespace {

// ------------------------------------------------------------ the C library's scanning of a text in memory

// A stdio stream on a string of any bytes. (fmemopen ends at the first zero byte.)
class TextStream {
public:
    explicit TextStream(std::string_view text) : text(text)
    {
        const cookie_io_functions_t functions = {Read, nullptr, Seek, nullptr};
        stream = fopencookie(this, "r", functions);
        std::setvbuf(stream, buffer, _IOFBF, sizeof buffer);
    }
    ~TextStream() { std::fclose(stream); }
    TextStream(const TextStream&) = delete;
    TextStream& operator=(const TextStream&) = delete;

    std::FILE* Stream() { return stream; }
    std::size_t Position() { return std::size_t(std::ftell(stream)); }

private:
    static ssize_t Read(void* self, char* destination, std::size_t size)
    {
        TextStream& source = *static_cast<TextStream*>(self);
        const std::size_t count = std::min(size, source.text.size() - source.at);
        std::memcpy(destination, source.text.data() + source.at, count);
        source.at += count;
        return ssize_t(count);
    }
    static int Seek(void* self, off64_t* offset, int whence)
    {
        TextStream& source = *static_cast<TextStream*>(self);
        const off64_t base = whence == SEEK_SET   ? 0
                             : whence == SEEK_CUR ? off64_t(source.at)
                                                  : off64_t(source.text.size());
        *offset += base;
        source.at = std::size_t(*offset);
        return 0;
    }

    std::string_view text;
    std::size_t at = 0;
    std::FILE* stream;
    char buffer[4096];
};

// ------------------------------------------------------------ one format, scanned both ways

// Destination k of a format is the k-th entry of the array of its type.
struct Values {
    int integers[MaxScanFields];
    double numbers[MaxScanFields];
    char characters[MaxScanFields];

    Values()
    {
        std::fill_n(integers, MaxScanFields, -77);
        std::fill_n(numbers, MaxScanFields, -77.25);
        std::fill_n(characters, MaxScanFields, '!');
    }

    template <class Type> Type& Destination(std::size_t k)
    {
        if constexpr (std::is_same_v<Type, int>) {
            return integers[k];
        } else if constexpr (std::is_same_v<Type, double>) {
            return numbers[k];
        } else {
            return characters[k];
        }
    }

    bool SameBits(const Values& other) const
    {
        return std::memcmp(integers, other.integers, sizeof integers) == 0 &&
               std::memcmp(numbers, other.numbers, sizeof numbers) == 0 &&
               std::memcmp(characters, other.characters, sizeof characters) == 0;
    }
};

struct FormatCase {
    std::string name;
    const char* format;
    ScanResult (*scan)(FormatScanner& scanner, const char* format, Values& values);
    int (*libraryScan)(std::FILE* stream, const char* format, Values& values);
};

template <class... Types> struct ScanBothWays {
    static ScanResult Ours(FormatScanner& scanner, const char* format, Values& values)
    {
        return Ours(scanner, format, values, std::index_sequence_for<Types...>());
    }
    static int Library(std::FILE* stream, const char* format, Values& values)
    {
        return Library(stream, format, values, std::index_sequence_for<Types...>());
    }

private:
    template <std::size_t... K>
    static ScanResult Ours(FormatScanner& scanner, const char* format, Values& values, std::index_sequence<K...>)
    {
        return scanner.Scan(format, values.Destination<Types>(K)...);
    }
    template <std::size_t... K>
    static int Library(std::FILE* stream, const char* format, Values& values, std::index_sequence<K...>)
    {
        return std::fscanf(stream, format, &values.Destination<Types>(K)...);
    }
};

template <class... Types> FormatCase Case(const char* name, const char* format)
{
    return {name, format, &ScanBothWays<Types...>::Ours, &ScanBothWays<Types...>::Library};
}

std::vector<FormatCase> AllFormats()
{
    using namespace formats;
    return {
        Case<double>("Release", Release),
        Case<int>("MaterialCount", MaterialCount),
        Case<int>("MaterialLabel", MaterialLabel),
        Case<double>("MaterialE", MaterialE),
        Case<double>("MaterialMu", MaterialMu),
        Case<double>("MaterialDensity", MaterialDensity),
        Case<int>("ThicknessCount", ThicknessCount),
        Case<int>("ThicknessLabel", ThicknessLabel),
        Case<double>("ThicknessTK", ThicknessTK),
        Case<int>("TSectionCount", TSectionCount),
        Case<int>("LSectionCount", LSectionCount),
        Case<int>("CSectionCount", CSectionCount),
        Case<char>("LabelCharacter", LabelCharacter),
        Case<double>("SectionHw", SectionHw),
        Case<double>("SectionTw", SectionTw),
        Case<double>("SectionBf", SectionBf),
        Case<double>("SectionTf", SectionTf),
        Case<double>("SectionR", SectionR),
        Case<double>("SectionT", SectionT),
        Case<int>("NodeCount", NodeCount),
        Case<int, double, double, double>("Node", Node),
        Case<int>("ElementLabel", ElementLabel),
        Case<int>("QuadCount", QuadCount),
        Case<int, int, int, int, int, int>("Quad", Quad),
        Case<int>("TriCount", TriCount),
        Case<int, int, int, int, int>("Tri", Tri),
        Case<int>("BeamCount", BeamCount),
        Case<int, int, double, double, double, int, int, int, double, int>("Beam", Beam),
        Case<int>("RestraintCount", RestraintCount),
        Case<int>("RestraintNode", RestraintNode),
        Case<int>("RestraintFlag", RestraintFlag),
        Case<int>("LastRestraintFlag", LastRestraintFlag),
        Case<int>("ForceCount", ForceCount),
        Case<int>("ForceNode", ForceNode),
        Case<double>("ForceComponent", ForceComponent),
        Case<double>("LastForceComponent", LastForceComponent),
        Case<int>("QuadLoadCount", QuadLoadCount),
        Case<int>("TriLoadCount", TriLoadCount),
        Case<int, double, double, double>("ShellLoad", ShellLoad),
        Case<int>("BeamLoadCount", BeamLoadCount),
        Case<int, double, double>("BeamLoad", BeamLoad),
    };
}

std::string Shown(std::string_view text)
{
    std::string shown;
    for (const char c : text) {
        char code[8];
        std::snprintf(code, sizeof code, c >= ' ' && c <= '~' ? "%c" : "\\x%02x",
                      unsigned(static_cast<unsigned char>(c)));
        shown += code;
    }
    return shown;
}

// Scans the text `times` times with the format, both ways, and compares values, positions and counts after every scan.
void ExpectSameScans(const FormatCase& format, std::string_view text, int times)
{
    TextStream stream(text);
    FormatScanner scanner(text);
    Values ours, library;
    for (int i = 0; i < times; ++i) {
        const ScanResult result = format.scan(scanner, format.format, ours);
        const int count = std::max(format.libraryScan(stream.Stream(), format.format, library), 0);
        ASSERT_TRUE(ours.SameBits(library) && scanner.Position() == stream.Position() && result.stored == count)
            << "scan " << i << " of \"" << Shown(text) << "\" with \"" << Shown(format.format) << "\": position "
            << scanner.Position() << ", fscanf " << stream.Position() << "; stored " << result.stored << ", fscanf "
            << count << "; first values " << ours.integers[0] << " " << ours.numbers[0] << ", fscanf "
            << library.integers[0] << " " << library.numbers[0];
    }
}

// ------------------------------------------------------------ generated inputs

using Random = std::mt19937_64;

int Below(Random& random, std::size_t n)
{
    return int(random() % n);
}

template <class Items> auto OneOf(Random& random, const Items& items)
{
    return items[std::size_t(Below(random, std::size(items)))];
}

std::string Digits(Random& random, int most)
{
    std::string digits;
    for (int n = 1 + Below(random, std::size_t(most)); n > 0; --n) { digits += char('0' + Below(random, 10)); }
    return digits;
}

std::string RandomInteger(Random& random)
{
    static const char* const special[] = {"0",
                                          "-0",
                                          "+7",
                                          "007",
                                          "2147483647",
                                          "2147483648",
                                          "-2147483648",
                                          "-2147483649",
                                          "4294967296",
                                          "9223372036854775807",
                                          "9223372036854775808",
                                          "-9223372036854775808",
                                          "-9223372036854775809",
                                          "99999999999999999999",
                                          "-99999999999999999999",
                                          "18446744073709551617",
                                          "0x10",
                                          "1.5",
                                          "1e3",
                                          "--1",
                                          "+-1",
                                          "+",
                                          "-"};
    switch (Below(random, 8)) {
    case 0:
        return OneOf(random, special);
    case 1:
        return OneOf(random, std::array{"+", "-", ""}) + Digits(random, 22);
    default:
        return OneOf(random, std::array{"", "", "", "-"}) + Digits(random, 6);
    }
}

std::string RandomNumber(Random& random)
{
    static const char* const special[] = {"0",
                                          "-0",
                                          "+0.0",
                                          ".5",
                                          "5.",
                                          ".",
                                          "+.",
                                          "-.5",
                                          "1e",
                                          "1e+",
                                          "1E-",
                                          "1e5",
                                          "1E+05",
                                          "1e5.3",
                                          "1.5.2",
                                          "1..2",
                                          "1e400",
                                          "-1e400",
                                          "1e-400",
                                          "4.9e-324",
                                          "2.4e-324",
                                          "2.5e-324",
                                          "1e-310",
                                          "1.7976931348623157e308",
                                          "1.7976931348623159e308",
                                          "0x",
                                          "0X1.8p3",
                                          "0x1p",
                                          "0x1p+",
                                          "0x.",
                                          "0x.8",
                                          "0x.p1",
                                          "0xg",
                                          "-0x1.fffffffffffff8p0",
                                          "0x1p-1080",
                                          "0x1p9999",
                                          "0x1e5",
                                          "00x1",
                                          "inf",
                                          "-INF",
                                          "infinity",
                                          "InFiNiTy",
                                          "infinit",
                                          "infx",
                                          "+infi",
                                          "in",
                                          "i",
                                          "nan",
                                          "-NaN",
                                          "nan(12)",
                                          "nan()",
                                          "nan(",
                                          "na",
                                          "nax",
                                          "n",
                                          "1e99999999999999999999",
                                          "0e99999999999999999999",
                                          "1d5",
                                          "1,5",
                                          "1f",
                                          "1p3",
                                          "1x",
                                          "0.1e1e1",
                                          "1e1-1",
                                          "+-1",
                                          "--1",
                                          "+",
                                          "-",
                                          "e5",
                                          ".e5",
                                          "1_0",
                                          "0.000000000000000000000000000000000001"};
    char text[64];
    switch (Below(random, 8)) {
    case 0:
    case 1:
        return OneOf(random, special);
    case 2:
        return Digits(random, 25) + "." + Digits(random, 25);
    case 3: {
        std::uint64_t bits = random();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        std::snprintf(text, sizeof text, OneOf(random, std::array{"%.17g", "%.16e", "%a", "%g"}), value);
        return text;
    }
    case 4:
        return OneOf(random, std::array{"", "-", "+"}) + Digits(random, 19) + OneOf(random, std::array{".", "", "."}) +
               Digits(random, 3) + OneOf(random, std::array{"e", "E", "e-", "e+", "E-"}) + Digits(random, 3);
    default:
        std::snprintf(text, sizeof text, "%.*f", Below(random, 8), double(std::int64_t(random())) * 1e-16);
        return text;
    }
}

std::string RandomSpace(Random& random)
{
    return OneOf(random, std::array{"", "", "", " ", "  ", "\n", "\r\n", "\t", "\n \n", "\v\f", "\r"});
}

// A text that matches the format, apart from odd numbers and, now and then, text in place of a number.
std::string RandomRecord(Random& random, const char* format)
{
    std::string text = Below(random, 8) == 0 ? RandomSpace(random) : "";
    for (const char* f = format; *f != '\0'; ++f) {
        if (*f == '\n') {
            text += Below(random, 4) == 0 ? RandomSpace(random) : OneOf(random, std::array{"\n", "\n", "\r\n"});
        } else if (*f == ' ') {
            text += Below(random, 16) == 0 ? RandomSpace(random) : " ";
        } else if (*f != '%') {
            text += *f;
        } else {
            ++f;
            text += Below(random, 4) == 0 ? RandomSpace(random) : "";
            if (Below(random, 40) == 0) {
                text += OneOf(random, std::array{"abc", "", "#", "1/2", "E=", "\xE4\xBD\xA0", "infinite", "nano"});
            } else if (*f == 'd') {
                text += Below(random, 16) == 0 ? RandomNumber(random) : RandomInteger(random);
            } else if (*f == 'l') {
                ++f;
                text += RandomNumber(random);
            } else {
                text += char(random());
            }
        }
    }
    return text;
}

// Cut anywhere, characters exchanged, inserted, taken out, replaced; line ends of another system.
void Damage(Random& random, std::string& text)
{
    if (text.empty()) {
        return;
    }
    const std::size_t at = random() % text.size();
    const std::size_t other = random() % text.size();
    static const char replacements[] = "0123456789+-.eExXpPiInNaAfFtTyY,:[]<>#= \n\r\t\xFF()"; // and the zero byte
    const char replacement = OneOf(random, replacements);
    switch (Below(random, 7)) {
    case 0:
        text.resize(at);
        break;
    case 1:
        std::swap(text[at], text[other]);
        break;
    case 2:
        text[at] = replacement;
        break;
    case 3:
        text.insert(at, 1, replacement);
        break;
    case 4:
        text.erase(at, 1 + random() % 3);
        break;
    case 5:
        text[at] = char(random());
        break;
    case 6:
        for (std::size_t i = text.find('\n'); i != std::string::npos; i = text.find('\n', i + 2)) {
            text.insert(i, 1, '\r');
        }
        break;
    }
}

constexpr int GeneratedInputs = 100000; // of each format

class EveryFormat : public testing::TestWithParam<FormatCase> {};

TEST_P(EveryFormat, ScansGeneratedTextsAsFscanfDoes)
{
    const FormatCase& format = GetParam();
    Random random(20260718);
    for (int i = 0; i < GeneratedInputs && !HasFatalFailure(); ++i) {
        std::string text = RandomRecord(random, format.format) + RandomRecord(random, format.format);
        for (int damages = Below(random, 4); damages > 1; --damages) { Damage(random, text); }
        ExpectSameScans(format, text, 3);
    }
}

TEST_P(EveryFormat, ScansAValidRecordCutAfterEveryByteAsFscanfDoes)
{
    const FormatCase& format = GetParam();
    std::string text;
    for (const char* f = format.format; *f != '\0'; ++f) {
        if (*f != '%') {
            text += *f;
        } else if (*++f == 'l') {
            ++f;
            text += " -1.25e+03";
        } else {
            text += *f == 'd' ? " 41" : "#";
        }
    }
    for (std::size_t size = 0; size <= text.size() && !HasFatalFailure(); ++size) {
        ExpectSameScans(format, std::string_view(text).substr(0, size), 2);
    }
}

INSTANTIATE_TEST_SUITE_P(FormatScanner, EveryFormat, testing::ValuesIn(AllFormats()),
                         [](const auto& info) { return info.param.name; });

// ------------------------------------------------------------ formats known to the compiler

struct CompiledFormat {
    std::string name;
    const char* format;
    ScanResult (*scan)(FormatScanner& scanner, Values& values);
    ScanResult (*generalScan)(FormatScanner& scanner, const char* format, Values& values);
};

template <const auto& Format, class... Types, std::size_t... K>
ScanResult ScanCompiled(FormatScanner& scanner, Values& values, std::index_sequence<K...>)
{
    return scanner.Scan<Format>(values.Destination<Types>(K)...);
}

template <const auto& Format, class... Types> CompiledFormat Compiled(const char* name)
{
    return {name, Format,
            [](FormatScanner& scanner, Values& values) {
                return ScanCompiled<Format, Types...>(scanner, values, std::index_sequence_for<Types...>());
            },
            &ScanBothWays<Types...>::Ours};
}

// A number as programs write it, sometimes longer than the fast lane takes.
std::string PlainNumber(Random& random, bool integer)
{
    const std::string sign = OneOf(random, std::array{"", "-", "", "-", "+"});
    if (integer || Below(random, 6) == 0) {
        return sign + Digits(random, 9);
    }
    return sign + (Below(random, 8) == 0 ? "" : Digits(random, 9)) + "." +
           (Below(random, 8) == 0 ? "" : Digits(random, 17)) + (Below(random, 16) == 0 ? "e+2" : "");
}

std::string PlainRecord(Random& random, const char* format)
{
    std::string text;
    for (const char* f = format; *f != '\0'; ++f) {
        if (*f != '%') {
            text += *f;
        } else if (*++f == 'd') {
            text += PlainNumber(random, true);
        } else {
            ++f;
            text += PlainNumber(random, false);
        }
    }
    return text;
}

class EveryCompiledFormat : public testing::TestWithParam<CompiledFormat> {};

// Values, positions and what did not match; near the end of the text and far from it.
TEST_P(EveryCompiledFormat, ScansAsTheGeneralScanDoes)
{
    const CompiledFormat& format = GetParam();
    Random random(20261121);
    for (int i = 0; i < GeneratedInputs && !HasFatalFailure(); ++i) {
        std::string text;
        for (int record = 0; record < 4; ++record) {
            text += Below(random, 4) == 0 ? RandomRecord(random, format.format) : PlainRecord(random, format.format);
        }
        for (int damages = Below(random, 5); damages > 2; --damages) { Damage(random, text); }
        if (Below(random, 2) == 0) {
            text += std::string(500, OneOf(random, std::array{' ', 'x', '7'}));
        }
        FormatScanner scanner(text), generalScanner(text);
        Values values, generalValues;
        for (int scan = 0; scan < 4; ++scan) {
            const ScanResult result = format.scan(scanner, values);
            const ScanResult general = format.generalScan(generalScanner, format.format, generalValues);
            ASSERT_TRUE(values.SameBits(generalValues)) << Shown(text);
            ASSERT_EQ(scanner.Position(), generalScanner.Position()) << Shown(text);
            ASSERT_EQ(result.expected, general.expected) << Shown(text);
            ASSERT_EQ(result.stoppedAt, general.stoppedAt) << Shown(text);
            ASSERT_EQ(result.stored, general.stored) << Shown(text);
            for (int field = 0; field < result.stored; ++field) {
                ASSERT_EQ(result.fieldBegin[field], general.fieldBegin[field]) << Shown(text);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    FormatScanner, EveryCompiledFormat,
    testing::Values(Compiled<formats::Node, int, double, double, double>("Node"),
                    Compiled<formats::ElementLabel, int>("ElementLabel"),
                    Compiled<formats::Quad, int, int, int, int, int, int>("Quad"),
                    Compiled<formats::Tri, int, int, int, int, int>("Tri"),
                    Compiled<formats::Beam, int, int, double, double, double, int, int, int, double, int>("Beam"),
                    Compiled<formats::ForceNode, int>("ForceNode"),
                    Compiled<formats::ForceComponent, double>("ForceComponent"),
                    Compiled<formats::LastForceComponent, double>("LastForceComponent"),
                    Compiled<formats::ShellLoad, int, double, double, double>("ShellLoad"),
                    Compiled<formats::BeamLoad, int, double, double>("BeamLoad")),
    [](const auto& info) { return info.param.name; });

// ------------------------------------------------------------ whole files

// A small model with every kind of record.
std::string SmallModel()
{
    test::ModelText model;
    model.Material(2.06e11, 0.3, 7850);
    model.Material(7e10, 1.0 / 3.0, -2.7e3);
    model.Thickness(0.01);
    model.TSection(0.1, 0.006, 0.05, 0.008);
    model.LSection(0.2, 0.008, 0.1, 0.01);
    model.CSection(0.02, 0.003);
    for (int n = 0; n < 6; ++n) { model.Node(0.1 * n, n % 2, 1.0 / (n + 1)); }
    model.Quad({0, 1, 2, 3}, 1, 0);
    model.Tri({1, 4, 2});
    model.Beam({0, 5}, {0, 0, 1}, 0, 1, 0, 0.005, 1);
    model.Restrain(0);
    model.Force(2, {0, 0, -1000, 0.5, 0, 0});
    model.QuadLoad(0, 100, 200, 300);
    model.TriLoad(0, 1e-3, 2, 3);
    model.BeamLoad(0, -1, 1);
    return model.Text();
}

TEST(FormatScanner, GoesThroughDamagedWholeFilesAsFscanfDoes)
{
    // The scans of a reader, one after the other whatever the text holds: each goes on where the last one stopped.
    const std::vector<FormatCase> formats = AllFormats();
    const std::string model = SmallModel();
    Random random(7);
    for (int i = 0; i < 3000 && !HasFatalFailure(); ++i) {
        std::string text = model;
        for (int damages = 1 + Below(random, 5); damages > 0; --damages) { Damage(random, text); }
        TextStream stream(text);
        FormatScanner scanner(text);
        Values ours, library;
        for (int step = 0; step < 120; ++step) {
            // Mostly the formats in order, for a while one of them again and again.
            const FormatCase& format = formats[std::size_t(step % 4 != 0 ? step / 3 : Below(random, formats.size()))];
            format.scan(scanner, format.format, ours);
            format.libraryScan(stream.Stream(), format.format, library);
            ASSERT_TRUE(ours.SameBits(library) && scanner.Position() == stream.Position())
                << "step " << step << ", format " << format.name << ", text " << Shown(text);
        }
    }
}

TEST(FormatScanner, SkipsALineAsFscanfReadingCharactersDoes)
{
    Random random(11);
    for (int i = 0; i < 10000; ++i) {
        std::string text = "#3: frame\r\n\n  no colon \n" + Digits(random, 8);
        for (int damages = Below(random, 6); damages > 0; --damages) { Damage(random, text); }
        TextStream stream(text);
        FormatScanner scanner(text);
        for (int line = 0; line < 4; ++line) {
            char c = '\0';
            int read = 0;
            while (c != '\n' && (read = std::fscanf(stream.Stream(), formats::LabelCharacter, &c)) == 1) {}
            ASSERT_EQ(scanner.SkipLine(), read == 1) << Shown(text);
            ASSERT_EQ(scanner.Position(), stream.Position()) << Shown(text);
        }
    }
}

TEST(FormatScanner, ScansOddNumbersAsFscanfDoes)
{
    for (const char* text : {"1.5,",      " \n-.5]",  "+7.", "1e",  "1e+]", "1e5.3", "1.5.2",    "0x1.8p1,", "0x1p",
                             "0x.,",      "0xg",      "0x",  ".",   "+.x",  "+x",    "-",        "e5",       "inf,",
                             "-Infinity", "infinite", "in",  "inx", "nax",  "1e400", "4.9e-324", "",         "  "}) {
        ExpectSameScans(Case<double>("", "%lf"), text, 1);
    }
    for (const char* text : {"2147483648", "4294967297", "-4294967297", "9223372036854775807", "9223372036854775808",
                             "-9223372036854775809", "99999999999999999999", "-99999999999999999999"}) {
        ExpectSameScans(Case<int>("", "%d"), text, 1);
    }
}

} // namespace
} // namespace tarnvexo
