#include "checks/ModelExtent.h"

#include <algorithm>

namespace tarnvexo {

double ModelExtent(const ModelStore& model)
{
    if (model.NodeCoordinates.empty()) {
        return 0.0;
    }
    Vector3 low = model.NodeCoordinates.front(), high = low;
    for (const Vector3& node : model.NodeCoordinates) {
        for (int k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], node[k]);
            high[k] = std::max(high[k], node[k]);
        }
    }
    return Length(high - low);
}

} // namespace tarnvexo
