#include "common/handles.h"

namespace handles {

long& liveCount() noexcept {
  static long count = 0;
  return count;
}

}  // namespace handles
