#include "solver/FrontSchedule.h"

#include "solver/FrontElimination.h"
#include "solver/NodeOrdering.h"
#include "support/NodeGraphs.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

constexpr int Crews[] = {1, 2, 3, 8};

// A plate beside smaller parts and nodes without neighbours.
NodeGraph Forest()
{
    std::vector<Edge> edges;
    const NodeGraph plate = QuadGrid(14, 14);
    for (int n = 0; n < plate.Size(); ++n) {
        for (int e = plate.first[n]; e < plate.first[n + 1]; ++e) { edges.push_back({n, plate.neighbours[e]}); }
    }
    for (int n = 201; n < 240; ++n) { edges.push_back({n - 1, n}); }
    for (int n = 241; n < 260; ++n) { edges.push_back({240, n}); }
    return GraphOf(280, edges);
}

void ForEachSchedule(const auto& check)
{
    static const std::vector<std::pair<std::string, FrontTree>> trees = [] {
        std::vector<std::pair<std::string, FrontTree>> list;
        const auto add = [&](const std::string& name, const NodeGraph& graph, const EliminationOrder& order) {
            list.push_back({name, BuildFrontTree(LowerPattern(graph, order))});
        };
        add("nothing", GraphOf(0, {}), NaturalOrder(0));
        add("one node", GraphOf(1, {}), NaturalOrder(1));
        add("nodes without neighbours", GraphOf(40, {}), NaturalOrder(40));
        add("plate", QuadGrid(25, 25), OrderNodes(QuadGrid(25, 25)).order);
        add("brick", Brick(9, 9, 9), OrderNodes(Brick(9, 9, 9)).order);
        add("girder", Girder(6, 80), OrderNodes(Girder(6, 80)).order);
        add("girder in bands", Girder(6, 80), NaturalOrder(480)); // one front above the other
        add("star", Star(2000), OrderNodes(Star(2000)).order);
        add("forest", Forest(), OrderNodes(Forest()).order);
        add("random", RandomGraph(300, 400, 1), RandomOrder(300, 1));
        return list;
    }();
    for (const auto& [name, tree] : trees) {
        for (const int members : Crews) {
            SCOPED_TRACE(name + ", " + std::to_string(members) + " members");
            check(tree, members, ScheduleFronts(tree, members));
        }
    }
}

TEST(FrontSchedule, ComputesEveryFrontOnce)
{
    ForEachSchedule([](const FrontTree& tree, int, const FrontSchedule& schedule) {
        std::vector<int> times(tree.fronts.size(), 0);
        for (const int root : schedule.subtrees) {
            for (int f = schedule.firstFront[root]; f <= root; ++f) { ++times[f]; }
        }
        for (const int f : schedule.shared) { ++times[f]; }
        EXPECT_EQ(times, std::vector<int>(tree.fronts.size(), 1));
    });
}

TEST(FrontSchedule, ComputesEveryFrontAfterItsChildren)
{
    ForEachSchedule([](const FrontTree& tree, int, const FrontSchedule& schedule) {
        std::vector<int> turn(tree.fronts.size(), 0); // 0: in a subtree, before all shared ones
        for (std::size_t k = 0; k < schedule.shared.size(); ++k) { turn[schedule.shared[k]] = static_cast<int>(k) + 1; }
        for (const int root : schedule.subtrees) {
            for (int f = schedule.firstFront[root]; f < root; ++f) { EXPECT_LE(tree.fronts[f].parent, root); }
        }
        for (const int f : schedule.shared) {
            for (const int child : tree.ChildrenOf(tree.fronts[f])) { EXPECT_LT(turn[child], turn[f]); }
        }
    });
}

TEST(FrontSchedule, BeginsASubtreeWithItsFirstLeaf)
{
    ForEachSchedule([](const FrontTree& tree, int, const FrontSchedule& schedule) {
        ASSERT_EQ(schedule.firstFront.size(), tree.fronts.size());
        for (std::size_t f = 0; f < tree.fronts.size(); ++f) {
            int first = static_cast<int>(f);
            while (tree.fronts[first].children > 0) { first = tree.ChildrenOf(tree.fronts[first])[0]; }
            EXPECT_EQ(schedule.firstFront[f], first);
        }
    });
}

TEST(FrontSchedule, LeavesTheTreeWholeForOneThread)
{
    ForEachSchedule([](const FrontTree&, int members, const FrontSchedule& schedule) {
        if (members == 1) {
            EXPECT_TRUE(schedule.shared.empty());
        }
    });
}

// A girder that is cut more than a thousand times beside a hundred thousand nodes of which each is a subtree: what grew
// by the product of the two would not come to an end.
TEST(FrontSchedule, CutsALongTreeBesideManySmallOnes)
{
    constexpr int Alone = 100000, Members = 64;
    const NodeGraph girder = Girder(6, 1500);
    std::vector<Edge> edges;
    for (int n = 0; n < girder.Size(); ++n) {
        for (int e = girder.first[n]; e < girder.first[n + 1]; ++e) { edges.push_back({n, girder.neighbours[e]}); }
    }
    const int nodes = girder.Size() + Alone;
    const FrontTree tree = BuildFrontTree(LowerPattern(GraphOf(nodes, edges), NaturalOrder(nodes)));
    const FrontSchedule schedule = ScheduleFronts(tree, Members);
    EXPECT_EQ(schedule.subtrees.size(), Alone + 1u);
    EXPECT_GT(schedule.shared.size(), 1000u);
}

