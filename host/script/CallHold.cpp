#include "host/script/CallHold.h"

#include <algorithm>

namespace standin {

void CallHold::hold(const std::wstring& member, int skipped) {
  const auto gate = std::make_shared<Gate>();
  gate->open.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  gate->skipped = skipped;
  faults_.before(member, [gate] { pass(*gate); });
  gates_.push_back(gate);
}

bool CallHold::isCallWaiting() const noexcept {
  return std::ranges::any_of(gates_, [](const auto& gate) { return gate->callWaits.load(); });
}

void CallHold::release() noexcept {
  for (const auto& gate : gates_) SetEvent(gate->open.get());
  gates_.clear();
}

void CallHold::pass(Gate& gate) noexcept {
  if (gate.skipped-- > 0) return;
  const HANDLE open = gate.open.get();
  gate.callWaits = true;
  while (MsgWaitForMultipleObjects(1, &open, FALSE, INFINITE, QS_SENDMESSAGE | QS_PAINT) ==
         WAIT_OBJECT_0 + 1) {
    MSG message;
    while (PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE))
      DispatchMessageW(&message);
  }
  gate.callWaits = false;
}

}  // namespace standin
