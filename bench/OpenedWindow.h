// The product's browser window, opened on a folder of templates over the stand-in host.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>

#include "addin/host/HostApplication.h"
#include "bench/measure.h"
#include "catalogue/frmQuillet.h"
#include "host/model/Host.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScratchRegistry.h"

namespace bench {

// A machine on which the templates of one folder are listed.
class Machine {
 public:
  explicit Machine(const std::wstring& templates);
  ~Machine();
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

 private:
  ScratchRegistry registry_;
  ScratchFolder web_;
  ScratchFolder themes_;
  standin::Host host_;
};

// Shows itself, runs the script as soon as it is on the screen and filled, and closes.
class OpenedWindow final : public frmQuillet {
 public:
  explicit OpenedWindow(std::function<void(OpenedWindow&)> script);

  // Raises what the script raises.
  void open();

  HWND list() const noexcept;
  int rowCount() const noexcept;
  int selected() const noexcept;

 private:
  void Form_Activate() override;

  std::function<void(OpenedWindow&)> script_;
  std::optional<CannotRun> failure_;
};

// The templates are red and blue in turns, and so are their pictures.
enum class Colour { none, red, blue };
inline Colour colourOf(int row) { return row % 2 == 0 ? Colour::red : Colour::blue; }

// What the picture's place shows in its middle; none while it is hidden.
Colour shownColour(HWND window);

// Lets the window work until its picture is of that colour and painted. The answer is the time
// since the watch was started, without what looking took; less than 0 when the picture does not
// come.
double untilShown(HWND window, Colour colour, const Stopwatch& watch);

}  // namespace bench
