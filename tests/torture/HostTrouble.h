// What can go wrong in one call of the host.
#pragma once

#include <string>

#include "tests/torture/World.h"

namespace torture {

enum class HostWay {
  refusedWithText,
  refusedWithoutText,
  nothing,
  aText,  // where something else is due, or another one
  anObject,
  disconnected,
  goneForGood,  // disconnected, as are all calls behind
  slow,         // the host lets messages through and the user acts
  windowClosed,
  allWindowsClosed,
  ownerDestroyed,
  clickedAgain,
};
inline constexpr int hostWays = 12;
const char* nameOf(HostWay way);
// The call fails, or gives what it should not.
bool isFailure(HostWay way);

inline constexpr wchar_t refusalText[] = L"The host does not want to.";

// Befalls the call of that number while it lives.
class HostTrouble {
 public:
  HostTrouble(World& world, HostWay way, int number);
  ~HostTrouble();
  HostTrouble(const HostTrouble&) = delete;
  HostTrouble& operator=(const HostTrouble&) = delete;

  // The member that it befell; empty when there was no such call.
  const std::wstring& member() const noexcept { return member_; }

 private:
  std::optional<com::Variant> meet(const standin::HostCall& call);
  std::optional<com::Variant> answer();

  World& world_;
  HostWay way_;
  int number_;
  std::wstring member_;
};

// How many calls `body` makes.
int countHostCalls(World& world, const std::function<void()>& body);

}  // namespace torture
