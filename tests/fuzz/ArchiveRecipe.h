// Archives that are nearly right: what is made up is what an archive says, not where its bytes lie,
// so that many of them get through the gate.
#pragma once

#include <string>

#include "tests/fuzz/Input.h"

namespace fuzz {

// By the first byte the rest is an archive as it stands, or says what to put into one.
std::string archiveOf(Input& input);

}  // namespace fuzz
