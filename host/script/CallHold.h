// Calls of the host's model that a script lets wait, so that it can look at a caller in the middle
// of its work.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "common/handles.h"
#include "host/model/Faults.h"

namespace standin {

// A held call blocks the host's thread as a slow server would: windows are painted and answer what
// they are asked meanwhile, but nothing that the user does gets through.
class CallHold {
 public:
  explicit CallHold(Faults& faults) noexcept : faults_(faults) {}
  ~CallHold() { release(); }
  CallHold(const CallHold&) = delete;
  CallHold& operator=(const CallHold&) = delete;

  // Calls of the member wait, but for the first `skipped`. Raises std::invalid_argument for a name
  // that is none.
  void hold(const std::wstring& member, int skipped);
  bool isCallWaiting() const noexcept;
  void release() noexcept;

 private:
  struct Gate {
    handles::Kernel open;
    std::atomic<int> skipped = 0;
    std::atomic<bool> callWaits = false;
  };

  static void pass(Gate& gate) noexcept;

  Faults& faults_;
  // Shared with the calls that wait: these may end after the script.
  std::vector<std::shared_ptr<Gate>> gates_;
};

}  // namespace standin
