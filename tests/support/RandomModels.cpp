#include "support/RandomModels.h"

#include <cmath>
#include <numbers>
#include <numeric>
#include <random>
#include <utility>

namespace tarnvexo::test {

namespace {

class Random {
public:
    explicit Random(unsigned seed) : generator(seed) {}

    double Between(double low, double high) { return low + (high - low) * (generator() / 4294967296.0); }
    int Below(int count) { return static_cast<int>(generator() % static_cast<unsigned>(count)); }
    Vector3 Jitter(double size) { return {Between(-size, size), Between(-size, size), Between(-size, size)}; }

private:
    std::mt19937 generator;
};

// A structure under construction. Points keep their numbers until Finish deals the nodes' numbers at random.
class RandomStructure {
public:
    RandomStructure(unsigned seed, Supports supports) : random(seed), supports(supports)
    {
        for (int k = 0; k < Kinds; ++k) {
            text.Material(random.Between(7e10, 2.1e11), random.Between(0.2, 0.35), random.Between(1000.0, 9000.0));
            text.Thickness(random.Between(0.005, 0.03));
        }
        text.TSection(0.12, 0.008, 0.07, 0.01);
        text.LSection(0.1, 0.007, 0.05, 0.008);
        text.CSection(0.05, 0.006);
    }

    Random random;

    int Point(const Vector3& position)
    {
        points.push_back(position + Vector3{3.0, -2.0, 1.5});
        return static_cast<int>(points.size()) - 1;
    }
    void Cell(int a, int b, int c, int d)
    {
        if (random.Below(10) < 7) {
            quads.push_back({a, b, c, d});
        } else {
            tris.push_back({a, b, c});
            tris.push_back({a, c, d});
        }
    }
    void Tri(int a, int b, int c) { tris.push_back({a, b, c}); }
    void Beam(int a, int b) { beams.push_back({a, b}); }

    // a, b away from it along x, c away from a along y.
    ModelText Finish(int a, int b, int c)
    {
        DealNumbers();
        for (const auto& q : quads) {
            text.Quad({number[q[0]], number[q[1]], number[q[2]], number[q[3]]}, random.Below(Kinds),
                      random.Below(Kinds));
        }
        for (const auto& t : tris) {
            text.Tri({number[t[0]], number[t[1]], number[t[2]]}, random.Below(Kinds), random.Below(Kinds));
        }
        for (const auto& [from, to] : beams) {
            text.Beam({number[from], number[to]}, AcrossBeam(points[to] - points[from]), random.Below(Kinds),
                      random.Below(3), 0, random.Between(-0.05, 0.05), random.Below(2));
        }
        AddSupports(a, b, c);
        AddLoads();
        return std::move(text);
    }

private:
    static constexpr int Kinds = 3; // of materials and of thicknesses

    void DealNumbers()
    {
        std::vector<int> pointOf(points.size());
        std::iota(pointOf.begin(), pointOf.end(), 0);
        for (std::size_t k = pointOf.size(); k > 1; --k) {
            std::swap(pointOf[k - 1], pointOf[static_cast<std::size_t>(random.Below(static_cast<int>(k)))]);
        }
        number.resize(points.size());
        for (std::size_t n = 0; n < pointOf.size(); ++n) {
            const Vector3& point = points[static_cast<std::size_t>(pointOf[n])];
            number[static_cast<std::size_t>(pointOf[n])] = text.Node(point[0], point[1], point[2]);
        }
    }

    // Any direction that is not nearly the beam's.
    Vector3 AcrossBeam(const Vector3& beam)
    {
        for (;;) {
            const Vector3 direction = random.Jitter(1.0);
            if (Length(Cross(beam, direction)) > 0.5 * Length(beam) * Length(direction)) {
                return direction;
            }
        }
    }

    void AddSupports(int a, int b, int c)
    {
        if (supports == Supports::None) {
            return;
        }
        text.Restrain(number[a], {1, 1, 1, 0, 0, 0});
        text.Restrain(number[b], {0, 1, 1, 0, 0, 0});
        text.Restrain(number[c], {0, 0, 1, 0, 0, 0});
        if (supports == Supports::More) {
            for (int k = 0; k < 2; ++k) {
                std::array<int, 6> flags;
                for (int& flag : flags) { flag = random.Below(2); }
                text.Restrain(random.Below(static_cast<int>(points.size())), flags);
            }
        }
    }

