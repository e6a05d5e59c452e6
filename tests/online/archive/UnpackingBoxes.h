// Unpacking without a download: its questions and messages are boxes over no window.
#pragma once

#include "common/message.h"
#include "online/archive/CUnzip.h"
#include "online/archive/unzip_files.h"
#include "online/unpacking_boxes.h"

class UnpackingBoxes final : public UnpackingQuestions {
 public:
  // `run` is asked whether to go on; without one, nothing stops it.
  explicit UnpackingBoxes(KeepGoing* run = nullptr) : run_(run) {}

  bool keepGoing() override { return !run_ || run_->keepGoing(); }
  Overwrite overwrite(const std::wstring& name) override {
    return online::askToOverwrite(nullptr, name);
  }
  std::optional<std::wstring> password(int longest) override {
    return online::askForPassword(nullptr, longest);
  }
  void fail(std::wstring_view text, std::wstring_view title) noexcept override {
    showMessage(nullptr, text, MB_ICONHAND, title);
  }

 private:
  KeepGoing* run_;
};

inline bool unzipFiles(const std::wstring& archive, const std::wstring& folder,
                       KeepGoing* run = nullptr) {
  UnpackingBoxes boxes(run);
  return modCommon::UnzipFiles(archive, folder, boxes);
}

inline long runExtractor(CUnzip& extractor, std::wstring& archive, std::wstring& folder) {
  UnpackingBoxes boxes;
  return extractor.Unzip(archive, folder, boxes);
}
