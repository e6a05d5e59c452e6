// What the rewritten sources ask, and the test programs around them.
#pragma once

namespace mutation {

inline constexpr int highest = 65535;

// Whether this change is the one that is made in this run.
bool on(int change) noexcept;

// For each change whether on() was asked for it, in this program or another one of the same run;
// none when nobody wants to know.
unsigned char* reached() noexcept;

}  // namespace mutation
