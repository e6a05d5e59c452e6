// The browser window's dialog, filled and worked by the system's own calls alone: the dialog of the
// same resource, with the page control shown blank and a plain place for the picture.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "bench/BarePage.h"
#include "bench/bare_scan.h"
#include "common/handles.h"

namespace bench {

class BareWindow {
 public:
  // Opens on the templates of that folder; when this returns, the first one's picture is shown.
  explicit BareWindow(const std::wstring& folder);
  ~BareWindow();
  BareWindow(const BareWindow&) = delete;
  BareWindow& operator=(const BareWindow&) = delete;

  HWND window() const noexcept { return window_; }
  HWND list() const noexcept;
  int count() const noexcept { return static_cast<int>(templates_.size()); }

  // As a click on the row does it: its record is read again, its picture shown.
  void select(int row);
  // What follows a selection that the list itself has made.
  void show(int row);

 private:
  static INT_PTR CALLBACK dialogProcedure(HWND, UINT, WPARAM, LPARAM);
  static LRESULT CALLBACK pictureProcedure(HWND, UINT, WPARAM, LPARAM);

  void make();
  void fill(const std::string& folder);
  void add(const BareTemplate& found);
  void loadPicture(const std::string& file);
  void paintPicture(HDC target) const;

  HWND window_ = nullptr;
  std::optional<BarePage> page_;
  std::vector<BareTemplate> templates_;
  handles::Gdi picture_;
  SIZE size_ = {};
};

// The window and its controls, painted as they now are.
void paintAll(HWND window);

}  // namespace bench
