// solver/FactorStore.h
// Where the panels of a multifrontal factor are kept: in memory, or in a scratch file where memory does not hold them.
// A panel is a front's columns of the factor. It is made, and used by solutions, in the place that Panel gives; with a
// scratch file that is one of a few buffers, and panels are written and read as a whole, in the order of the fronts or
// back: the disk streams.
#pragma once

#include "core/Crew.h"
#include "core/LargeArray.h"
#include "platform/ScratchFile.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarnvexo {

// The disk did not take or give a panel. The text is the system's reason.
struct ScratchFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class FactorStore {
public:
    // panelAt [fronts + 1]: first entry of each panel and the end; isShared [fronts]: computed by all threads together,
    // the others by one. Forgets what was kept.
    void Plan(std::vector<std::size_t> panelAt, const std::vector<unsigned char>& isShared, int threads);

    // From now on in a scratch file in this directory.
    void KeepIn(std::string directory) { scratchDirectory = std::move(directory); }

    std::size_t Entries() const { return panelAt.back(); }
    std::size_t BufferEntries() const { return bufferEntries; } // with a scratch file

    // Memory and disk for a new factor. Errors: throws std::bad_alloc, ScratchFailure.
    void Open();

    // stack: of the thread that works on it alone, or UpdatePlaces::SharedStack.
    double* Panel(int front, int stack);

    // To the disk when the panel is made, from there before it is used. All members at work on the panel call it; what
    // the disk refuses is told by ThrowFailure, after all are done.
    void Write(CrewMember& member, int front, int stack);
    void Read(CrewMember& member, int front, int stack);
    void ThrowFailure() const;

private:
    template <class Transfer> void InPieces(CrewMember& member, int front, int stack, const Transfer& transfer);

    std::vector<std::size_t> panelAt;
    std::size_t ownEntries = 0; // of the largest panel that one thread computes alone
    std::size_t bufferEntries = 0;
    std::string scratchDirectory; // empty: in memory
    LargeArray values;            // the factor, or the buffers: of the threads one behind the other, or of all together
    std::unique_ptr<platform::ScratchFile> file;
    std::mutex failureMutex;
    std::string failure;
};

} // namespace tarnvexo
