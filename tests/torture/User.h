// Somebody at the windows who wants one thing done in each, agrees to what is asked, and leaves.
#pragma once

#include <windows.h>

#include <set>
#include <string>
#include <vector>

#include "tests/support/FakeWebBrowser.h"
#include "tests/support/ModalDriver.h"

namespace torture {

class Monkey;

// While it lives, on the thread of the windows.
class User {
 public:
  // `download` is the link that is followed in the catalogue; what is there already is kept when
  // the user `refuses` to have it overwritten.
  User(FakeWebBrowser& page, std::wstring download, bool refuses);
  ~User();
  User(const User&) = delete;
  User& operator=(const User&) = delete;

  // Every box so far: title, a bar, text.
  std::vector<std::wstring> boxes() const;
  const std::vector<std::wstring>& dialogs() const { return modal_.dialogs(); }

  // Instead of that, opens every window that there is and closes it again.
  void lookAtEverything() { looks_ = true; }
  // Instead of the user; null for the user again.
  void giveWayTo(Monkey* monkey) { monkey_ = monkey; }

  // What is chosen in the browser.
  static constexpr wchar_t wantedTemplate[] = L"Night Ferry";

 private:
  struct Visited {
    HWND window;
    bool isOnline;
    std::size_t done = 0;  // of what the user came for
  };

  static void CALLBACK onTimer(HWND, UINT, UINT_PTR timer, DWORD);
  void expect(const wchar_t* caption, bool isOnline);
  void lookAround();
  void act(Visited visited);
  void look(const Visited& visited);
  void closeOther();

  FakeWebBrowser& page_;
  std::wstring download_;
  ModalDriver modal_;
  std::vector<Visited> visited_;
  UINT_PTR timer_ = 0;
  bool refuses_;
  bool looks_ = false;
  Monkey* monkey_ = nullptr;
  std::set<HWND> met_;
};

}  // namespace torture
