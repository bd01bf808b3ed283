#include "solver/SparseEngine.h"

#include "core/Parallel.h"
#include "platform/Platform.h"
#include "solver/MultifrontalEngine.h"
#include "solver/SkylineEngine.h"

#include <cmath>

namespace tarnvexo {

namespace {

using MakeEngine = SparseEngine* (*)(int threads);

// OpenBLAS's name for the kernels that suit this processor; empty where its own choice is as good.
const char* BlasCoreName()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl") &&
        __builtin_cpu_supports("avx512bw")) {
        return "SkylakeX";
    }
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) {
        return "Haswell";
    }
#endif
    return "";
}

// CHOLMOD stands in a library of its own that is loaded when it is first wanted: a run that does without starts in a
// millisecond, and the libraries behind it read their settings from the environment only while they are loaded.
MakeEngine LoadCholmod()
{
#ifndef TARNVEXO_CHOLMOD
    throw EngineMissing("CHOLMOD is not part of this program\n"
                        "  expected: a program for a system that CHOLMOD and OpenBLAS come with, such as Debian\n"
                        "  to do:    use --solver sparse");
#else
    SetBlasEnvironment();
    std::string reason;
    void* const library = platform::LoadPlugin("libtarnvexo_cholmod.so", reason);
    void* const symbol = library == nullptr ? nullptr : platform::PluginSymbol(library, "MakeCholmodEngine");
    if (symbol == nullptr) {
        throw EngineMissing(
            "CHOLMOD cannot be loaded: " + reason +
            "\n"
            "  expected: libtarnvexo_cholmod.so beside the program or in ../lib/tarnvexo, with libcholmod and\n"
            "            libopenblas on the system\n"
            "  to do:    install the packages libcholmod3 and libopenblas0-pthread, or use --solver sparse");
    }
    return reinterpret_cast<MakeEngine>(symbol);
#endif
}

} // namespace

Inertia InertiaOf(const PivotReport& report)
{
    Inertia inertia;
    for (const double pivot : report.pivots) {
        const bool isUsable = std::isfinite(pivot) && pivot != 0.0;
        ++(!isUsable ? inertia.leftOut : pivot > 0.0 ? inertia.positive : inertia.negative);
    }
    return inertia;
}

bool HasCholmod()
{
#ifdef TARNVEXO_CHOLMOD
    return true;
#else
    return false;
#endif
}

void SetBlasEnvironment()
{
    // OpenBLAS takes the oldest kernels for processors it does not know by name; they reach a fifth of the speed. So it
    // is told by what the processor can do. A name that the user has set is kept.
    if (*BlasCoreName() != '\0') {
        platform::SetEnvironmentDefault("OPENBLAS_CORETYPE", BlasCoreName());
    }
    // CHOLMOD starts four OpenMP threads in its own small loops whatever is set; beside the threads of OpenBLAS they
    // only get into the way.
    platform::SetEnvironmentDefault("OMP_THREAD_LIMIT", "1");
    // OpenBLAS's own threads are never used (cholmod/FixedBlas): it shall not start them, whatever the user has set.
    platform::SetEnvironment("OPENBLAS_NUM_THREADS", "1");
}

std::unique_ptr<SparseEngine> MakeSparseEngine(EngineKind kind, int threads)
{
    if (kind == EngineKind::Multifrontal) {
        return std::make_unique<MultifrontalEngine>(threads);
    }
    if (kind == EngineKind::Skyline) {
        return std::make_unique<SkylineEngine>();
    }
    static const MakeEngine makeCholmodEngine = LoadCholmod();
    return std::unique_ptr<SparseEngine>(makeCholmodEngine(threads));
}

std::vector<std::string> DescribeEngines()
{
    std::vector<std::string> lines;
    for (const EngineKind kind : {EngineKind::Multifrontal, EngineKind::Cholmod, EngineKind::Skyline}) {
        try {
            const std::unique_ptr<SparseEngine> engine = MakeSparseEngine(kind, ThreadCount());
            lines.push_back(engine->Name() + ", " + engine->Kernels());
        } catch (const EngineMissing& missing) {
            const std::string reason = missing.what();
            lines.push_back(reason.substr(0, reason.find('\n')));
        }
    }
    return lines;
}

} // namespace tarnvexo
