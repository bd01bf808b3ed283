#include "solver/SkylineMemory.h"

#include "core/Failure.h"
#include "platform/Platform.h"
#include "solver/SkylineProfile.h"

#include <cstdio>
#include <new>

namespace tarnvexo {

namespace {

[[noreturn]] void Refuse(std::int64_t entries, const char* limit, const char* modelName)
{
    char text[500];
    std::snprintf(text, sizeof text,
                  "%s: error: the skyline of the stiffness matrix has %lld entries (%.3g GB)\n"
                  "  expected: at most %s\n"
                  "  to do:    number the nodes so that connected nodes have close numbers, or coarsen the mesh",
                  modelName, static_cast<long long>(entries), static_cast<double>(entries) * GigabytesPerEntry, limit);
    FailWithDiagnostic(text);
}

} // namespace

void AllocateSkyline(ModelStore& model, std::int64_t entries, const char* modelName)
{
    char limit[80];
    if (entries > SkylineLimit) {
        std::snprintf(limit, sizeof limit, "%lld entries (32-bit addresses)", static_cast<long long>(SkylineLimit));
        Refuse(entries, limit, modelName);
    }
    const std::uint64_t available = platform::AvailableMemory();
    if (available > 0 && static_cast<std::uint64_t>(entries) > available / sizeof(double)) {
        std::snprintf(limit, sizeof limit, "%.3g GB, the memory that is free now",
                      static_cast<double>(available) / (1 << 30));
        Refuse(entries, limit, modelName);
    }
    try {
        const auto size = static_cast<std::size_t>(entries);
        model.GlobalStiffness.reserve(size);
        platform::PreferLargePages(model.GlobalStiffness.data(), size * sizeof(double));
        model.GlobalStiffness.assign(size, 0.0);
    } catch (const std::bad_alloc&) {
        Refuse(entries, "what the system gives this program", modelName);
    }
    model.SkylineSize = static_cast<int>(entries);
}

} // namespace tarnvexo
