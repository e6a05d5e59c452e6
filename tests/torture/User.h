// Somebody at the windows who wants one thing done in each, agrees to what is asked, and leaves.
#pragma once

#include <windows.h>

#include <set>
#include <string>
#include <vector>

#include "common/handles.h"
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
  // The captions of every window so far, which viewers, and menus.
  std::vector<std::wstring> dialogs() const;

  // Instead of that, opens every window of this process that there is and closes it again.
  void lookAtEverything() { aim_ = Aim::look; }
  // Instead of that, reads the help and a template's notes.
  void readEverything() { aim_ = Aim::read; }
  // Instead of the user; null for the user again.
  void giveWayTo(Monkey* monkey) { monkey_ = monkey; }

  // What is chosen in the browser.
  static constexpr wchar_t wantedTemplate[] = L"Night Ferry";
  // What is typed where a password is asked for.
  static constexpr char password[] = "lantern";

 private:
  enum class Aim { use, look, read };
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
  void read(const Visited& visited);
  void leaveMenu();
  void closeViewer();
  void closeOther();

  FakeWebBrowser& page_;
  std::wstring download_;
  ModalDriver modal_;
  std::vector<Visited> visited_;
  UINT_PTR timer_ = 0;
  bool refuses_;
  Aim aim_ = Aim::use;
  Monkey* monkey_ = nullptr;
  std::set<HWND> met_;
  bool awaitsViewer_ = false;
  handles::Kernel viewer_;            // the process
  std::vector<std::wstring> others_;  // than dialogs
};

}  // namespace torture