    void AddLoads()
    {
        for (int k = 0; k < 3; ++k) {
            std::array<double, 6> force;
            for (double& component : force) { component = random.Between(-1000.0, 1000.0); }
            text.Force(random.Below(static_cast<int>(points.size())), force);
        }
        const auto loaded = [&](std::size_t count) { return random.Below(static_cast<int>(count)); };
        const auto pressure = [&] { return random.Between(-5000.0, 5000.0); };
        if (!quads.empty()) {
            text.QuadLoad(loaded(quads.size()), pressure(), pressure(), pressure());
        }
        if (!tris.empty()) {
            text.TriLoad(loaded(tris.size()), pressure(), pressure(), pressure());
        }
        if (!beams.empty()) {
            text.BeamLoad(loaded(beams.size()), pressure(), pressure());
        }
    }

    Supports supports;
    ModelText text;
    std::vector<Vector3> points;
    std::vector<int> number; // of the node at a point
    std::vector<std::array<int, 4>> quads;
    std::vector<std::array<int, 3>> tris;
    std::vector<std::array<int, 2>> beams;
};

ModelText RandomPlate(RandomStructure& model, Quads quads)
{
    const int m = 4 + model.random.Below(3), n = 4 + model.random.Below(3);
    std::vector<int> points;
    for (int i = 0; i <= m; ++i) {
        for (int j = 0; j <= n; ++j) {
            if (quads == Quads::Flat) { // folded along lines of one i
                points.push_back(model.Point({0.5 * i, 0.4 * j + model.random.Between(-0.05, 0.05), 0.1 * (i % 3)}));
                continue;
            }
            const Vector3 bumpy = {0.5 * i, 0.4 * j, 0.2 * std::sin(0.9 * i) * std::cos(0.7 * j)};
            points.push_back(model.Point(bumpy + model.random.Jitter(0.05)));
        }
    }
    const auto at = [&](int i, int j) { return points[static_cast<std::size_t>(i * (n + 1) + j)]; };
    for (int i = 0; i < m; ++i) {
        for (int j = 0; j < n; ++j) { model.Cell(at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)); }
    }
    for (int i = 0; i < m; ++i) { model.Beam(at(i, 1), at(i + 1, 1)); }
    return model.Finish(at(0, 0), at(m, 0), at(0, n));
}

ModelText RandomTube(RandomStructure& model, Quads quads)
{
    constexpr int around = 8;
    const int length = 3 + model.random.Below(3);
    std::vector<int> points;
    for (int i = 0; i <= length; ++i) {
        for (int j = 0; j < around; ++j) {
            const double angle = 2.0 * std::numbers::pi * j / around;
            const Vector3 round = {0.6 * i, 0.8 * std::cos(angle), 0.5 * std::sin(angle)};
            const Vector3 along = {model.random.Between(-0.05, 0.05), 0.0, 0.0}; // a prism stays one
            points.push_back(model.Point(round + (quads == Quads::Flat ? along : model.random.Jitter(0.05))));
        }
    }
    const auto at = [&](int i, int j) { return points[static_cast<std::size_t>(i * around + j % around)]; };
    for (int i = 0; i < length; ++i) {
        for (int j = 0; j < around; ++j) { model.Cell(at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)); }
        model.Beam(at(i, 2), at(i + 1, 2));
    }
    const int middle = model.Point({0.1, 0.0, 0.0});
    for (int j = 0; j < around; ++j) { model.Tri(at(0, j), at(0, j + 1), middle); }
    return model.Finish(at(0, 0), at(length, 0), at(0, 4));
}

// Cells in a row.
ModelText RandomFrame(RandomStructure& model)
{
    const int along = 2 + model.random.Below(2);
    std::vector<int> points;
    for (int i = 0; i <= along; ++i) {
        for (int j = 0; j < 4; ++j) {
            const Vector3 corner = {2.0 * i, j == 1 || j == 2 ? 1.5 : 0.0, j >= 2 ? 1.2 : 0.0};
            points.push_back(model.Point(corner + model.random.Jitter(0.1)));
        }
    }
    const auto at = [&](int i, int j) { return points[static_cast<std::size_t>(4 * i + j % 4)]; };
    for (int j = 0; j < 4; ++j) {
        for (int i = 0; i < along; ++i) { model.Beam(at(i, j), at(i + 1, j)); }
        model.Beam(at(0, j), at(0, j + 1));
        model.Beam(at(along, j), at(along, j + 1));
    }
    return model.Finish(at(0, 0), at(along, 0), at(0, 1));
}

} // namespace

ModelText RandomModel(unsigned seed, Supports supports, Quads quads)
{
    RandomStructure model(seed, supports);
    return seed % 3 == 0 ? RandomPlate(model, quads) : seed % 3 == 1 ? RandomTube(model, quads) : RandomFrame(model);
}

} // namespace tarnvexo::test
