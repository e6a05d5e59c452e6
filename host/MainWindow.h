// The host's main window: menu bar, folder list and status line.
#pragma once

#include <windows.h>

#include <string>

#include "host/AddIns.h"
#include "host/FolderView.h"
#include "host/NativeMenu.h"
#include "host/model/Host.h"

namespace standin {

class MainWindow {
 public:
  MainWindow(Host& host, AddIns& addIns);
  ~MainWindow();
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;

  bool create();
  HWND handle() const noexcept { return window_; }
  // Start-up is over, the add-ins are connected. Whoever asks the window with `startedMessage` gets
  // TRUE from then on.
  void setStarted() noexcept { started_ = true; }
  static constexpr UINT startedMessage = WM_APP + 3;
  void setStatus(const std::wstring& text) const;

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam,
                                    LPARAM lParam) noexcept;
  LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam);
  void createChildren();
  void layOut() const;
  void postOnce(UINT message, bool& posted) const;
  void rebuildMenu();
  void showWeb();
  void onCommand(UINT command);
  void run(long command, const std::wstring& caption);
  void openWeb();

  Host& host_;
  AddIns& addIns_;
  HWND window_ = nullptr;
  HWND status_ = nullptr;
  FolderView folders_;
  NativeMenu menu_;
  bool started_ = false;
  bool menuPosted_ = false;
  bool webPosted_ = false;
  bool inMenu_ = false;
};

}  // namespace standin
