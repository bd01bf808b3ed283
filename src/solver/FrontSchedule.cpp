#include "solver/FrontSchedule.h"

#include <algorithm>
#include <set>

namespace tarnvexo {

namespace {

constexpr int None = -1;

// The work of subtrees may differ by this share of a thread's work before the largest is cut again.
constexpr double UnevenShare = 0.04;

std::vector<double> SecondsOfSubtrees(const FrontTree& tree)
{
    std::vector<double> seconds(tree.fronts.size());
    for (std::size_t f = 0; f < seconds.size(); ++f) {
        const Front& front = tree.fronts[f];
        seconds[f] += SecondsOf(front.Size());
        if (front.parent != None) {
            seconds[front.parent] += seconds[f] + SecondsToAdd(front.Size());
        }
    }
    return seconds;
}

// Whether nobody works much longer than the mean when whoever is free takes the next subtree, the longest first. Those
// that are short beside the mean need not be gone through, however many there are: whoever takes one has done less than
// the mean before.
template <class Subtrees>
bool IsEven(const Subtrees& subtrees, const std::vector<double>& seconds, double mean, int members)
{
    std::vector<double> busy(static_cast<std::size_t>(members), 0.0);
    for (const int root : subtrees) {
        if (seconds[root] <= UnevenShare * mean) {
            break;
        }
        double& least = *std::min_element(busy.begin(), busy.end());
        least += seconds[root];
        if (least > (1.0 + UnevenShare) * mean) {
            return false;
        }
    }
    return true;
}

} // namespace

FrontSchedule ScheduleFronts(const FrontTree& tree, int members)
{
    FrontSchedule schedule;
    schedule.firstFront.resize(tree.fronts.size());
    for (std::size_t f = 0; f < tree.fronts.size(); ++f) {
        const Front& front = tree.fronts[f];
        schedule.firstFront[f] =
            front.children == 0 ? static_cast<int>(f) : schedule.firstFront[tree.ChildrenOf(front)[0]];
        if (front.parent == None) {
            schedule.subtrees.push_back(static_cast<int>(f));
        }
    }
    const std::vector<double> seconds = SecondsOfSubtrees(tree);
    const auto byWork = [&](int a, int b) { return seconds[a] != seconds[b] ? seconds[a] > seconds[b] : a < b; };
    std::set<int, decltype(byWork)> subtrees(schedule.subtrees.begin(), schedule.subtrees.end(), byWork);
    double sum = 0.0;
    for (const int root : subtrees) { sum += seconds[root]; }
    while (members > 1 && !subtrees.empty()) {
        const int largest = *subtrees.begin();
        if (tree.fronts[largest].children == 0 || IsEven(subtrees, seconds, sum / members, members)) {
            break;
        }
        subtrees.erase(subtrees.begin());
        sum -= seconds[largest];
        schedule.shared.push_back(largest);
        for (const int child : tree.ChildrenOf(tree.fronts[largest])) {
            subtrees.insert(child);
            sum += seconds[child];
        }
    }
    schedule.subtrees.assign(subtrees.begin(), subtrees.end());
    std::sort(schedule.shared.begin(), schedule.shared.end());
    return schedule;
}

std::size_t UpdatePlaces::Entries(int members) const
{
    const std::size_t own = static_cast<std::size_t>(members) * (ownStack[Even] + ownStack[Odd]);
    return ofItsOwn + std::max(own, sharedStack[Even] + sharedStack[Odd]);
}

std::size_t UpdatePlaces::Begin(int front, int stack) const
{
    if (side[front] == OfItsOwn) {
        return at[front];
    }
    const std::size_t* const entries = stack == SharedStack ? sharedStack : ownStack;
    const std::size_t before =
        stack == SharedStack ? 0 : static_cast<std::size_t>(stack) * (entries[Even] + entries[Odd]);
    return before + (side[front] == Odd ? entries[Even] : 0) + at[front];
}

UpdatePlaces PlaceUpdates(const FrontTree& tree, const FrontSchedule& schedule, const std::vector<std::size_t>& sizes)
{
    UpdatePlaces places = {};
    places.at.resize(sizes.size());
    places.side.resize(sizes.size());
    for (std::size_t f = sizes.size(); f-- > 0;) { // parents first
        const int parent = tree.fronts[f].parent;
        places.side[f] =
            parent != None && places.side[parent] == UpdatePlaces::Even ? UpdatePlaces::Odd : UpdatePlaces::Even;
    }
    for (const int root : schedule.subtrees) {
        places.side[root] = UpdatePlaces::OfItsOwn;
        places.at[root] = places.ofItsOwn;
        places.ofItsOwn += sizes[root];
    }
    // Front by front: its own on top of the one stack, then its children's off the other.
    const auto compute = [&](int f, std::size_t filled[2], std::size_t most[2]) {
        if (places.side[f] != UpdatePlaces::OfItsOwn) {
            places.at[f] = filled[places.side[f]];
            filled[places.side[f]] += sizes[f];
            most[places.side[f]] = std::max(most[places.side[f]], filled[places.side[f]]);
        }
        for (const int child : tree.ChildrenOf(tree.fronts[f])) {
            if (places.side[child] != UpdatePlaces::OfItsOwn) {
                filled[places.side[child]] -= sizes[child];
            }
        }
    };
    for (const int root : schedule.subtrees) {
        std::size_t filled[2] = {};
        for (int f = schedule.firstFront[root]; f <= root; ++f) { compute(f, filled, places.ownStack); }
    }
    std::size_t filled[2] = {};
    for (const int f : schedule.shared) { compute(f, filled, places.sharedStack); }
    return places;
}

} // namespace tarnvexo
