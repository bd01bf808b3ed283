// cli/RuleSettings.h
// Severities and limits of rules as a user writes them: --rule warping=off, --rule aspect-ratio=20.
#pragma once

#include "core/Rules.h"

#include <string>
#include <vector>

namespace tarnvexo {

// Each text is NAME=SETTING, or several with commas between; SETTING is off, note, warning, error, or a limit. Later
// ones count.
// Errors: UsageFault for a rule that is not there, a setting that is none, a limit that is not above 0 or that the rule
// does not have, and for the text of the model file, which is an error always.
void ApplyRuleSettings(const std::vector<std::string>& texts, RuleBook& rules);

} // namespace tarnvexo
