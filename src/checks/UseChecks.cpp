#include "checks/ModelChecks.h"

namespace tarnvexo {

void CheckUse(const ModelStore&, const RuleBook&, std::vector<Finding>&) {}

} // namespace tarnvexo
