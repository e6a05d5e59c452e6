#include "tests/support/LaunchRecorder.h"

#include <windows.h>

#include "common/handles.h"
#include "common/module.h"
#include "tests/support/ModalDriver.h"

namespace {

// A program on its way out still holds its files.
void deleteSoon(const std::wstring& file) {
  pumpUntil([&] { return DeleteFileW(file.c_str()) || GetLastError() == ERROR_FILE_NOT_FOUND; });
}

}  // namespace

LaunchRecorder::LaunchRecorder(std::wstring path) : path_(std::move(path)) {
  CopyFileW((module::folder() + L"launch-recorder.exe").c_str(), path_.c_str(), FALSE);
}

LaunchRecorder::~LaunchRecorder() {
  deleteSoon(path_ + L".txt");
  deleteSoon(path_);
}

std::optional<std::wstring> LaunchRecorder::commandLine(unsigned milliseconds) {
  const std::wstring note = path_ + L".txt";
  handles::File file;
  const auto openNote = [&] {
    file = handles::File(CreateFileW(note.c_str(), GENERIC_READ,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                     nullptr, OPEN_EXISTING, 0, nullptr));
    return static_cast<bool>(file);
  };
  if (!pumpUntil(openNote, milliseconds)) return std::nullopt;
  std::wstring line(GetFileSize(file.get(), nullptr) / sizeof(wchar_t), L'\0');
  DWORD read = 0;
  ReadFile(file.get(), line.data(), static_cast<DWORD>(line.size() * sizeof(wchar_t)), &read,
           nullptr);
  file.reset();
  deleteSoon(note);
  return line;
}
