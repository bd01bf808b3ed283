#include "refine/GeneratedModels.h"

#include "refine/LatticeMesh.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnvexo {

namespace {

constexpr Material Steel = {2.06e11, 0.3, 7850.0};
constexpr Material Aluminium = {7.2e10, 0.33, 2800.0};
constexpr double Pi = 3.14159265358979323846;
constexpr double Gravity = 9.81;    // m/s²
constexpr double SeaWater = 1025.0; // kg/m³
constexpr Vector3 Up = {0.0, 0.0, 1.0};
constexpr Vector3 Down = {0.0, 0.0, -1.0};

// Steps on a lattice whose indices follow x, y, z.
constexpr LatticePoint AlongX = {1, 0, 0};
constexpr LatticePoint AlongY = {0, 1, 0};
constexpr LatticePoint AlongZ = {0, 0, 1};

int Rounded(double value, int least)
{
    return std::max(least, static_cast<int>(std::lround(value)));
}

double Square(double value)
{
    return value * value;
}

} // namespace

ModelStore StiffenedPlateModel(int equations)
{
    constexpr double side = 10.0;
    constexpr int stiffenerSpacing = 10, stiffenerHeight = 2; // elements
    const int m = Rounded(std::sqrt(equations / 7.2), stiffenerSpacing);
    const double h = side / m;

    // Lattice: line in y, column in x, height. Numbered line by line.
    LatticeMesh mesh(Steel, [h](const LatticePoint& p) { return Vector3{h * p[1], h * p[0], h * p[2]}; });
    constexpr LatticePoint alongX = {0, 1, 0}, alongY = {1, 0, 0}, upwards = {0, 0, 1};
    const int plate = mesh.AddThickness(0.010), stiffener = mesh.AddThickness(0.012);

    const ElementRange skin = mesh.AddPanel({0, 0, 0}, alongX, alongY, m, m, plate);
    for (int column = stiffenerSpacing / 2; column <= m; column += stiffenerSpacing) {
        mesh.AddPanel({0, column, 0}, alongY, upwards, m, stiffenerHeight, stiffener);
    }
    mesh.AddQuadPressure(skin, [](const Vector3& X) {
        return -300.0 * (1.0 + 0.3 * std::cos(Pi * X[0] / side) * std::cos(2.0 * Pi * X[1] / side));
    });
    mesh.Support({0, 0, 0}, {0, m, 0}, {m, 0, 0});
    return mesh.Finish();
}

ModelStore BoxGirderModel(int equations)
{
    constexpr double width = 2.0, length = 20.0;
    constexpr int bays = 10; // of one width each
    const int k = Rounded(std::sqrt(equations / 300.0), 2);
    const int stations = bays * k;
    const double h = width / k;

    LatticeMesh mesh(Steel, [h](const LatticePoint& p) { return Vector3{h * p[0], h * p[1], h * p[2]}; });
    const int wall = mesh.AddThickness(0.012), bulkhead = mesh.AddThickness(0.010);

    const ElementRange bottom = mesh.AddPanel({0, 0, 0}, AlongX, AlongY, stations, k, wall); // e3 = +z
    const ElementRange top = mesh.AddPanel({0, 0, k}, AlongX, AlongY, stations, k, wall);    // e3 = +z
    const ElementRange right = mesh.AddPanel({0, 0, 0}, AlongX, AlongZ, stations, k, wall);  // e3 = −y
    const ElementRange left = mesh.AddPanel({0, k, 0}, AlongX, AlongZ, stations, k, wall);   // e3 = −y
    for (int bay = 1; bay <= bays; ++bay) { mesh.AddPanel({bay * k, 0, 0}, AlongY, AlongZ, k, k, bulkhead); }

    // Afloat to 1.5 m in a long wave, loaded on top towards the middle.
    const auto water = [](const Vector3& X) {
        return SeaWater * Gravity * std::max(0.0, 1.5 + 0.4 * std::cos(2.0 * Pi * X[0] / length) - X[2]);
    };
    mesh.AddQuadPressure(bottom, water);
    mesh.AddQuadPressure(right, [&](const Vector3& X) { return -water(X); });
    mesh.AddQuadPressure(left, water);
    mesh.AddQuadPressure(top, [](const Vector3& X) { return -25000.0 * Square(std::sin(Pi * X[0] / length)); });
    mesh.Support({0, 0, 0}, {stations, 0, 0}, {0, k, 0});
    return mesh.Finish();
}

