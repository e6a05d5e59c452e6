// What a long run tells whoever started it, and asks.
#pragma once

#include <string>

#include "common/KeepGoing.h"

namespace author {

class Work : public KeepGoing {
 public:
  // A few words on what is being done now.
  virtual void show(const std::wstring& step) = 0;

 protected:
  ~Work() = default;
};

// Raises 512 when the run shall not go on.
void goOnOrCancel(KeepGoing& run);

}  // namespace author
