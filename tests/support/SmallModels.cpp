#include "support/SmallModels.h"

#include "input/ModelFileReader.h"

#include <stdexcept>

namespace tarnvexo::test {

ModelStore StoreOf(const ModelText& text)
{
    ModelStore model;
    const ModelReading reading = ReadModelText(model, text.Text(), "fem_solving.txt");
    if (reading.end != ModelReading::End::Complete || !reading.warnings.empty()) {
        throw std::runtime_error("small model: " + reading.warnings + reading.fault);
    }
    return model;
}

ModelText OneOfEachKind()
{
    ModelText model;
    model.Material(2.1e11, 0.3, 7850.0);
    model.Thickness(0.01);
    model.TSection(0.1, 0.01, 0.06, 0.008);
    model.Node(0.0, 0.0, 0.0);
    model.Node(2.0, 0.0, 0.0);
    model.Node(2.0, 1.0, 0.0);
    model.Node(0.0, 1.0, 0.0);
    model.Node(2.75, 0.5, 0.25);
    model.Quad({0, 1, 2, 3});
    model.Tri({1, 4, 2});
    model.Beam({0, 1}, {0.0, 0.0, -1.0}, 0, TSection, 0);
    model.Restrain(0, {1, 1, 1, 0, 0, 0});
    model.Restrain(1, {0, 1, 1, 0, 0, 0});
    model.Restrain(3, {0, 0, 1, 0, 0, 0});
    model.Force(4, {0.0, 0.0, 100.0, 0.0, 0.0, 0.0});
    model.QuadLoad(0, 10.0, 20.0, 30.0);
    model.TriLoad(0, 5.0, 5.0, 5.0);
    model.BeamLoad(0, 3.0, 4.0);
    return model;
}

ModelText PulledApart()
{
    ModelText text;
    text.Material(2.1e11, 0.3, 7850.0);
    text.Thickness(0.01);
    for (const double x : {0.0, 5.0}) {
        const int corner = text.Node(x, 0.0, 0.0);
        const int second = text.Node(x + 1.0, 0.0, 0.0), third = text.Node(x, 1.0, 0.0);
        text.Tri({corner, second, third});
        text.Force(corner, {x > 0.0 ? 100.0 : -100.0, 0.0, 0.0, 0.0, 0.0, 0.0});
    }
    return text;
}

} // namespace tarnvexo::test
