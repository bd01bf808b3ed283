#include "solver/FactorStore.h"

#include <algorithm>

namespace tarnvexo {

namespace {

// What one thread transfers at a time.
constexpr std::size_t PieceEntries = std::size_t(1) << 20;

} // namespace

void FactorStore::Plan(std::vector<std::size_t> places, const std::vector<unsigned char>& isShared, int threads)
{
    panelAt = std::move(places);
    values = LargeArray();
    file.reset();
    std::size_t largestShared = 0;
    ownEntries = 0;
    for (std::size_t f = 0; f < isShared.size(); ++f) {
        std::size_t& largest = isShared[f] != 0 ? largestShared : ownEntries;
        largest = std::max(largest, panelAt[f + 1] - panelAt[f]);
    }
    bufferEntries = std::max(static_cast<std::size_t>(threads) * ownEntries, largestShared);
}

void FactorStore::Open()
{
    failure.clear();
    const std::size_t entries = scratchDirectory.empty() ? Entries() : bufferEntries;
    if (values.Data() == nullptr || values.Size() != entries) {
        values = LargeArray();
        values = LargeArray(entries, scratchDirectory.empty() ? Pages::Usual : Pages::Large);
    }
    if (!scratchDirectory.empty() && !file) {
        try {
            file = std::make_unique<platform::ScratchFile>(scratchDirectory, Entries() * sizeof(double));
        } catch (const std::runtime_error& refusal) {
            throw ScratchFailure(refusal.what());
        }
    }
}

double* FactorStore::Panel(int front, int stack)
{
    if (!file) {
        return values.Data() + panelAt[front];
    }
    return values.Data() + (stack < 0 ? 0 : static_cast<std::size_t>(stack) * ownEntries);
}

template <class Transfer> void FactorStore::InPieces(CrewMember& member, int front, int stack, const Transfer& transfer)
{
    if (!file) {
        return;
    }
    const std::size_t entries = panelAt[front + 1] - panelAt[front];
    member.Each((entries + PieceEntries - 1) / PieceEntries, [&](std::size_t piece) {
        const std::size_t begin = piece * PieceEntries, count = std::min(PieceEntries, entries - begin);
        std::string reason;
        if (!transfer((panelAt[front] + begin) * sizeof(double), Panel(front, stack) + begin, count * sizeof(double),
                      reason)) {
            const std::lock_guard lock(failureMutex);
            failure.swap(reason); // nothing may throw here
        }
    });
}

void FactorStore::Write(CrewMember& member, int front, int stack)
{
    InPieces(member, front, stack, [&](std::size_t at, const double* values, std::size_t bytes, std::string& reason) {
        return file->Write(at, values, bytes, reason);
    });
}

void FactorStore::Read(CrewMember& member, int front, int stack)
{
    InPieces(member, front, stack, [&](std::size_t at, double* values, std::size_t bytes, std::string& reason) {
        return file->Read(at, values, bytes, reason);
    });
}

void FactorStore::ThrowFailure() const
{
    if (!failure.empty()) {
        throw ScratchFailure(failure);
    }
}

} // namespace tarnvexo