ModelStore ShipHoldModel(int equations)
{
    constexpr int breadth = 24, depth = 12, bay = 4, webDepth = 2; // m
    // n elements per metre. A bay has 4n stations of 72n nodes on the skin and 128 n² inside its web frame; the frame
    // at the end comes on top.
    constexpr double girth = 2.0 * (breadth + depth);
    constexpr double webArea = breadth * depth - (breadth - 2.0 * webDepth) * (depth - 2.0 * webDepth);
    constexpr double nodesPerBay = girth * bay + webArea;
    constexpr double usualBays = 6.0;
    const int n = Rounded(std::sqrt(equations / (6.0 * nodesPerBay * usualBays)), 1);
    const double endNodes = girth * n + webArea * n * n;
    const int bays = Rounded((equations / 6.0 - endNodes) / (nodesPerBay * n * n), 1);
    const int stations = bays * bay * n, B = breadth * n, D = depth * n, w = webDepth * n;
    const double length = bays * bay;

    const double h = 1.0 / n;
    LatticeMesh mesh(Steel, [=](const LatticePoint& p) {
        return Vector3{h * p[0], h * p[1] - 0.5 * breadth, h * p[2]};
    });
    constexpr double bottomThickness = 0.016, skinThickness = 0.014;
    const int bottomPlate = mesh.AddThickness(bottomThickness), skinPlate = mesh.AddThickness(skinThickness),
              webPlate = mesh.AddThickness(0.012);
    const BeamSectionRef bottomT = mesh.AddTSection({0.35, 0.010, 0.15, 0.014}, 0.5 * bottomThickness);
    // The face bar is a flat bar across the web's edge, centred on it.
    const BeamSectionRef faceBar = mesh.AddTSection({0.20, 0.020, 0.0, 0.0}, -0.5 * 0.20);
    const BeamSectionRef skinL = mesh.AddLSection({0.25, 0.010, 0.09, 0.014}, 0.5 * skinThickness);
    BeamSectionRef mirroredL = skinL;
    mirroredL.BeamSecMirrored = true;

    const ElementRange bottom = mesh.AddPanel({0, 0, 0}, AlongX, AlongY, stations, B, bottomPlate);  // e3 = +z
    const ElementRange deck = mesh.AddPanel({0, 0, D}, AlongX, AlongY, stations, B, skinPlate);      // e3 = +z
    const ElementRange starboard = mesh.AddPanel({0, 0, 0}, AlongX, AlongZ, stations, D, skinPlate); // e3 = −y
    const ElementRange port = mesh.AddPanel({0, B, 0}, AlongX, AlongZ, stations, D, skinPlate);      // e3 = −y

    // Longitudinals every metre; the flanges of those on the sides point downwards.
    for (int y = 1; y < breadth; ++y) {
        mesh.AddBeamLine({0, y * n, 0}, AlongX, stations, Up, bottomT);
        mesh.AddBeamLine({0, y * n, D}, AlongX, stations, Down, skinL);
    }
    for (int z = 1; z < depth; ++z) {
        mesh.AddBeamLine({0, 0, z * n}, AlongX, stations, {0.0, 1.0, 0.0}, skinL);
        mesh.AddBeamLine({0, B, z * n}, AlongX, stations, {0.0, -1.0, 0.0}, mirroredL);
    }

    // Web frames with a face bar round their opening.
    constexpr Vector3 forward = {1.0, 0.0, 0.0};
    for (int frame = 0; frame <= bays; ++frame) {
        const int i = frame * bay * n;
        mesh.AddPanel({i, 0, 0}, AlongY, AlongZ, B, w, webPlate);
        mesh.AddPanel({i, 0, D - w}, AlongY, AlongZ, B, w, webPlate);
        mesh.AddPanel({i, 0, w}, AlongY, AlongZ, w, D - 2 * w, webPlate);
        mesh.AddPanel({i, B - w, w}, AlongY, AlongZ, w, D - 2 * w, webPlate);
        mesh.AddBeamLine({i, w, w}, AlongY, B - 2 * w, forward, faceBar);
        mesh.AddBeamLine({i, w, D - w}, AlongY, B - 2 * w, forward, faceBar);
        mesh.AddBeamLine({i, w, w}, AlongZ, D - 2 * w, forward, faceBar);
        mesh.AddBeamLine({i, B - w, w}, AlongZ, D - 2 * w, forward, faceBar);
    }

    // Afloat to 8 m in a wave of its length; cargo on the bottom, heavier amidships, and some on deck.
    const auto water = [length](const Vector3& X) {
        return SeaWater * Gravity * std::max(0.0, 8.0 + 1.5 * std::cos(2.0 * Pi * X[0] / length) - X[2]);
    };
    mesh.AddQuadPressure(bottom, [&](const Vector3& X) {
        return water(X) - 60000.0 * (1.0 - 0.5 * Square(std::cos(Pi * X[0] / length)));
    });
    mesh.AddQuadPressure(starboard, [&](const Vector3& X) { return -water(X); });
    mesh.AddQuadPressure(port, water);
    mesh.AddQuadPressure(deck,
                         [](const Vector3& X) { return -5000.0 * (1.0 + 0.2 * std::cos(2.0 * Pi * X[1] / breadth)); });
    mesh.Support({0, 0, 0}, {stations, 0, 0}, {0, B, 0});
    return mesh.Finish();
}

