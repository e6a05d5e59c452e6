#include "common/paths.h"

#include <shellapi.h>
#include <shlwapi.h>

#include <random>

#include "common/FileIdentity.h"
#include "common/NoSystemBoxes.h"
#include "common/ansi.h"
#include "common/handles.h"
#include "common/letter_case.h"
#include "common/message.h"
#include "common/text.h"

namespace modCommon {
namespace {

constexpr char probeText[] = "XXXXXXXXXXX";
constexpr DWORD probeLength = sizeof probeText - 1;

DWORD attributesOf(std::wstring_view path) {
  const NoSystemBoxes quiet;
  return GetFileAttributesW(std::wstring(path).c_str());
}

// The length of the drive or share a path begins with; 0 when it has none.
std::size_t rootLength(std::wstring_view path) {
  std::string root = text::toAnsi(path);
  root.resize(root.size() + 100);
  if (!PathStripToRootA(root.data())) return 0;
  const std::wstring found = text::fromAnsi(root.c_str());
  // Not every system tells "C:one", which goes on from the drive's current folder, from "C:\one".
  return found.ends_with(L':') ? 0 : found.size();
}

void makeFolderPath(std::wstring_view path) {
  const std::size_t root = rootLength(path);
  if (root == 0) return;
  for (auto slash = path.find(L'\\', root); slash != path.npos; slash = path.find(L'\\', slash + 1))
    if (const auto level = path.substr(0, slash + 1); !folderExists(level)) makeFolder(level);
  if (!folderExists(path)) makeFolder(path);
}

// Five random decimal digits. The host's own random sequence is left alone.
std::wstring randomDigits() {
  static std::minstd_rand generator([] {
    LARGE_INTEGER counter;
    QueryPerformanceCounter(&counter);
    return counter.LowPart ^ GetCurrentProcessId();
  }());
  std::uniform_int_distribution<int> digit(0, 9);
  std::wstring digits;
  for (int i = 0; i < 5; ++i) digits += static_cast<wchar_t>(L'0' + digit(generator));
  return digits;
}

// A new file: one that happens to bear the name is the user's.
handles::File createProbe(std::wstring_view folder, std::wstring& name) {
  for (int attempt = 1;; ++attempt) {
    name = std::wstring(folder) + L"\\RND" + randomDigits();
    handles::File file(CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                   CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file) return file;
    const DWORD code = GetLastError();
    if (code != ERROR_FILE_EXISTS || attempt == 100) throw openingError(code);
  }
}

DWORD writeProbe(const handles::File& file) {
  DWORD written = 0;
  if (!WriteFile(file.get(), probeText, probeLength, &written, nullptr)) return GetLastError();
  return written == probeLength ? ERROR_SUCCESS : ERROR_DISK_FULL;
}

void probeFolder(std::wstring_view folder) {
  const NoSystemBoxes quiet;
  std::wstring name;
  handles::File file = createProbe(folder, name);
  const DWORD writeCode = writeProbe(file);
  file.reset();
  const bool deleted = DeleteFileW(name.c_str()) != FALSE;
  if (writeCode != ERROR_SUCCESS) throw errors::fromSystemCode(writeCode);
  if (!deleted) throw errors::fromLastError();
}

std::wstring failureText(std::wstring_view path, const Error& error) {
  switch (error.number()) {
    case errors::badFileName:
      return L"The disk is not in the drive or the specified path does not exist.";
    case errors::diskNotReady:
      return L"The disk not ready or the path does not exist.";
    case errors::pathFileAccess:
      return noPermissionText(path);
    case errors::pathNotFound:
      return L"The path could not be found.";
    default:
      return std::wstring(error.description());
  }
}

// Runs `body`; a failure is shown.
bool shown(std::wstring_view path, FailureView& view, void (*body)(std::wstring_view)) {
  try {
    body(text::cutAtNul(path));
    return true;
  } catch (...) {
    view.fail(failureText(path, errors::current()));
    return false;
  }
}

// Shows failures in boxes of its own title.
class FailureBox final : public FailureView {
 public:
  FailureBox(HWND owner, std::wstring_view title) : owner_(owner), title_(title) {}
  void fail(std::wstring_view text, std::wstring_view) noexcept override {
    showMessage(owner_, text, MB_ICONHAND, title_);
  }

