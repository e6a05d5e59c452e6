#include "tests/support/LaunchRecorder.h"

#include <windows.h>

#include "common/handles.h"
#include "common/module.h"
#include "tests/support/ModalDriver.h"

LaunchRecorder::LaunchRecorder(std::wstring path) : path_(std::move(path)) {
  CopyFileW((module::folder() + L"launch-recorder.exe").c_str(), path_.c_str(), FALSE);
}

LaunchRecorder::~LaunchRecorder() {
  DeleteFileW((path_ + L".txt").c_str());
  // A program on its way out still holds its file.
  pumpUntil([&] { return DeleteFileW(path_.c_str()) || GetLastError() == ERROR_FILE_NOT_FOUND; });
}

std::optional<std::wstring> LaunchRecorder::commandLine(unsigned milliseconds) {
  if (!pumpUntil([&] { return wasLaunched(); }, milliseconds)) return std::nullopt;
  const std::wstring note = path_ + L".txt";
  std::wstring line;
  {
    const handles::File file(CreateFileW(note.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                         OPEN_EXISTING, 0, nullptr));
    line.resize(GetFileSize(file.get(), nullptr) / sizeof(wchar_t));
    DWORD read = 0;
    ReadFile(file.get(), line.data(), static_cast<DWORD>(line.size() * sizeof(wchar_t)), &read,
             nullptr);
  }
  DeleteFileW(note.c_str());
  return line;
}

bool LaunchRecorder::wasLaunched() const {
  return GetFileAttributesW((path_ + L".txt").c_str()) != INVALID_FILE_ATTRIBUTES;
}
