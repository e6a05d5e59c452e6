#include "tests/torture/SystemTrouble.h"

#include <wininet.h>

#include <string_view>

#include "tests/torture/World.h"

namespace torture {

const std::vector<SystemWay>& systemWays() {
  static const std::vector<SystemWay> ways = {
      {Kind::registry, "registry denied", {ERROR_ACCESS_DENIED, E_ACCESSDENIED}},
      {Kind::registry, "registry missing", {ERROR_FILE_NOT_FOUND, E_FAIL}},
      {Kind::ini, "profile missing", {ERROR_FILE_NOT_FOUND, E_FAIL}},
      {Kind::files, "file missing", {ERROR_FILE_NOT_FOUND, E_FAIL}},
      {Kind::files, "file denied", {ERROR_ACCESS_DENIED, E_ACCESSDENIED}},
      {Kind::files, "disk full", {ERROR_DISK_FULL, E_FAIL}},
      {Kind::files, "file in use", {ERROR_SHARING_VIOLATION, E_FAIL}},
      {Kind::files, "files vanish", {ERROR_SUCCESS, S_OK}, Happens::filesVanish},
      {Kind::memory, "no memory", {ERROR_NOT_ENOUGH_MEMORY, E_OUTOFMEMORY}},
      {Kind::windows, "no window", {ERROR_NOT_ENOUGH_MEMORY, E_OUTOFMEMORY}},
      {Kind::drawing, "no drawing", {ERROR_NOT_ENOUGH_MEMORY, E_OUTOFMEMORY}},
      {Kind::com, "COM out of memory", {ERROR_NOT_ENOUGH_MEMORY, E_OUTOFMEMORY}},
      {Kind::com, "class not registered", {ERROR_FILE_NOT_FOUND, REGDB_E_CLASSNOTREG}},
      {Kind::network, "no connection", {ERROR_INTERNET_CANNOT_CONNECT, E_FAIL}},
      {Kind::yields, "cancelled", {ERROR_SUCCESS, S_OK}, Happens::cancel},
      {Kind::yields, "closed", {ERROR_SUCCESS, S_OK}, Happens::close},
      {Kind::yields, "all closed", {ERROR_SUCCESS, S_OK}, Happens::closeAll},
      {Kind::yields, "owner destroyed", {ERROR_SUCCESS, S_OK}, Happens::ownerGoes},
      {Kind::yields, "clicked again", {ERROR_SUCCESS, S_OK}, Happens::clickedAgain},
  };
  return ways;
}

namespace {

std::wstring wide(std::string_view text) { return {text.begin(), text.end()}; }

std::wstring described(const SystemCall& call) {
  std::wstring text = wide(call.narrowText ? call.narrowText : "");
  if (call.wideText) text = call.wideText;
  // The folder of the tests has another name each time.
  text.erase(0, text.find_last_of(L"\\/") + 1);
  return wide(call.function) + (text.empty() ? text : L" " + text);
}

}  // namespace

SystemTrouble::SystemTrouble(World& world, const SystemWay& way, int number)
    : world_(world), way_(way), number_(number) {
  world.system().watch(way.kind, [this](const SystemCall& call) { return meet(call); });
}

SystemTrouble::~SystemTrouble() { world_.system().unwatch(); }

const SystemFailure* SystemTrouble::meet(const SystemCall& call) {
  if (call.number != number_) return nullptr;
  function_ = described(call);
  switch (way_.happens) {
    case Happens::failure:
      return &way_.failure;
    case Happens::filesVanish:
      world_.loseTemplates();
      break;
    case Happens::cancel:
      if (const auto dialogs = ownDialogs(); !dialogs.empty())
        PostMessageW(dialogs.front(), WM_COMMAND, IDCANCEL,
                     reinterpret_cast<LPARAM>(GetDlgItem(dialogs.front(), IDCANCEL)));
      break;
    case Happens::close:
      if (const auto dialogs = ownDialogs(); !dialogs.empty())
        PostMessageW(dialogs.front(), WM_CLOSE, 0, 0);
      break;
    case Happens::closeAll:
      for (const HWND dialog : ownDialogs()) PostMessageW(dialog, WM_CLOSE, 0, 0);
      break;
    case Happens::ownerGoes:
      world_.frame().close();
      break;
    case Happens::clickedAgain:
      world_.clickBoth();
      break;
  }
  return nullptr;
}

int countSystemCalls(World& world, Kind kind, const std::function<void()>& body) {
  int calls = 0;
  world.system().watch(kind, [&](const SystemCall& call) {
    calls = call.number;
    return nullptr;
  });
  body();
  world.system().unwatch();
  return calls;
}

}  // namespace torture
