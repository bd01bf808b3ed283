// cli/UsageFault.h
// What is wrong with a command line, thrown by whoever finds it.
#pragma once

#include <string>

namespace tarnvexo {

struct UsageFault {
    std::string what;     // --threads cannot be "many"
    std::string expected; // a whole number from 1 to 1024
    std::string meant;    // nearest name; may be empty
};

} // namespace tarnvexo
