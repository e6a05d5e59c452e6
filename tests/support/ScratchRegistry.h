// HKEY_CURRENT_USER and HKEY_LOCAL_MACHINE of this process, empty and private while it lives.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class ScratchRegistry {
 public:
  // Throws std::runtime_error unless both are: nothing of a test may reach the user's own.
  ScratchRegistry();
  ~ScratchRegistry();
  ScratchRegistry(const ScratchRegistry&) = delete;
  ScratchRegistry& operator=(const ScratchRegistry&) = delete;

  // Make missing keys.
  void setString(HKEY root, std::wstring_view key, std::wstring_view name, std::wstring_view value);
  void setBinary(HKEY root, std::wstring_view key, std::wstring_view name,
                 const std::vector<BYTE>& value);
  void setNumber(HKEY root, std::wstring_view key, std::wstring_view name, DWORD value);

  // Nothing when the key or value is missing.
  std::optional<std::wstring> string(HKEY root, std::wstring_view key,
                                     std::wstring_view name) const;
  std::optional<std::vector<BYTE>> binary(HKEY root, std::wstring_view key,
                                          std::wstring_view name) const;
  bool hasKey(HKEY root, std::wstring_view key) const;
  // In the registry's order.
  std::vector<std::wstring> valueNames(HKEY root, std::wstring_view key) const;
};
