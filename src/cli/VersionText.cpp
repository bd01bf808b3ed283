#include "cli/VersionText.h"

#include <hwy/targets.h>

namespace tarnvexo {

namespace {

std::string Compiler()
{
#if defined(__clang__)
    return "clang " __clang_version__;
#elif defined(__GNUC__)
    return "g++ " __VERSION__;
#else
    return "unknown";
#endif
}

// Of those that the kernels were compiled for, the best one of this processor: the lowest bit.
std::string VectorTarget()
{
    const auto usable = hwy::SupportedTargets() & HWY_TARGETS;
    return hwy::TargetName(usable & -usable);
}

} // namespace

std::string VersionText(const std::vector<std::string>& engines)
{
    std::string text = "tarnvexo " TARNVEXO_VERSION "\n"
                       "  build     " TARNVEXO_BUILD_TYPE "\n";
    text += "  compiler  " + Compiler() + "\n";
    text += "  vectors   " + VectorTarget() + "\n";
    for (std::size_t i = 0; i < engines.size(); ++i) {
        text += (i == 0 ? "  engines   " : "            ") + engines[i] + "\n";
    }
    return text;
}

} // namespace tarnvexo
