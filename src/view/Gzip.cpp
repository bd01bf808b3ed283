#include "view/Gzip.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <stdexcept>
#include <zlib.h>

namespace tarnvexo {

namespace {

constexpr int GzipWindow = 15 + 16; // the largest window; 16: with the head of gzip
constexpr int MemoryLevel = 8;      // zlib's own choice
// Of coordinates and stresses in single precision a higher level takes off another 2 % in three times the time.
constexpr int Level = 4;
constexpr std::size_t Piece = std::size_t(1) << 20;

Bytef* BytesOf(std::string_view text)
{
    return reinterpret_cast<Bytef*>(const_cast<char*>(text.data())); // zlib reads only
}

// Hands the text to the stream in pieces that its counts can hold, and calls step(is the last) until all is taken.
template <class Step> void Feed(z_stream& stream, std::string_view text, Step step)
{
    std::size_t taken = 0;
    do {
        const std::size_t size = std::min(Piece, text.size() - taken);
        stream.next_in = BytesOf(text.substr(taken));
        stream.avail_in = static_cast<uInt>(size);
        taken += size;
        step(taken == text.size());
    } while (taken < text.size());
}

} // namespace

std::string GzipCompressed(std::string_view bytes)
{
    z_stream stream = {};
    if (deflateInit2(&stream, Level, Z_DEFLATED, GzipWindow, MemoryLevel, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::bad_alloc();
    }
    std::string compressed;
    std::string piece(Piece, '\0');
    Feed(stream, bytes, [&](bool isLast) {
        do {
            stream.next_out = BytesOf(piece);
            stream.avail_out = static_cast<uInt>(piece.size());
            deflate(&stream, isLast ? Z_FINISH : Z_NO_FLUSH);
            compressed.append(piece, 0, piece.size() - stream.avail_out);
        } while (stream.avail_out == 0);
    });
    deflateEnd(&stream);
    return compressed;
}

std::string GzipDecompressed(std::string_view compressed)
{
    z_stream stream = {};
    if (inflateInit2(&stream, GzipWindow) != Z_OK) {
        throw std::bad_alloc();
    }
    std::string bytes;
    std::string piece(Piece, '\0');
    int state = Z_OK;
    Feed(stream, compressed, [&](bool) {
        do {
            stream.next_out = BytesOf(piece);
            stream.avail_out = static_cast<uInt>(piece.size());
            state = state == Z_OK || state == Z_BUF_ERROR ? inflate(&stream, Z_NO_FLUSH) : state;
            bytes.append(piece, 0, piece.size() - stream.avail_out);
        } while (stream.avail_out == 0);
    });
    inflateEnd(&stream);
    if (state != Z_STREAM_END) {
        throw std::runtime_error("a compressed text is cut off or damaged");
    }
    return bytes;
}

} // namespace tarnvexo
