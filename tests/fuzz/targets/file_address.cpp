// Which addresses are those of files, and what the files are called on this disk.
#include "online/transfer/file_address.h"

#include <set>

#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

// What no rule of the product is asked about.
void checkStaysInside(const std::wstring& name) {
  promise(!name.empty() && name.size() < 0x8000, "a file has a name");
  promise(name.find_first_of(L"\\/:*?<>|\"") == name.npos, "a name is one level");
  promise(name != L"." && name != L"..", "a name is a file's own");
  promise(name.back() != L'.' && name.back() != L' ', "the system drops nothing of a name");
}

const fuzz::Target target("file_address", [](fuzz::Input input) {
  modWINInetURL::CrackedUrl parts;
  parts.host = input.text();
  parts.path = input.text();
  parts.extraInfo = input.text();
  const bool isFile = online::isFileAddress(parts);
  if (isFile) {
    promise(!parts.host.empty() && !parts.path.empty(), "a file has a host and a path");
    promise(parts.extraInfo.empty(), "a file has no query");
    const std::wstring name = parts.path.substr(parts.path.rfind(L'/') + 1);
    promise(!name.empty() && name[0] != L'.' && name[0] != L' ', "a file's name begins as one");
  }

  const std::wstring address = L"http://" + parts.host + parts.path;
  const auto name = online::fileNameOf(address);
  if (!name) return;
  checkStaysInside(*name);
  promise(online::fileNameOf(L"ftp://other/" + *name) == name || name->find(L"%20") != name->npos,
          "the name of a name is the name");
  std::set<std::wstring> names = {L"C:\\staging.folder\\" + *name};
  for (int number = 2; number < 5; ++number) {
    const std::wstring path = online::numbered(*names.begin(), number);
    promise(path.starts_with(L"C:\\staging.folder\\"), "a numbered file is in the same folder");
    checkStaysInside(path.substr(18));
  }
});

}  // namespace
