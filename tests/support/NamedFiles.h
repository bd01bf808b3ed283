// support/NamedFiles.h
// The files of the current directory as a map, to compare whole directories at once.
#pragma once

#include "platform/FileReplacement.h"

#include <map>
#include <string>
#include <vector>

namespace tarnvexo::test {

using Files = std::map<std::string, std::string>; // content by name; "directory" for one

Files FilesThere();
void Write(const Files& files);

// Three files that take their names together.
const std::vector<platform::FileToReplace>& Three();

} // namespace tarnvexo::test
