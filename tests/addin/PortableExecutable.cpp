#include "tests/addin/PortableExecutable.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>

#include "common/handles.h"

PortableExecutable::PortableExecutable(const std::wstring& path) {
  const handles::File file(
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file) throw std::runtime_error("the program file cannot be read");
  bytes_.resize(GetFileSize(file.get(), nullptr));
  DWORD read = 0;
  ReadFile(file.get(), bytes_.data(), static_cast<DWORD>(bytes_.size()), &read, nullptr);
  if (read != bytes_.size()) throw std::runtime_error("the program file cannot be read");
}

const IMAGE_NT_HEADERS32& PortableExecutable::headers() const {
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(bytes_.data());
  return *reinterpret_cast<const IMAGE_NT_HEADERS32*>(bytes_.data() + dos->e_lfanew);
}

template <class Type>
const Type* PortableExecutable::at(DWORD address) const {
  const IMAGE_SECTION_HEADER* section = IMAGE_FIRST_SECTION(&headers());
  for (WORD index = 0; index < headers().FileHeader.NumberOfSections; ++index, ++section) {
    const DWORD offset = address - section->VirtualAddress;
    if (address >= section->VirtualAddress && offset < section->SizeOfRawData)
      return reinterpret_cast<const Type*>(bytes_.data() + section->PointerToRawData + offset);
  }
  throw std::runtime_error("an address outside every section");
}

std::set<std::string> PortableExecutable::imports() const {
  std::set<std::string> result;
  const DWORD start = directory(IMAGE_DIRECTORY_ENTRY_IMPORT).VirtualAddress;
  for (auto* entry = at<IMAGE_IMPORT_DESCRIPTOR>(start); entry->Name; ++entry) {
    std::string library = at<char>(entry->Name);
    std::transform(library.begin(), library.end(), library.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    for (auto* thunk = at<IMAGE_THUNK_DATA32>(entry->OriginalFirstThunk); thunk->u1.AddressOfData;
         ++thunk) {
      const bool byNumber = IMAGE_SNAP_BY_ORDINAL32(thunk->u1.Ordinal);
      const std::string name = byNumber
                                   ? "#" + std::to_string(IMAGE_ORDINAL32(thunk->u1.Ordinal))
                                   : std::string(at<char>(thunk->u1.AddressOfData + sizeof(WORD)));
      result.insert(library + " " + name);
    }
  }
  return result;
}

std::set<std::string> PortableExecutable::exports() const {
  std::set<std::string> result;
  const auto* table =
      at<IMAGE_EXPORT_DIRECTORY>(directory(IMAGE_DIRECTORY_ENTRY_EXPORT).VirtualAddress);
  const auto* names = at<DWORD>(table->AddressOfNames);
  for (DWORD index = 0; index < table->NumberOfNames; ++index)
    result.insert(at<char>(names[index]));
  return result;
}

std::vector<std::string> PortableExecutable::sections() const {
  std::vector<std::string> result;
  const IMAGE_SECTION_HEADER* section = IMAGE_FIRST_SECTION(&headers());
  for (WORD index = 0; index < headers().FileHeader.NumberOfSections; ++index, ++section)
    result.emplace_back(reinterpret_cast<const char*>(section->Name),
                        strnlen(reinterpret_cast<const char*>(section->Name), 8));
  return result;
}
