// What can go wrong in one call of the system.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/torture/SystemCalls.h"

namespace torture {

// What happens at the call: it fails, or something else happens before it.
enum class Happens {
  failure,
  filesVanish,  // the template and what has been downloaded
  cancel,       // by the cancel button of the window on top
  close,        // by its close box
  closeAll,
  ownerGoes,
  clickedAgain,
};

struct SystemWay {
  Kind kind;
  const char* name;
  SystemFailure failure;
  Happens happens = Happens::failure;
};
const std::vector<SystemWay>& systemWays();

class World;

// Befalls the call of that number while it lives.
class SystemTrouble {
 public:
  SystemTrouble(World& world, const SystemWay& way, int number);
  ~SystemTrouble();
  SystemTrouble(const SystemTrouble&) = delete;
  SystemTrouble& operator=(const SystemTrouble&) = delete;

  // The function that it befell, and what it was asked for; empty when there was no such call.
  const std::wstring& function() const noexcept { return function_; }

 private:
  const SystemFailure* meet(const SystemCall& call);

  World& world_;
  const SystemWay& way_;
  int number_;
  std::wstring function_;
};

int countSystemCalls(World& world, Kind kind, const std::function<void()>& body);

}  // namespace torture