namespace {

// The barrel's lattice: station, number round the circumference from the bottom towards +y, 0; inside of the floor:
// station, number across from −y, 1.
constexpr int OnSkin = 0, OnFloor = 1;

struct BarrelShape {
    static constexpr double radius = 2.0, frameSpacing = 0.5;
    static constexpr int stringers = 24; // the floor meets the skin at numbers 4 and 20 of them: 1 m below the axis

    int n = 1;      // elements per frame bay, and per stringer bay
    int bays = 2;   // even: floor elements are two stations long
    int across = 2; // elements across the floor between the strips of triangles

    double ElementLength() const { return frameSpacing / n; }
    int Stations() const { return bays * n; }
    int Around() const { return stringers * n; }
    int FloorRight() const { return stringers / 6 * n; }      // number round, at +y
    int FloorLeft() const { return Around() - FloorRight(); } // at −y
    double FloorHalfWidth() const { return radius * std::sin(Pi / 3.0); }
    double FloorHeight() const { return -radius * std::cos(Pi / 3.0); }
    double InnerHalfWidth() const { return FloorHalfWidth() - ElementLength(); }

    Vector3 Place(const LatticePoint& p) const
    {
        const double x = ElementLength() * p[0];
        if (p[2] == OnFloor) {
            return {x, InnerHalfWidth() * (2.0 * p[1] / across - 1.0), FloorHeight()};
        }
        const double phi = 2.0 * Pi * p[1] / Around();
        return {x, radius * std::sin(phi), -radius * std::cos(phi)};
    }
    LatticePoint Skin(int station, int round) const { return {station, round % Around(), OnSkin}; }
};

BarrelShape BarrelOfSize(double equations)
{
    // A bay has n stations of 24·n nodes on the skin; half of its stations have some 3.5·n nodes on the floor.
    constexpr double nodesPerBay = BarrelShape::stringers + 0.5 * 3.5;
    constexpr double usualBays = 24.0;
    BarrelShape shape;
    shape.n = Rounded(std::sqrt(equations / (6.0 * nodesPerBay * usualBays)), 1);
    shape.bays = 2 * Rounded(0.5 * equations / (6.0 * nodesPerBay * Square(shape.n)), 2);
    shape.across = Rounded(2.0 * shape.InnerHalfWidth() / (2.0 * shape.ElementLength()), 2);
    return shape;
}

void AddSkin(LatticeMesh& mesh, const BarrelShape& shape, int thickness)
{
    for (int i = 0; i < shape.Stations(); ++i) {
        for (int c = 0; c < shape.Around(); ++c) { // e3 outwards
            mesh.AddQuad({shape.Skin(i, c), shape.Skin(i, c + 1), shape.Skin(i + 1, c + 1), shape.Skin(i + 1, c)},
                         thickness);
        }
    }
}

// Floor elements are two stations long. Along the skin, whose nodes are twice as dense, three triangles fill each bay
// of the strip between them; all with e3 upwards.
void AddFloor(LatticeMesh& mesh, const BarrelShape& shape, int thickness)
{
    const int last = shape.across;
    for (int i = 0; i < shape.Stations(); i += 2) {
        for (int j = 0; j < last; ++j) {
            mesh.AddQuad({{{i, j, OnFloor}, {i + 2, j, OnFloor}, {i + 2, j + 1, OnFloor}, {i, j + 1, OnFloor}}},
                         thickness);
        }
        const LatticePoint right[3] = {shape.Skin(i, shape.FloorRight()), shape.Skin(i + 1, shape.FloorRight()),
                                       shape.Skin(i + 2, shape.FloorRight())};
        const LatticePoint left[3] = {shape.Skin(i, shape.FloorLeft()), shape.Skin(i + 1, shape.FloorLeft()),
                                      shape.Skin(i + 2, shape.FloorLeft())};
        const LatticePoint atRight[2] = {{i, last, OnFloor}, {i + 2, last, OnFloor}};
        const LatticePoint atLeft[2] = {{i, 0, OnFloor}, {i + 2, 0, OnFloor}};
        mesh.AddTri({atRight[0], right[1], right[0]}, thickness);
        mesh.AddTri({atRight[0], atRight[1], right[1]}, thickness);
        mesh.AddTri({right[1], atRight[1], right[2]}, thickness);
        mesh.AddTri({left[0], left[1], atLeft[0]}, thickness);
        mesh.AddTri({left[1], atLeft[1], atLeft[0]}, thickness);
        mesh.AddTri({left[1], left[2], atLeft[1]}, thickness);
    }
}

void AddFrameRing(LatticeMesh& mesh, const BarrelShape& shape, int station, const BeamSectionRef& section)
{
    for (int c = 0; c < shape.Around(); ++c) {
        const double phi = 2.0 * Pi * (c + 0.5) / shape.Around();
        const Vector3 inwards = {0.0, -std::sin(phi), std::cos(phi)};
        mesh.AddBeam(shape.Skin(station, c), shape.Skin(station, c + 1), inwards, section);
    }
}

void AddFloorBeam(LatticeMesh& mesh, const BarrelShape& shape, int station, const BeamSectionRef& section)
{
    mesh.AddBeam(shape.Skin(station, shape.FloorLeft()), {station, 0, OnFloor}, Down, section);
    mesh.AddBeamLine({station, 0, OnFloor}, AlongY, shape.across, Down, section);
    mesh.AddBeam({station, shape.across, OnFloor}, shape.Skin(station, shape.FloorRight()), Down, section);
}

} // namespace

