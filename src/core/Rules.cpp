#include "core/Rules.h"

#include <cstring>

namespace tarnvexo {

namespace {

constexpr Severity Note = Severity::Note, Warning = Severity::Warning, Error = Severity::Error;

// In the order of RuleId. Limits of shape are those at which pre-processors of the field warn by default.
constexpr Rule Rules[RuleCount] = {
    {RuleId::Format, "format", Error, NoLimit, "", "places where the text is not what the format says",
     "write the record as the format says"},
    {RuleId::MaterialValue, "material-value", Error, NoLimit, "", "materials with values that no material has",
     "give E above 0, Mu from 0 to below 0.5, Density of 0 or more"},
    {RuleId::ThicknessValue, "thickness-value", Error, NoLimit, "", "thicknesses that are not above 0",
     "give TK above 0"},
    {RuleId::SectionValue, "section-value", Error, NoLimit, "", "beam sections with sizes that no section has",
     "give Hw, Tw, R and T above 0, Bf and Tf above 0 or one of them 0 for a plain rectangle"},
    {RuleId::BeamOrientation, "beam-orientation", Error, NoLimit, "",
     "beams whose orientation vector is zero or along the beam", "give a vector across the beam"},
    {RuleId::DuplicateRestraint, "duplicate-restraint", Warning, NoLimit, "",
     "nodes that are restrained more than once", "keep one record per node"},
    {RuleId::DuplicateLoad, "duplicate-load", Warning, NoLimit, "", "nodes or elements that are loaded more than once",
     "check that the sum of the records is what is meant"},
    {RuleId::TrailingText, "trailing-text", Warning, NoLimit, "", "texts behind the last section",
     "take the text away, or correct the counts above it"},
    {RuleId::LabelOrder, "label-order", Note, NoLimit, "", "records whose written number is not their position",
     "nothing, if references count positions from 0; else number the records by position"},
    {RuleId::LabelsFromOne, "labels-from-one", Warning, NoLimit, "",
     "tables whose records are numbered from 1, where references count from 0",
     "number the records from 0, and look whether the references to them count from 0"},
    {RuleId::LabelGap, "label-gap", Warning, NoLimit, "",
     "tables in which a number is left out or stands twice, as where a record was deleted or copied",
     "look whether a record is missing or doubled there: references count positions, so those behind it have moved"},
    {RuleId::FlagValue, "flag-value", Warning, NoLimit, "", "flags other than 0 and 1", "write 0 or 1"},
    {RuleId::CollapsedElement, "collapsed-element", Error, NoLimit, "", "shells with two corners at one place",
     "use a triangle for a quadrilateral of three corners, or take the element out"},
    {RuleId::ZeroArea, "zero-area", Error, 1e-8, "area over square of the longest side", "shells without area",
     "move the nodes apart, or take the element out"},
    {RuleId::SelfCrossing, "self-crossing", Error, NoLimit, "", "quadrilaterals whose sides cross",
     "list the nodes in order around the element, or move a node that is misplaced"},
    {RuleId::InvertedQuad, "inverted-quad", Error, NoLimit, "",
     "quadrilaterals folded over themselves at an integration point", "move the nodes, or split the element"},
    {RuleId::ConcaveQuad, "concave-quad", Error, 179.0, "largest corner angle, degrees",
     "quadrilaterals with a corner that is straight or points inwards", "move the nodes, or split the element"},
    {RuleId::Warping, "warping", Warning, 10.0, "largest angle between its halves along a diagonal, degrees",
     "quadrilaterals that are not flat", "refine the mesh there, or use triangles"},
    {RuleId::AspectRatio, "aspect-ratio", Warning, 10.0, "longest over shortest side", "shells that are long and thin",
     "refine the mesh along the long sides, where stresses matter"},
    {RuleId::QuadAngle, "quad-angle", Warning, 50.0, "largest deviation of a corner from 90 degrees",
     "quadrilaterals with skew corners", "remesh, where stresses matter"},
    {RuleId::TriAngle, "tri-angle", Warning, 15.0, "smallest corner angle, degrees", "triangles with a sharp corner",
     "remesh, where stresses matter"},
    {RuleId::Taper, "taper", Warning, 0.5, "largest deviation of a corner triangle from the mean, relative",
     "quadrilaterals with opposite sides of unequal length", "remesh, where stresses matter"},
    {RuleId::ThickShell, "thick-shell", Warning, 3.0, "thickness over longest side",
     "shells thicker than they are long",
     "check that thickness and coordinates are in one unit (TK in mm, nodes in m?)"},
    {RuleId::ZeroLengthBeam, "zero-length-beam", Error, 1e-9, "length over model size", "beams without length",
     "merge its nodes and take the beam out, or move them apart"},
    {RuleId::DuplicateElement, "duplicate-element", Warning, NoLimit, "", "elements on the nodes of another one",
     "take one of them out, unless both are there"},
    {RuleId::CoincidentNodes, "coincident-nodes", Warning, 1e-6, "distance over model size",
     "nodes at the place of another one without an element between them",
     "merge them, if the structure is connected there"},
    {RuleId::FreeEdge, "free-edge", Note, NoLimit, "", "edges of one shell only", "check that the plating ends there"},
    {RuleId::TJunction, "t-junction", Warning, 1e-3, "distance over length of the edge, or of the longest side",
     "nodes on a shell that does not use them",
     "divide the shell so that it uses the node, or make the mesh on the other side as coarse"},
    {RuleId::OpposedNormals, "opposed-normals", Warning, 45.0, "sharpest fold that is looked at, degrees",
     "edges between shells with opposed normals", "turn one of them, if pressures or faces are to mean the same side"},
    {RuleId::ThicknessJump, "thickness-jump", Warning, 5.0, "thicker over thinner",
     "edges between shells of very different thickness", "check the thicknesses"},
    {RuleId::DensityJump, "density-jump", Warning, 5.0, "denser over lighter", "neighbours of very different density",
     "check the materials"},
    {RuleId::LooseBeamEnd, "loose-beam-end", Warning, NoLimit, "", "beam ends without another element, support or load",
     "connect the node, if the structure goes on there"},
    {RuleId::UnusedNode, "unused-node", Warning, NoLimit, "", "nodes without elements",
     "take them out, or connect them"},
    {RuleId::DisconnectedParts, "disconnected-parts", Warning, NoLimit, "", "parts without connection",
     "connect them, unless they are to be apart"},
    {RuleId::UnstiffenedLoad, "unstiffened-load", Error, NoLimit, "", "loads on nodes without elements",
     "connect these nodes, or take their loads away"},
    {RuleId::UnstiffenedSupport, "unstiffened-support", Warning, NoLimit, "", "supports on nodes without elements",
     "connect these nodes, or take their supports away"},
    {RuleId::NoLoad, "no-load", Warning, NoLimit, "", "models without load", "give forces or pressures"},
    {RuleId::MixedUnits, "mixed-units", Warning, NoLimit, "", "values that belong to different systems of units",
     "use one consistent set, for example N, m, kg or N, mm, t"},
    {RuleId::FloatingPart, "floating-part", Error, NoLimit, "", "parts that are free while another one is supported",
     "merge nodes that stand at one place, connect the part, support it, or take it out"},
    {RuleId::UnbalancedPart, "unbalanced-part", Error, NoLimit, "",
     "parts whose loads the inertia of the whole structure does not balance",
     "connect the part with the others, support it, or analyse it alone"},
    {RuleId::SupportsInBalance, "supports-in-balance", Warning, NoLimit, "",
     "parts with more supports than hold them in place",
     "do not use the results for a structure that stands on its supports: loads are balanced by inertia"},
};

constexpr bool IsInOrder()
{
    for (std::size_t i = 0; i < RuleCount; ++i) {
        if (Rules[i].id != static_cast<RuleId>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(IsInOrder(), "one entry per RuleId, in its order");

} // namespace

const Rule& RuleOf(RuleId id)
{
    return Rules[static_cast<std::size_t>(id)];
}

const Rule* RuleNamed(const char* name)
{
    for (const Rule& rule : Rules) {
        if (std::strcmp(rule.name, name) == 0) {
            return &rule;
        }
    }
    return nullptr;
}

const char* SeverityName(Severity severity)
{
    static constexpr const char* names[] = {"off", "note", "warning", "error"};
    return names[static_cast<int>(severity)];
}

RuleBook::RuleBook()
{
    for (std::size_t i = 0; i < RuleCount; ++i) {
        severities[i] = Rules[i].severity;
        limits[i] = Rules[i].limit;
    }
}

} // namespace tarnvexo
