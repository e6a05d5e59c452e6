// A view that notes what it is shown.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "online/transfer/DownloadView.h"

class RecordingView : public DownloadView {
 public:
  bool keepGoing() override {
    ++checks;
    return !cancelWhen || !cancelWhen();
  }
  std::wstring caption() const { return captions.empty() ? L"" : captions.back(); }
  void showCaption(const std::wstring& text) override { captions.push_back(text); }
  std::wstring current() const { return currents.empty() ? L"" : currents.back(); }
  void showCurrent(const std::wstring& text) override { currents.push_back(text); }
  void showCurrentSize(const std::wstring& text) override { currentSizes.push_back(text); }
  void showOverallSize(const std::wstring& text) override {
    overallSizes.push_back(text);
    overallMaximaBefore = overallMaxima;
  }
  void resetCurrent(short maximum) override {
    currentMaximum = maximum;
    currentValue = 0;
  }
  void stepCurrent(short by) override {
    currentValue = static_cast<short>(currentValue + by);
    ++currentSteps;
  }
  void resetOverall(short maximum) override {
    overallMaxima.push_back(maximum);
    overallValue = 0;
  }
  void stepOverall() override { ++overallValue; }
  void disableCancel() override { cancelDisabled = true; }
  void fail(std::wstring_view text, std::wstring_view title) noexcept override {
    failures.emplace_back(text, title);
  }
  bool ask(const std::wstring& text) override {
    questions.push_back(text);
    questionCaptions.push_back(caption());
    return replaceStaged;
  }
  Overwrite overwrite(const std::wstring&) override { return Overwrite::yes; }
  std::optional<std::wstring> password(int) override {
    return onPassword ? onPassword() : std::nullopt;
  }

  std::function<bool()> cancelWhen;
  std::function<std::optional<std::wstring>()> onPassword;
  bool replaceStaged = true;

  int checks = 0;
  std::vector<std::wstring> captions;
  std::vector<std::wstring> currents;
  std::vector<std::wstring> currentSizes;
  std::vector<std::wstring> overallSizes;
  std::vector<std::wstring> questions;
  std::vector<std::wstring> questionCaptions;
  std::vector<std::pair<std::wstring, std::wstring>> failures;  // text and title
  std::vector<short> overallMaxima;
  std::vector<short> overallMaximaBefore;  // before the size of all files was shown
  short overallValue = 0;
  short currentMaximum = 0;
  short currentValue = 0;
  int currentSteps = 0;
  bool cancelDisabled = false;
};
