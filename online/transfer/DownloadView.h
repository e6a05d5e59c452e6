// What shows a download while it runs.
#pragma once

#include <string>

#include "online/archive/UnpackingQuestions.h"

// Progress never fails the run.
class DownloadView : public UnpackingQuestions {
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

  // A Yes/No question titled with the caption; true for Yes.
  virtual bool ask(const std::wstring& text) = 0;

 protected:
  ~DownloadView() = default;
};
