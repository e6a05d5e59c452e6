// What hardened-faults.exe ends with when its fault did not end it.
#pragma once

namespace faults {

constexpr unsigned long survived = 77;
constexpr unsigned long unknownFault = 78;

}  // namespace faults
