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
  // When it was linked, in seconds since 1970; 0 when it does not tell.
  DWORD time() const { return headers().FileHeader.TimeDateStamp; }
  WORD machine() const { return headers().FileHeader.Machine; }
  WORD dllCharacteristics() const { return headers().OptionalHeader.DllCharacteristics; }
  // Without them the system cannot load it at another address than its own.
  bool hasRelocations() const {
    return directory(IMAGE_DIRECTORY_ENTRY_BASERELOC).Size != 0 &&
           (headers().FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED) == 0;
  }
  bool contains(const std::string& text) const { return bytes_.find(text) != bytes_.npos; }

 private:
  const IMAGE_NT_HEADERS32& headers() const;
  const IMAGE_DATA_DIRECTORY& directory(unsigned entry) const {
    return headers().OptionalHeader.DataDirectory[entry];
  }
  template <class Type>
  const Type* at(DWORD address) const;

  std::string bytes_;
};
