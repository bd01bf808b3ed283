// The models of this repository are sound: what the rules of shape and use say of them is true, and next to nothing.
#include "checks/ModelChecks.h"
#include "input/StrictReader.h"
#include "support/CheckedModels.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace tarnvexo {
namespace {

// Names of the rules of shape and use that find something of this severity, with a space behind each.
std::string RulesBroken(const std::filesystem::path& modelFile, Severity severity)
{
    ModelStore model;
    const auto reading = ReadModelFileStrictly(model, modelFile.string().c_str(), RuleBook());
    if (!reading || !reading->IsUsable()) {
        return "cannot be read";
    }
    std::vector<Finding> findings;
    CheckShapes(model, RuleBook(), findings);
    CheckUse(model, RuleBook(), findings);
    std::string names;
    for (const Finding& finding : findings) {
        if (finding.severity == severity) {
            names += std::string(RuleOf(finding.rule).name) + " ";
        }
    }
    return names;
}

TEST(CommittedModels, HaveNoFaultOfShapeOrUseButTheLoadThatOneIsMadeWith)
{
    int models = 0;
    for (const char* folder : {"/tests/cases", "/examples"}) {
        for (const auto& entry : std::filesystem::directory_iterator(std::string(TARNVEXO_SOURCE_DIR) + folder)) {
            const std::filesystem::path file = entry.path() / "fem_solving.txt";
            if (!std::filesystem::exists(file)) {
                continue;
            }
            ++models;
            const std::string name = entry.path().filename().string();
            EXPECT_EQ(RulesBroken(file, Severity::Error), name == "format_odd" ? "unstiffened-load " : "") << name;
            EXPECT_EQ(RulesBroken(file, Severity::Warning), name == "curved_shell" ? "taper " : "") << name;
        }
    }
    EXPECT_GT(models, 10);
}

} // namespace
} // namespace tarnvexo