ModelStore BarrelModel(int equations)
{
    const BarrelShape shape = BarrelOfSize(equations);
    const double length = shape.bays * BarrelShape::frameSpacing;
    LatticeMesh mesh(Aluminium, [&](const LatticePoint& p) { return shape.Place(p); });
    constexpr double skinThickness = 0.002, floorThickness = 0.004;
    const int skinPlate = mesh.AddThickness(skinThickness), floorPlate = mesh.AddThickness(floorThickness);
    const BeamSectionRef frame = mesh.AddLSection({0.090, 0.002, 0.025, 0.002}, 0.5 * skinThickness);
    const BeamSectionRef stringer = mesh.AddLSection({0.030, 0.002, 0.020, 0.002}, 0.5 * skinThickness);
    const BeamSectionRef floorBeam = mesh.AddTSection({0.120, 0.003, 0.060, 0.004}, 0.5 * floorThickness);

    AddSkin(mesh, shape, skinPlate);
    const ElementRange skin = {0, mesh.QuadCount()};
    AddFloor(mesh, shape, floorPlate);
    const ElementRange floorQuads = {skin.end, mesh.QuadCount()}, floorTris = {0, mesh.TriCount()};
    for (int bay = 0; bay <= shape.bays; ++bay) { AddFrameRing(mesh, shape, bay * shape.n, frame); }
    for (int s = 0; s < BarrelShape::stringers; ++s) {
        const double phi = 2.0 * Pi * s / BarrelShape::stringers;
        mesh.AddBeamLine(shape.Skin(0, s * shape.n), AlongX, shape.Stations(), {0.0, -std::sin(phi), std::cos(phi)},
                         stringer);
    }
    for (int bay = 0; bay <= shape.bays; bay += 2) { AddFloorBeam(mesh, shape, bay * shape.n, floorBeam); }

    // Cabin pressure with the lift of the air flow on top; passengers on the floor.
    mesh.AddQuadPressure(skin, [&](const Vector3& X) {
        return 55000.0 + 2000.0 * X[2] / BarrelShape::radius * Square(std::sin(Pi * X[0] / length));
    });
    const auto passengers = [&](const Vector3& X) { return -3500.0 * (1.0 + 0.2 * std::cos(Pi * X[0] / length)); };
    mesh.AddQuadPressure(floorQuads, passengers);
    mesh.AddTriPressure(floorTris, passengers);
    mesh.Support(shape.Skin(0, shape.FloorLeft()), shape.Skin(shape.Stations(), shape.FloorLeft()),
                 shape.Skin(0, shape.FloorRight()));
    return mesh.Finish();
}

