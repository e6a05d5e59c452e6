#include "online/archive/order.h"

#include <algorithm>

namespace archive {

std::vector<std::size_t> sorted(std::size_t count,
                                const std::function<bool(std::size_t, std::size_t)>& isBefore) {
  std::vector<std::size_t> order(count);
  for (std::size_t i = 0; i < count; ++i) order[i] = i;
  std::sort(order.begin(), order.end(),
            [&isBefore](std::size_t left, std::size_t right) { return isBefore(left, right); });
  return order;
}

}  // namespace archive