 private:
  HWND owner_;
  std::wstring_view title_;
};

// From the drive or share on, without a backslash at its end; empty when the system has none.
std::wstring fullPath(const std::wstring& path) {
  std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
  full.resize(
      GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  while (!full.empty() && full.back() == L'\\') full.pop_back();
  return full;
}

// Empty for a drive or share.
std::wstring folderAbove(const std::wstring& path) {
  const bool onShare = text::beginsIgnoringCase(path, L"\\\\");
  const auto shareName = onShare ? path.find(L'\\', 2) : 0;
  const auto slash = path.rfind(L'\\');
  return slash == path.npos || slash <= shareName ? std::wstring() : path.substr(0, slash);
}

// The backslash makes the root of "C:", which alone would be the drive's current folder.
FileIdentity identityOfFolder(const std::wstring& folder) {
  return folder.empty() ? FileIdentity() : identityOf(withBackslash(folder));
}

}  // namespace

bool CreateFolderPath(std::wstring_view path, FailureView& view) {
  return shown(path, view, makeFolderPath);
}

bool CanWriteToFolder(std::wstring_view folder, FailureView& view) {
  return shown(folder, view, probeFolder);
}

bool CreateFolderPath(std::wstring_view path, HWND owner) {
  FailureBox box(owner, module::title);
  return CreateFolderPath(path, box);
}

bool CanWriteToFolder(std::wstring_view folder, HWND owner, std::wstring_view title) {
  FailureBox box(owner, title);
  return CanWriteToFolder(folder, box);
}

int ShellOpen(std::wstring_view file, std::wstring_view parameters) {
  const HINSTANCE result = ShellExecuteW(nullptr, L"open", std::wstring(file).c_str(),
                                         std::wstring(parameters).c_str(), L"", SW_SHOWNORMAL);
  return static_cast<int>(reinterpret_cast<INT_PTR>(result));
}

// The run-time knows one error for every reason that has none of its own.
void makeFolder(std::wstring_view path) {
  const NoSystemBoxes quiet;
  if (CreateDirectoryW(std::wstring(path).c_str(), nullptr)) return;
  const long number = errors::numberFromSystemCode(GetLastError());
  const bool refused = number == errors::fileAlreadyExists || number == errors::permissionDenied;
  throw Error(refused ? errors::pathFileAccess : number);
}

std::wstring noPermissionText(std::wstring_view path) {
  return text::join(
      {path, L"\r\nInvalid file path or you do not have write permission to this location."});
}

Error openingError(DWORD code) {
  return code == ERROR_WRITE_PROTECT ? Error(errors::pathFileAccess) : errors::fromSystemCode(code);
}

unsigned long long fileSize(std::wstring_view path) {
  const NoSystemBoxes quiet;
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  if (!GetFileAttributesExW(std::wstring(path).c_str(), GetFileExInfoStandard, &data))
    throw errors::fromLastError();
  return static_cast<unsigned long long>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
}

std::wstring withBackslash(std::wstring_view path) { return text::withEnding(path, L'\\'); }

bool fileExists(std::wstring_view path) {
  const DWORD attributes = attributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool folderExists(std::wstring_view path) {
  const DWORD attributes = attributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

std::wstring localPathOf(const std::wstring& address) {
  wchar_t path[MAX_PATH] = {};
  DWORD length = MAX_PATH;
  if (FAILED(PathCreateFromUrlW(address.c_str(), path, &length, 0))) return {};
  return text::trimBlanks(text::cutAtNul({path, MAX_PATH}));
}

std::vector<std::wstring> localPathsOf(const std::wstring& address) {
  const std::wstring escaped =
      text::replaceAll(text::replaceAll(address, L"%", L"%25"), L"#", L"%23");
  std::vector<std::wstring> paths;
  for (const std::wstring* reading : {&address, &escaped})
    if (auto path = localPathOf(*reading); !path.empty() && (paths.empty() || paths[0] != path))
      paths.push_back(std::move(path));
  return paths;
}

KnownFolder::KnownFolder(const std::wstring& folder)
    : path_(fullPath(folder)), identity_(identityOfFolder(path_)) {}

bool KnownFolder::isAt(const std::wstring& path) const { return isLevel(fullPath(path)); }

bool KnownFolder::holds(const std::wstring& path) const {
  for (std::wstring level = fullPath(path); !level.empty(); level = folderAbove(level))
    if (isLevel(level)) return true;
  return false;
}

bool KnownFolder::isLevel(const std::wstring& level) const {
  if (level.empty()) return false;
  if (text::equalIgnoringCase(level, path_)) return true;
  return identity_ && identityOfFolder(level) == identity_;
}

}  // namespace modCommon
