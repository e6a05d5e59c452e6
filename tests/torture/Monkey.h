// Somebody who does anything at all in the windows that are there. The same seed makes the same
// choices; what is done is told, so that it can be seen what came before the end.
#pragma once

#include <windows.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "tests/support/FakeWebBrowser.h"
#include "tests/support/ModalDriver.h"

namespace torture {

class Monkey {
 public:
  // `addresses` are what is followed in pages, `clickEntry` clicks the menu entry of that number.
  Monkey(unsigned seed, int actions, FakeWebBrowser& page, std::vector<std::wstring> addresses,
         std::function<void(int)> clickEntry);

  bool isDone() const noexcept { return left_ <= 0; }
  // Does one thing in the window on top; closes it when everything has been done.
  void act();
  // The button that a box is left by.
  int choose(const ShownBox& box);
  // Opens a window, when none is open.
  void open();

 private:
  int below(int bound);
  template <class Several>
  const auto& oneOf(const Several& several) {
    return several[static_cast<std::size_t>(below(static_cast<int>(std::size(several))))];
  }
  void did(const std::wstring& what);
  void actIn(HWND window);
  void leaveMenu();
  void pressButton(HWND window);
  void pressKey();
  void type();
  void click(HWND window);
  void turnWheel();
  void resize(HWND window);
  void changeSystem(HWND window);
  void goOnInPage();

  std::mt19937 random_;
  int left_;
  FakeWebBrowser& page_;
  std::vector<std::wstring> addresses_;
  std::function<void(int)> clickEntry_;
};

}  // namespace torture
