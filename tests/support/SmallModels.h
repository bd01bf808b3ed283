// support/SmallModels.h
// Models in memory for tests of what comes after reading, and the text of a file that such a stage writes.
#pragma once

#include "core/ModelStore.h"
#include "support/ModelText.h"
#include "support/TemporaryDirectory.h"

#include <fstream>
#include <iterator>
#include <string>

namespace tarnvexo::test {

// The store that reading the text gives; throws when the text cannot be read without a warning.
ModelStore StoreOf(const ModelText& text);

// One element of every kind: a plate of 2 x 1 as four-node shell, a triangle on its edge x = 2, a T beam under its edge
// y = 0. Five nodes, held at 0, 1 and 3 by as many directions as are needed, with a force and loads on every element.
ModelText OneOfEachKind();

// Two triangles without connection and without supports, a force on each, opposed: the inertia of the whole balances
// neither.
ModelText PulledApart();

// Content of the file after write(), which runs in a temporary directory. Of a text file line ends are those of the
// system, here "\n"; bytes are as they stand there.
template <class Write>
std::string WrittenFile(const char* fileName, Write write, std::ios::openmode mode = std::ios::in)
{
    const TemporaryDirectory directory;
    write();
    std::ifstream file(fileName, mode);
    return std::string(std::istreambuf_iterator<char>(file), {});
}
template <class Write> std::string WrittenBytes(const char* fileName, Write write)
{
    return WrittenFile(fileName, write, std::ios::in | std::ios::binary);
}

} // namespace tarnvexo::test
