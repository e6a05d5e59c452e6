#include "tests/torture/HostTrouble.h"

#include "tests/support/ModalDriver.h"

namespace torture {
namespace {

constexpr DWORD slowness = 30;  // milliseconds

constexpr const char* names[hostWays] = {
    "refused with a text", "refused without a text", "nothing",         "a text",
    "an object",           "disconnected",           "gone for good",   "slow",
    "window closed",       "all windows closed",     "owner destroyed", "clicked again",
};

void letMessagesThrough(DWORD milliseconds) {
  const DWORD start = GetTickCount();
  pumpUntil([&] { return GetTickCount() - start >= milliseconds; });
}

void closeWindows(std::size_t most) {
  for (const HWND dialog : ownDialogs())
    if (most-- > 0) PostMessageW(dialog, WM_CLOSE, 0, 0);
  letMessagesThrough(1);
}

}  // namespace

const char* nameOf(HostWay way) { return names[static_cast<int>(way)]; }

bool isFailure(HostWay way) { return way < HostWay::slow; }

HostTrouble::HostTrouble(World& world, HostWay way, int number)
    : world_(world), way_(way), number_(number) {
  world.host().faults().watch([this](const standin::HostCall& call) { return meet(call); });
}

HostTrouble::~HostTrouble() { world_.host().faults().watch(nullptr); }

std::optional<com::Variant> HostTrouble::meet(const standin::HostCall& call) {
  if (call.number == number_) member_ = call.member;
  const bool lasts = way_ == HostWay::goneForGood;
  if (call.number != number_ && !(lasts && call.number > number_)) return std::nullopt;
  return answer();
}

std::optional<com::Variant> HostTrouble::answer() {
  switch (way_) {
    case HostWay::refusedWithText:
      throw standin::Refusal{E_FAIL, refusalText};
    case HostWay::refusedWithoutText:
      throw standin::Refusal{E_FAIL, L""};
    case HostWay::nothing:
      return world_.host().session().nothing();
    case HostWay::aText:
      return com::Variant(L"another text");
    case HostWay::anObject:
      return com::Variant(world_.host().application());
    case HostWay::disconnected:
    case HostWay::goneForGood:
      throw standin::Failure{RPC_E_DISCONNECTED};
    case HostWay::slow:
      letMessagesThrough(slowness);
      break;
    case HostWay::windowClosed:
      closeWindows(1);
      break;
    case HostWay::allWindowsClosed:
      closeWindows(100);
      break;
    case HostWay::ownerDestroyed:
      world_.frame().close();
      letMessagesThrough(1);
      break;
    case HostWay::clickedAgain:
      world_.clickBoth();
      break;
  }
  return std::nullopt;
}

int countHostCalls(World& world, const std::function<void()>& body) {
  int calls = 0;
  world.host().faults().watch([&](const standin::HostCall& call) -> std::optional<com::Variant> {
    calls = call.number;
    return std::nullopt;
  });
  body();
  world.host().faults().watch(nullptr);
  return calls;
}

}  // namespace torture
