// The order of things that stay where they are.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace archive {

// The numbers from 0 to `count` - 1, sorted by `isBefore`.
std::vector<std::size_t> sorted(std::size_t count,
                                const std::function<bool(std::size_t, std::size_t)>& isBefore);

}  // namespace archive
