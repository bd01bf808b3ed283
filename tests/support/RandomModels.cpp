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

// Points that can hold a part: b away from a along x, c away from a along y.
struct Corners {
    int a, b, c;
};

// A structure under construction. Points keep their numbers until Finish deals the nodes' numbers at random.
class RandomStructure {
public:
    explicit RandomStructure(unsigned seed, int loadsOfKind = 1) : random(seed), loadsOfKind(loadsOfKind)
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
        points.push_back(position + origin);
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

    // A beam from the point into the open.
    void Outrigger(int point)
    {
        const Vector3 tip = points[static_cast<std::size_t>(point)] - origin + Vector3{-0.7, -0.5, 0.9};
        Beam(point, Point(tip + random.Jitter(0.2)));
    }

    // Points added from now on lie clear of those before.
    void NextPart() { origin = origin + Vector3{2.0, 20.0, -3.0}; }

    ModelText Finish(const std::vector<Corners>& parts, Supports supports)
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
        for (const Corners& part : parts) { AddSupports(part, supports); }
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

    void AddSupports(const Corners& part, Supports supports)
    {
        const auto [a, b, c] = part;
        if (supports == Supports::None) {
            return;
        }
        if (supports == Supports::Clamped) {
            text.Restrain(number[a], {1, 1, 1, 1, 1, 1});
            text.Restrain(number[b], {1, 1, 1, 0, 0, 0});
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
        for (int k = 0; k < loadsOfKind; ++k) {
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
    }

    int loadsOfKind;
    Vector3 origin = {3.0, -2.0, 1.5};
    ModelText text;
    std::vector<Vector3> points;
    std::vector<int> number; // of the node at a point
    std::vector<std::array<int, 4>> quads;
    std::vector<std::array<int, 3>> tris;
    std::vector<std::array<int, 2>> beams;
};

Corners AddPlate(RandomStructure& model, Quads quads, int m, int n)
{
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
    return {at(0, 0), at(m, 0), at(0, n)};
}

Corners AddTube(RandomStructure& model, Quads quads, int length)
{
    constexpr int around = 8;
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
    return {at(0, 0), at(length, 0), at(0, 4)};
}

// Cells in a row.
Corners AddFrame(RandomStructure& model, int along)
{
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
    return {at(0, 0), at(along, 0), at(0, 1)};
}

} // namespace

ModelText RandomModel(unsigned seed, Supports supports, Quads quads)
{
    RandomStructure model(seed);
    if (seed % 3 == 0) {
        const int m = 4 + model.random.Below(3), n = 4 + model.random.Below(3);
        return model.Finish({AddPlate(model, quads, m, n)}, supports);
    }
    if (seed % 3 == 1) {
        return model.Finish({AddTube(model, quads, 3 + model.random.Below(3))}, supports);
    }
    return model.Finish({AddFrame(model, 2 + model.random.Below(2))}, supports);
}

ModelText RandomAssembly(unsigned seed, Supports supports, Quads quads)
{
    constexpr unsigned largeEvery = 20;
    RandomStructure model(seed, 3);
    const int most = seed % largeEvery == 0 ? 18 : 5;
    const int count = supports == Supports::None ? 1 : 1 + model.random.Below(3) / 2;
    std::vector<Corners> parts;
    for (int p = 0; p < count; ++p) {
        const int kind = seed % largeEvery == 0 ? 0 : model.random.Below(3);
        if (kind == 0) {
            const int m = 1 + model.random.Below(most), n = 2 + model.random.Below(most - 1);
            parts.push_back(AddPlate(model, quads, m, n));
        } else if (kind == 1) {
            parts.push_back(AddTube(model, quads, 1 + model.random.Below(4)));
        } else {
            parts.push_back(AddFrame(model, 1 + model.random.Below(2)));
        }
        for (int k = model.random.Below(3); k > 0; --k) { model.Outrigger(parts.back().b); }
        model.NextPart();
    }
    return model.Finish(parts, supports);
}

} // namespace tarnvexo::test
