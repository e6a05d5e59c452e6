// What shows a download while it runs.
#pragma once

#include <windows.h>

#include <string>

#include "common/KeepGoing.h"
#include "common/module.h"

// Progress never fails the run.
class DownloadView : public KeepGoing {
 public:
  virtual void showCaption(const std::wstring& text) = 0;
  // The file at hand: its address, and how much of it has come.
  virtual void showCurrent(const std::wstring& text) = 0;
  virtual void showCurrentSize(const std::wstring& text) = 0;
  // The size of all files.
  virtual void showOverallSize(const std::wstring& text) = 0;

  // The file's bar and the run's bar, from 0 to the maximum; nothing passes the maximum.
  virtual void resetCurrent(short maximum) = 0;
  virtual void stepCurrent(short by) = 0;
  virtual void resetOverall(short maximum) = 0;
  virtual void stepOverall() = 0;

  // From here on the run cannot be cancelled.
  virtual void disableCancel() = 0;

  // A message with the critical icon.
  virtual void fail(const std::wstring& text, const std::wstring& title = module::title) = 0;
  // A Yes/No question titled with the caption; true for Yes.
  virtual bool ask(const std::wstring& text) = 0;

  // Over which services with messages of their own show them; may be null.
  virtual HWND messageOwner() const = 0;

 protected:
  ~DownloadView() = default;
};
