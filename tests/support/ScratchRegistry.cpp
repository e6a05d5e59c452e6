#include "tests/support/ScratchRegistry.h"

#include <stdexcept>

namespace {

constexpr wchar_t scratchKey[] = L"Software\\Quillet scratch";
const HKEY redirected[] = {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE};

void deleteTree(HKEY root, const std::wstring& path) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_ALL_ACCESS, &key) != ERROR_SUCCESS) return;
  wchar_t name[256];
  while (RegEnumKeyW(key, 0, name, 256) == ERROR_SUCCESS) deleteTree(key, name);
  RegCloseKey(key);
  RegDeleteKeyW(root, path.c_str());
}

std::wstring processKey() {
  return std::wstring(scratchKey) + L"\\" + std::to_wstring(GetCurrentProcessId());
}

class OpenKey {
 public:
  OpenKey(HKEY root, std::wstring_view path, bool create) {
    const std::wstring name(path);
    if (create)
      RegCreateKeyW(root, name.c_str(), &key_);
    else if (RegOpenKeyExW(root, name.c_str(), 0, KEY_READ, &key_) != ERROR_SUCCESS)
      key_ = nullptr;
  }
  ~OpenKey() {
    if (key_) RegCloseKey(key_);
  }
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;
  HKEY get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

// Whether what is made below `root` is found below `key`.
bool leadsTo(HKEY key, HKEY root) {
  constexpr wchar_t mark[] = L"mark of a test";
  { const OpenKey made(root, mark, true); }
  const bool found = OpenKey(key, mark, false).get() != nullptr;
  RegDeleteKeyW(root, mark);
  return found;
}

void letGo() {
  for (const HKEY root : redirected) RegOverridePredefKey(root, nullptr);
  deleteTree(HKEY_CURRENT_USER, processKey());
}

}  // namespace

ScratchRegistry::ScratchRegistry() {
  // A process that was killed may have left its keys behind, and numbers of processes come again.
  deleteTree(HKEY_CURRENT_USER, processKey());
  HKEY keys[2] = {};
  for (int i = 0; i < 2; ++i)
    RegCreateKeyW(HKEY_CURRENT_USER, (processKey() + L"\\" + std::to_wstring(i)).c_str(), &keys[i]);
  bool areRedirected = true;
  for (int i = 0; i < 2; ++i)
    areRedirected = RegOverridePredefKey(redirected[i], keys[i]) == ERROR_SUCCESS &&
                    leadsTo(keys[i], redirected[i]) && areRedirected;
  for (const HKEY key : keys) RegCloseKey(key);
  if (areRedirected) return;
  letGo();
  throw std::runtime_error("the registry is not redirected");
}

ScratchRegistry::~ScratchRegistry() { letGo(); }

void ScratchRegistry::setString(HKEY root, std::wstring_view key, std::wstring_view name,
                                std::wstring_view value) {
  const OpenKey open(root, key, true);
  const std::wstring text(value);
  RegSetValueExW(open.get(), std::wstring(name).c_str(), 0, REG_SZ,
                 reinterpret_cast<const BYTE*>(text.c_str()),
                 static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

void ScratchRegistry::setBinary(HKEY root, std::wstring_view key, std::wstring_view name,
                                const std::vector<BYTE>& value) {
  const OpenKey open(root, key, true);
  RegSetValueExW(open.get(), std::wstring(name).c_str(), 0, REG_BINARY, value.data(),
                 static_cast<DWORD>(value.size()));
}

void ScratchRegistry::setNumber(HKEY root, std::wstring_view key, std::wstring_view name,
                                DWORD value) {
  const OpenKey open(root, key, true);
  RegSetValueExW(open.get(), std::wstring(name).c_str(), 0, REG_DWORD,
                 reinterpret_cast<const BYTE*>(&value), sizeof value);
}

std::optional<std::wstring> ScratchRegistry::string(HKEY root, std::wstring_view key,
                                                    std::wstring_view name) const {
  const auto bytes = binary(root, key, name);
  if (!bytes) return std::nullopt;
  std::wstring text(reinterpret_cast<const wchar_t*>(bytes->data()),
                    bytes->size() / sizeof(wchar_t));
  while (!text.empty() && text.back() == L'\0') text.pop_back();
  return text;
}

std::optional<std::vector<BYTE>> ScratchRegistry::binary(HKEY root, std::wstring_view key,
                                                         std::wstring_view name) const {
  const OpenKey open(root, key, false);
  const std::wstring valueName(name);
  DWORD size = 0;
  if (!open.get() || RegQueryValueExW(open.get(), valueName.c_str(), nullptr, nullptr, nullptr,
                                      &size) != ERROR_SUCCESS)
    return std::nullopt;
  std::vector<BYTE> bytes(size);
  RegQueryValueExW(open.get(), valueName.c_str(), nullptr, nullptr, bytes.data(), &size);
  bytes.resize(size);
  return bytes;
}

bool ScratchRegistry::hasKey(HKEY root, std::wstring_view key) const {
  return OpenKey(root, key, false).get() != nullptr;
}

std::vector<std::wstring> ScratchRegistry::valueNames(HKEY root, std::wstring_view key) const {
  const OpenKey open(root, key, false);
  std::vector<std::wstring> names;
  if (!open.get()) return names;
  std::wstring name(16384, L'\0');
  for (DWORD index = 0;; ++index) {
    auto length = static_cast<DWORD>(name.size());
    if (RegEnumValueW(open.get(), index, name.data(), &length, nullptr, nullptr, nullptr,
                      nullptr) != ERROR_SUCCESS)
      return names;
    names.push_back(name.substr(0, length));
  }
}
