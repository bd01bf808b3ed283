#include "core/TextWriter.h"

#include "core/NumberText.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace tarnvexo {

TextWriter::TextWriter(Destination destination, std::size_t capacity)
    : destination(std::move(destination)), capacity(std::max(capacity, NumberTextCapacity)),
      buffer(std::make_unique_for_overwrite<char[]>(this->capacity))
{
}

TextWriter::~TextWriter()
{
    Flush();
}

TextWriter& TextWriter::Text(std::string_view text)
{
    if (text.size() > capacity) { // longer than the buffer: handed on as it is, behind what has gathered
        Flush();
        destination(text);
        return *this;
    }
    Reserve(text.size());
    std::memcpy(buffer.get() + used, text.data(), text.size());
    used += text.size();
    return *this;
}

TextWriter& TextWriter::Text(std::string_view text, int width)
{
    return Padded(text.data(), text.size(), width);
}

TextWriter& TextWriter::Number(double value)
{
    Reserve(NumberTextCapacity);
    used = static_cast<std::size_t>(WriteNumber(buffer.get() + used, value) - buffer.get());
    return *this;
}

TextWriter& TextWriter::Number(double value, int width)
{
    if (HasRoomFor(width)) {
        used = static_cast<std::size_t>(WriteNumber(buffer.get() + used, value, width) - buffer.get());
        return *this;
    }
    char digits[NumberTextCapacity];
    return Padded(digits, static_cast<std::size_t>(WriteNumber(digits, value) - digits), width);
}

TextWriter& TextWriter::Integer(long long value)
{
    Reserve(NumberTextCapacity);
    used = static_cast<std::size_t>(WriteInteger(buffer.get() + used, value) - buffer.get());
    return *this;
}

TextWriter& TextWriter::Integer(long long value, int width)
{
    if (HasRoomFor(width)) {
        used = static_cast<std::size_t>(WriteInteger(buffer.get() + used, value, width) - buffer.get());
        return *this;
    }
    char digits[NumberTextCapacity];
    return Padded(digits, static_cast<std::size_t>(WriteInteger(digits, value) - digits), width);
}

TextWriter& TextWriter::EndLine()
{
    Reserve(1);
    buffer[used++] = '\n';
    return *this;
}

void TextWriter::Flush()
{
    if (used > 0) {
        const std::size_t size = used;
        used = 0;
        destination(std::string_view(buffer.get(), size));
    }
}

// Afterwards `size` more bytes fit behind `used`. size is at most the buffer's own.
void TextWriter::Reserve(std::size_t size)
{
    if (capacity - used < size) {
        Flush();
    }
}

// Afterwards a number in a field of `width` fits behind `used`, unless the buffer is too small for that.
bool TextWriter::HasRoomFor(int width)
{
    const std::size_t size = NumberTextCapacity + static_cast<std::size_t>(std::max(width, 0));
    if (size > capacity) {
        return false;
    }
    Reserve(size);
    return true;
}

TextWriter& TextWriter::Padded(const char* begin, std::size_t size, int width)
{
    std::size_t blanks =
        width > 0 && static_cast<std::size_t>(width) > size ? static_cast<std::size_t>(width) - size : 0;
    while (blanks > 0) {
        const std::size_t piece = std::min(blanks, capacity);
        Reserve(piece);
        std::memset(buffer.get() + used, ' ', piece);
        used += piece;
        blanks -= piece;
    }
    return Text(std::string_view(begin, size));
}

} // namespace tarnvexo
