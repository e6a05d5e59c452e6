// One registry key at a time, through the registry's ANSI functions.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

// Every operation answers with true on success and keeps its outcome for GetLastError and
// GetErrorDescription; none raises an error. Where an operation takes a `key`, a handle that is not
// null is used instead of the held one and is only borrowed.
class RegKey {
 public:
  // The object's own verdicts, told apart from the system's codes by their sign.
  enum InternalError : long {
    none = 0,
    noKeyOpen = -1,
    previousKeyNotClosed = -2,
    wrongDataType = -3,
    bufferTooSmall = -4,
  };

  RegKey() noexcept = default;
  ~RegKey();
  RegKey(const RegKey&) = delete;
  RegKey& operator=(const RegKey&) = delete;

  // Both close the held key first; OpenKey wants the key to exist, CreateKey makes what is missing.
  bool OpenKey(HKEY root, std::wstring_view subkey);
  bool CreateKey(HKEY root, std::wstring_view subkey);
  bool CloseKey();

  HKEY hKey() const noexcept { return key_; }
  // Takes ownership of `key` after closing the held one; false when that could not be closed.
  bool setHKey(HKEY key);

  // The unnamed value of `subkey`, cut at its first NUL character.
  bool QueryValue(std::wstring_view subkey, std::wstring& value, HKEY key = nullptr);
  // Raw bytes into `buffer` (`length` bytes long). Too small: -4, and GetErrorData tells the size.
  bool QueryValueEx(std::wstring_view name, DWORD length, DWORD& type, BYTE* buffer,
                    HKEY key = nullptr);
  // A value of type REG_SZ and no other, cut at its first NUL character unless `keepNuls`.
  bool QueryValueEx_SZ(std::wstring_view name, std::wstring& value, HKEY key = nullptr,
                       bool keepNuls = false);
  // Any type but the string types (1, 2, 6, 7).
  bool SetValueEx(std::wstring_view name, DWORD length, DWORD type, const BYTE* buffer,
                  HKEY key = nullptr);
  // The string types only.
  bool SetValueEx_SZ(std::wstring_view name, std::wstring_view value, DWORD type = REG_SZ,
                     HKEY key = nullptr);
  // The name and type of one value. Index -1 walks: the first value, then the next at each call,
  // false at the end, after which the walk starts anew.
  bool EnumValue(std::wstring& name, DWORD& type, long index = -1, HKEY key = nullptr);

  // The internal error when there is one, otherwise the last system code.
  long GetLastError() const noexcept { return internal_ != none ? internal_ : system_; }
  // After -4: how many bytes the value needs.
  long GetErrorData() const noexcept { return data_; }
  std::wstring GetErrorDescription() const;

 private:
  HKEY key_ = nullptr;
  long system_ = 0;
  long internal_ = none;
  long data_ = 0;
  long enumerationIndex_ = -1;
};
