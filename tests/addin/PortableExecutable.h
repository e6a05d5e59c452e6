// A program file, read as it stands on disk.
#pragma once

#include <windows.h>

#include <set>
#include <string>
#include <vector>

class PortableExecutable {
 public:
  explicit PortableExecutable(const std::wstring& path);

  std::size_t size() const noexcept { return bytes_.size(); }
  // "LIBRARY.DLL function", the library in capitals; "#number" for an import by ordinal.
  std::set<std::string> imports() const;
  std::set<std::string> exports() const;
  // Names of sections.
  std::vector<std::string> sections() const;
  WORD machine() const { return headers().FileHeader.Machine; }
  WORD dllCharacteristics() const { return headers().OptionalHeader.DllCharacteristics; }

 private:
  const IMAGE_NT_HEADERS32& headers() const;
  template <class Type>
  const Type* at(DWORD address) const;

  std::string bytes_;
};