ModelStore BeamLatticeModel(int equations)
{
    constexpr double cell = 4.0, storey = 3.0;
    const int k = Rounded(std::cbrt(equations / 24.0 - 1.0) - 0.75, 2); // (4k + 1)·(k + 1)² nodes
    const int along = Rounded(equations / (6.0 * (k + 1) * (k + 1)) - 1.0, 2);
    const double length = cell * along;

    LatticeMesh mesh(Steel, [](const LatticePoint& p) { return Vector3{cell * p[0], cell * p[1], storey * p[2]}; });
    const BeamSectionRef girder = mesh.AddTSection({0.30, 0.010, 0.15, 0.015});
    const BeamSectionRef crossBeam = mesh.AddLSection({0.25, 0.010, 0.10, 0.012});
    const BeamSectionRef column = mesh.AddTubeSection({0.15, 0.010});
    const BeamSectionRef brace = mesh.AddTubeSection({0.08, 0.006});
    constexpr Vector3 forward = {1.0, 0.0, 0.0};

    const auto floorLoad = [length](const Vector3& X) {
        return -5000.0 * (1.0 + 0.3 * std::cos(2.0 * Pi * X[0] / length));
    };
    for (int l = 0; l <= k; ++l) {
        for (int j = 0; j <= k; ++j) {
            mesh.AddLineLoad(mesh.AddBeamLine({0, j, l}, AlongX, along, Up, girder), floorLoad);
        }
        for (int i = 0; i <= along; ++i) {
            mesh.AddLineLoad(mesh.AddBeamLine({i, 0, l}, AlongY, k, Up, crossBeam), floorLoad);
        }
    }
    for (int i = 0; i <= along; ++i) {
        for (int j = 0; j <= k; ++j) { mesh.AddBeamLine({i, j, 0}, AlongZ, k, forward, column); }
    }

    // One brace in every panel of the four outer walls, rising and falling in turns.
    const auto addBrace = [&](const LatticePoint& corner, const LatticePoint& sideways, int panel) {
        const LatticePoint low = panel % 2 == 0 ? corner : Advanced(corner, sideways, 1);
        const LatticePoint high = Advanced(panel % 2 == 0 ? Advanced(corner, sideways, 1) : corner, AlongZ, 1);
        mesh.AddBeam(low, high, Up, brace);
    };
    for (int l = 0; l < k; ++l) {
        for (int i = 0; i < along; ++i) {
            for (const int wall : {0, k}) { addBrace({i, wall, l}, AlongX, i + l); }
        }
        for (int j = 0; j < k; ++j) {
            for (const int wall : {0, along}) { addBrace({wall, j, l}, AlongY, j + l); }
        }
    }
    mesh.Support({0, 0, 0}, {along, 0, 0}, {0, k, 0});
    return mesh.Finish();
}

} // namespace tarnvexo
