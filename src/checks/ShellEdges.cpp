#include "checks/ShellEdges.h"

#include <algorithm>

namespace tarnvexo {

ShellEdges::ShellEdges(const ModelStore& model, const std::vector<char>& leftOut)
    : table(model.NPOIN, [&](auto visit) {
          for (int shell = 0; shell < ShellCount(model); ++shell) {
              if (leftOut[shell]) {
                  continue;
              }
              const std::span<const int> nodes = ShellNodes(model, shell);
              for (std::size_t side = 0; side < nodes.size(); ++side) {
                  const int from = nodes[side], to = nodes[side + 1 < nodes.size() ? side + 1 : 0];
                  if (from != to) {
                      visit(std::min(from, to), EdgeUse{std::max(from, to), shell, from < to});
                  }
              }
          }
      })
{
}

} // namespace tarnvexo
