#include "export/VtuFile.h"

#include "core/Parallel.h"

#include <algorithm>
#include <bit>
#include <new>
#include <string_view>
#include <utility>
#include <zlib.h>

namespace tarnvexo {

namespace {

static_assert(std::endian::native == std::endian::little, "the files say LittleEndian");

// Bytes of a block before compression, about: large enough for zlib, small enough to share a model between threads.
constexpr std::size_t BlockBytes = std::size_t(1) << 18;

// The fastest level: on results a higher one takes four times as long for a few percent.
constexpr int CompressionLevel = 1;

using Bytes = std::vector<unsigned char>;

struct CompressedArray {
    const VtuArray* array;
    std::size_t tuplesPerBlock;
    std::vector<Bytes> blocks;

    explicit CompressedArray(const VtuArray& from)
        : array(&from), tuplesPerBlock(std::max<std::size_t>(1, BlockBytes / from.tupleBytes)),
          blocks((from.tuples + tuplesPerBlock - 1) / tuplesPerBlock)
    {
    }

    void Compress(std::size_t block)
    {
        const std::size_t begin = block * tuplesPerBlock, end = std::min(array->tuples, begin + tuplesPerBlock);
        Bytes raw((end - begin) * array->tupleBytes);
        array->fill(begin, end, raw.data());
        uLongf size = compressBound(raw.size());
        Bytes compressed(size);
        if (compress2(compressed.data(), &size, raw.data(), raw.size(), CompressionLevel) != Z_OK) {
            throw std::bad_alloc(); // the only fault it can have with a buffer of this size
        }
        blocks[block].assign(compressed.begin(), compressed.begin() + static_cast<std::ptrdiff_t>(size));
    }

    // Number of blocks, bytes of a block and of the last one if it is shorter, before compression; then the bytes of
    // every block.
    std::vector<std::uint64_t> Header() const
    {
        std::vector<std::uint64_t> header = {blocks.size(), tuplesPerBlock * array->tupleBytes,
                                             array->tuples % tuplesPerBlock * array->tupleBytes};
        for (const Bytes& block : blocks) { header.push_back(block.size()); }
        return header;
    }

    std::uint64_t Size() const
    {
        std::uint64_t size = sizeof(std::uint64_t) * (3 + blocks.size());
        for (const Bytes& block : blocks) { size += block.size(); }
        return size;
    }
};

// Every block of every array, shared between threads.
std::vector<CompressedArray> CompressAll(const std::vector<const VtuArray*>& arrays)
{
    std::vector<CompressedArray> compressed;
    std::vector<std::pair<std::size_t, std::size_t>> blocks; // array, block
    for (std::size_t a = 0; a < arrays.size(); ++a) {
        compressed.emplace_back(*arrays[a]);
        for (std::size_t b = 0; b < compressed[a].blocks.size(); ++b) { blocks.emplace_back(a, b); }
    }
    ParallelFor(blocks.size(), 1, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) { compressed[blocks[i].first].Compress(blocks[i].second); }
    });
    return compressed;
}

std::string_view Characters(const void* bytes, std::size_t size)
{
    return {static_cast<const char*>(bytes), size};
}

void Append(TextFile& file, const CompressedArray& array)
{
    const std::vector<std::uint64_t> header = array.Header();
    file.Append(Characters(header.data(), header.size() * sizeof(std::uint64_t)));
    for (const Bytes& block : array.blocks) { file.Append(Characters(block.data(), block.size())); }
}

// The elements of the XML part, in the order of the arrays behind it.
class Head {
public:
    Head(TextWriter& textWriter, const std::vector<CompressedArray>& compressed) : text(textWriter), arrays(compressed)
    {
    }

    void Arrays(std::string_view tag, std::string_view attributes, std::size_t count)
    {
        text.Text("      <").Text(tag).Text(attributes).Text(">\n");
        for (std::size_t i = 0; i < count; ++i) { Array(); }
        text.Text("      </").Text(tag).Text(">\n");
    }

private:
    void Array()
    {
        const VtuArray& array = *arrays[next].array;
        text.Text("        <DataArray type=\"").Text(array.type).Text("\" Name=\"").Text(array.name).Text("\"");
        text.Text(" NumberOfComponents=\"").Integer(static_cast<long long>(array.components)).Text("\"");
        for (std::size_t k = 0; k < array.componentNames.size(); ++k) {
            text.Text(" ComponentName").Integer(static_cast<long long>(k));
            text.Text("=\"").Text(array.componentNames[k]).Text("\"");
        }
        text.Text(" format=\"appended\" offset=\"").Integer(static_cast<long long>(offset)).Text("\"/>\n");
        offset += arrays[next++].Size();
    }

    TextWriter& text;
    const std::vector<CompressedArray>& arrays;
    std::size_t next = 0;
    std::uint64_t offset = 0; // behind the "_"
};

std::string Active(const char* attribute, const std::string& array)
{
    return array.empty() ? "" : std::string(" ") + attribute + "=\"" + array + "\"";
}

} // namespace

FileResult WriteVtu(const VtuGrid& grid, const std::string& path)
{
    TextFile file;
    if (!file.Open(path, FileMode::Binary)) {
        return file.Close();
    }
    std::vector<const VtuArray*> arrays = {&grid.points, &grid.connectivity, &grid.offsets, &grid.types};
    for (const auto* data : {&grid.pointData, &grid.cellData}) {
        for (const VtuArray& array : *data) { arrays.push_back(&array); }
    }
    const std::vector<CompressedArray> compressed = CompressAll(arrays);

    TextWriter& text = file.Text();
    text.Text("<?xml version=\"1.0\"?>\n"
              "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" header_type=\"UInt64\" "
              "compressor=\"vtkZLibDataCompressor\">\n"
              "  <UnstructuredGrid>\n"
              "    <Piece NumberOfPoints=\"");
    text.Integer(static_cast<long long>(grid.points.tuples)).Text("\" NumberOfCells=\"");
    text.Integer(static_cast<long long>(grid.types.tuples)).Text("\">\n");
    Head head(text, compressed);
    head.Arrays("Points", "", 1);
    head.Arrays("Cells", "", 3);
    head.Arrays("PointData", Active("Scalars", grid.scalars) + Active("Vectors", grid.vectors), grid.pointData.size());
    head.Arrays("CellData", "", grid.cellData.size());
    text.Text("    </Piece>\n"
              "  </UnstructuredGrid>\n"
              "  <AppendedData encoding=\"raw\">\n"
              "_");
    for (const CompressedArray& array : compressed) { Append(file, array); }
    text.Text("\n  </AppendedData>\n"
              "</VTKFile>\n");
    return file.Close();
}

} // namespace tarnvexo