TEST(FrontSchedule, GivesEveryThreadOfABrickASubtree)
{
    const NodeGraph brick = Brick(9, 9, 9);
    const FrontTree tree = BuildFrontTree(LowerPattern(brick, OrderNodes(brick).order));
    for (const int members : Crews) {
        EXPECT_GE(ScheduleFronts(tree, members).subtrees.size(), static_cast<std::size_t>(members));
    }
}

// Memory of a crew as MultifrontalEngine lays it out: what subtrees leave, then the two stacks of every member, or the
// two of all.
class Memory {
public:
    Memory(const UpdatePlaces& places, const std::vector<std::size_t>& sizes, int members)
        : places(places), sizes(sizes), owner(places.Entries(members), Free)
    {
    }

    // Front f is computed: what was there is not needed any more. member: SharedStack for all together.
    void Put(int f, int member)
    {
        for (std::size_t i = Begin(f, member); i < Begin(f, member) + sizes[f]; ++i) {
            ASSERT_LT(i, owner.size()) << "front " << f;
            ASSERT_EQ(owner[i], Free) << "front " << f << " at entry " << i;
            owner[i] = f;
        }
    }

    // What is left of it is added to its parent.
    void Take(int f, int member)
    {
        for (std::size_t i = Begin(f, member); i < Begin(f, member) + sizes[f]; ++i) {
            ASSERT_EQ(owner[i], f) << "at entry " << i;
            owner[i] = Free;
        }
    }

private:
    static constexpr int Free = -1;

    std::size_t Begin(int f, int member) const
    {
        return (places.side[f] == UpdatePlaces::OfItsOwn ? 0 : places.ofItsOwn) + places.Begin(f, member);
    }

    const UpdatePlaces& places;
    const std::vector<std::size_t>& sizes;
    std::vector<int> owner; // front of every entry
};

// All fronts in an order that a crew of this size may go through: members take turns front by front, each on the next
// subtree that is left when it is done with one.
void ExpectNoOverlap(const FrontTree& tree, int members, const FrontSchedule& schedule,
                     const std::vector<std::size_t>& sizes)
{
    const UpdatePlaces places = PlaceUpdates(tree, schedule, sizes);
    Memory memory(places, sizes, members);
    const auto compute = [&](int f, int member) {
        memory.Put(f, member); // beside what is left of its children
        for (const int child : tree.ChildrenOf(tree.fronts[f])) { memory.Take(child, member); }
    };
    struct Member {
        int next = 0, last = -1;
    };
    std::vector<Member> crew(static_cast<std::size_t>(members));
    std::size_t taken = 0;
    for (bool isBusy = true; isBusy;) {
        isBusy = false;
        for (int m = 0; m < members; ++m) {
            Member& member = crew[m];
            if (member.next > member.last) {
                if (taken == schedule.subtrees.size()) {
                    continue;
                }
                member.last = schedule.subtrees[taken++];
                member.next = schedule.firstFront[member.last];
            }
            isBusy = true;
            compute(member.next++, m);
            if (member.next > member.last && tree.fronts[member.last].parent == -1) {
                memory.Take(member.last, m); // nobody else does
            }
            if (testing::Test::HasFatalFailure()) {
                return;
            }
        }
    }
    for (const int f : schedule.shared) {
        compute(f, UpdatePlaces::SharedStack);
        if (testing::Test::HasFatalFailure()) {
            return;
        }
    }
}

TEST(FrontSchedule, PlacesUpdatesWhereNoneIsThatIsNeededYet)
{
    ForEachSchedule([](const FrontTree& tree, int members, const FrontSchedule& schedule) {
        std::vector<std::size_t> sizes;
        for (const Front& front : tree.fronts) { sizes.push_back(UpdateEntries(front.Size()) / 36); }
        ExpectNoOverlap(tree, members, schedule, sizes);
    });
}

// Sizes that have nothing to do with the fronts, roots that leave something and fronts that leave nothing among them.
TEST(FrontSchedule, PlacesThingsOfAnySize)
{
    ForEachSchedule([](const FrontTree& tree, int members, const FrontSchedule& schedule) {
        std::mt19937 generator(3);
        std::vector<std::size_t> sizes(tree.fronts.size());
        for (std::size_t& size : sizes) { size = generator() % 3 == 0 ? 0 : generator() % 20; }
        ExpectNoOverlap(tree, members, schedule, sizes);
    });
}

// A chain of fronts needs two of them at a time, whatever its length.
TEST(FrontSchedule, NeedsNoMoreMemoryForALongerChain)
{
    const auto entries = [](int nodes) {
        const FrontTree tree = BuildFrontTree(LowerPattern(Girder(6, nodes), NaturalOrder(6 * nodes)));
        const FrontSchedule schedule = ScheduleFronts(tree, 1);
        std::vector<std::size_t> sizes;
        for (const Front& front : tree.fronts) { sizes.push_back(UpdateEntries(front.Size())); }
        return PlaceUpdates(tree, schedule, sizes).Entries(1);
    };
    EXPECT_EQ(entries(200), entries(100));
}

} // namespace
} // namespace tarnvexo
