// core/Units.h
// Units of what the program tells about itself. Those of models are the user's.
#pragma once

namespace tarnvexo {

constexpr double GigabytesPerByte = 1e-9; // decimal, as file managers and disks have it

} // namespace tarnvexo
