// What whoever reads the report has to know about the machine.
#pragma once

#include <string>
#include <vector>

namespace machine {

// Lines like "Windows:     5.1.2600, service pack 3, 32 bits".
std::vector<std::string> description();

// Like "2026-11-22 06:45".
std::string timeNow();

}  // namespace machine
