// The program: what its arguments ask for is done and told.
#pragma once

#include <string>
#include <vector>

#include "author/Console.h"

namespace author {

enum ExitCode : int { fine = 0, findingsOrFailure = 1, notUnderstood = 2 };

// `arguments` without the program's own name. Raises nothing.
ExitCode runProgram(const std::vector<std::wstring>& arguments, Console& console) noexcept;

}  // namespace author
