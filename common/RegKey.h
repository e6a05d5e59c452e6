// One registry key at a time, through the registry's ANSI functions.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "common/handles.h"

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

  // Both close the held key first; OpenKey wants the key to exist, CreateKey makes what is missing.
  bool OpenKey(HKEY root, std::wstring_view subkey);
  bool CreateKey(HKEY root, std::wstring_view subkey);
  bool CloseKey();

  HKEY hKey() const noexcept { return key_.get(); }
  // Takes ownership of `key` after closing the held one; false when that could not be closed.
  bool setHKey(HKEY key);

  // The unnamed value of `subkey`, cut at its first NUL character.
  bool QueryValue(std::wstring_view subkey, std::wstring& value, HKEY key = nullptr);
  // Raw bytes into `buffer` (`length` bytes long). Too small: -4, and GetErrorData tells the size.
  // Strings come in the ANSI code page.
  bool QueryValueEx(std::wstring_view name, DWORD length, DWORD& type, BYTE* buffer,
                    HKEY key = nullptr);
  // A value of type REG_SZ and no other, cut at its first NUL character unless `keepNuls`.
  bool QueryValueEx_SZ(std::wstring_view name, std::wstring& value, HKEY key = nullptr,
                       bool keepNuls = false);
  // Any type but the string types (1, 2, 6, 7).
  bool SetValueEx(std::wstring_view name, DWORD length, DWORD type, const BYTE* buffer,
                  HKEY key = nullptr);
  // The string types only. The terminating NUL is written too; a multi-string brings its inner
  // ones.
  bool SetValueEx_SZ(std::wstring_view name, std::wstring_view value, DWORD type = REG_SZ,
                     HKEY key = nullptr);
  // The name and type of one value. Index -1 walks: the first value, then the next at each call,
  // false at the end (ERROR_NO_MORE_ITEMS), after which the walk starts anew. A name of more than
  // 2047 characters is answered with false and ERROR_MORE_DATA; the walk can go on behind it.
  bool EnumValue(std::wstring& name, DWORD& type, long index = -1, HKEY key = nullptr);

  // The internal error when there is one, otherwise the last system code.
  long GetLastError() const noexcept { return internal_ != none ? internal_ : system_; }
  // After -4: how many bytes the value needs.
  long GetErrorData() const noexcept { return data_; }
  std::wstring GetErrorDescription() const;

 private:
  // Runs an operation that answers with its verdict; memory that runs out inside is a verdict too.
  template <class Operation>
  bool run(Operation operation);
  // The same with the key to use, which must be there.
  template <class Operation>
  bool runOn(HKEY key, Operation operation);

  using Opener = LSTATUS(WINAPI*)(HKEY, LPCSTR, PHKEY);
  bool take(Opener opener, HKEY root, std::wstring_view subkey);
  bool close();
  bool closePrevious();
  bool fail(InternalError error);
  bool settle(LSTATUS result);

  handles::Registry key_;
  long system_ = ERROR_SUCCESS;
  long internal_ = none;
  long data_ = 0;
  long enumerationIndex_ = -1;
};
