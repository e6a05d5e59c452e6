// Names of files and folders: those that are typed, and those that are made up.
#include "common/file_names.h"

#include <limits>

#include "common/errors.h"
#include "common/text.h"
#include "tests/fuzz/Target.h"
#include "webcopy/web_folder_path.h"

using fuzz::promise;

namespace {

const fuzz::Target target("file_names", [](fuzz::Input input) {
  const std::wstring name = input.text();
  const bool isValid = modCommon::IsValidFileName(name);
  bool isAllowed = false;
  for (const wchar_t letter : name) {
    if (letter != L' ') isAllowed = true;
  }
  for (const wchar_t letter : std::wstring_view(L"\\/:*?<>|\""))
    if (name.find(letter) != name.npos) isAllowed = false;
  promise(isValid == isAllowed, "a name is valid by its characters alone");
  promise(modCommon::IsValidFileName(L" " + name + L"  ") == isValid,
          "blanks around it do not count");

  const std::vector<std::wstring> names = input.texts();
  const std::wstring made = webfolder::freeFolderName(names);
  promise(!webfolder::contains(names, made), "a name that is made up is free");
  promise(made.starts_with(L"New_Folder") && modCommon::IsValidFileName(made) && made.size() <= 15,
          "a name that is made up is valid");
});

}  // namespace
