// core/TextWriter.h
// Formatted text at the speed of the disk: numbers as a default output stream writes them (general notation, six
// significant digits), fields right-aligned in a width, collected in one large buffer and handed on in large pieces.
// Used by every result file and by the console.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>

namespace tarnvexo {

class TextWriter {
public:
    using Destination = std::function<void(std::string_view)>;

    // destination receives the text, in order, whenever about `capacity` bytes have gathered and on Flush.
    explicit TextWriter(Destination destination, std::size_t capacity = std::size_t(1) << 20);
    ~TextWriter(); // flushes

    TextWriter(const TextWriter&) = delete;
    TextWriter& operator=(const TextWriter&) = delete;

    TextWriter& Text(std::string_view text);
    TextWriter& Text(std::string_view text, int width); // right-aligned, never cut
    TextWriter& Number(double value);
    TextWriter& Number(double value, int width);
    TextWriter& Integer(long long value);
    TextWriter& Integer(long long value, int width);
    TextWriter& EndLine(); // one "\n"

    void Flush();

private:
    void Reserve(std::size_t size);
    bool HasRoomFor(int width);
    TextWriter& Padded(const char* begin, std::size_t size, int width);

    Destination destination;
    std::size_t capacity;
    std::unique_ptr<char[]> buffer;
    std::size_t used = 0;
};

} // namespace tarnvexo
