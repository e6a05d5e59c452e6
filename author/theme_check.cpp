#include "author/theme_check.h"

#include <algorithm>

#include "author/template_check.h"
#include "common/ansi.h"
#include "common/ini_file.h"
#include "common/letter_case.h"
#include "common/text.h"

namespace author {
namespace {

constexpr unsigned titleLength = 256;

class Check {
 public:
  Check(const std::wstring& folder, const std::wstring& shown, Work& work) {
    report_.folder = folder;
    report_.shown = shown;
    report_.name = nameOf(folder);
    report_.tree = listTree(folder, work);
    report_.title = title();
  }

  ThemeReport run() {
    checkName();
    checkPart(L".inf", L"description");
    checkPart(L".elm", L"list of elements");
    for (const FolderEntry& entry : report_.tree.entries) checkEntry(entry);
    for (const std::wstring& path : report_.tree.unreadable)
      add(L"unreadable", path, L"The folder cannot be read.", L"The theme cannot be packed.",
          L"Give yourself the right to read it.");
    for (const std::wstring& path : report_.tree.leadElsewhere)
      add(L"link-folder", path, L"The folder is a link to another place of the disk.",
          L"It is not packed.", L"Put the files themselves into the theme's folder.");
    return std::move(report_);
  }

 private:
  void add(const wchar_t* rule, const std::wstring& below, const std::wstring& what,
           const std::wstring& effect, const std::wstring& advice) {
    report_.findings.push_back({rule, below.empty() ? report_.shown : report_.shown + L"\\" + below,
                                0, what, effect, advice});
  }

  std::wstring title() const {
    const std::wstring file = report_.folder + L"\\" + report_.name + L".inf";
    const std::wstring plain = readIniValue(file, L"info", L"title", report_.name, titleLength);
    return text::trimBlanks(readIniValue(file, L"titles", L"1033", plain, titleLength));
  }

  void checkName() {
    if (report_.name.find(L' ') != std::wstring::npos)
      add(L"theme-name-blank", {}, L"The theme's name has a blank.",
          L"No template can name it: in a description the name ends at the first blank.",
          L"Name the folder, and the files in it that bear its name, without a blank.");
  }

  void checkPart(const wchar_t* ending, const wchar_t* role) {
    const std::wstring name = report_.name + ending;
    const auto& entries = report_.tree.entries;
    const bool isThere = std::any_of(entries.begin(), entries.end(), [&](const FolderEntry& each) {
      return !each.isFolder() && text::equalIgnoringCase(each.path, name);
    });
    if (!isThere)
      add(L"theme-part-missing", {},
          L"The theme's " + std::wstring(role) + L", " + name + L", is missing.",
          L"The host does not list the theme, so no template gets it.",
          L"Name the file like the folder.");
  }

  void checkEntry(const FolderEntry& entry) {
    if (!text::fitsAnsi(entry.name()))
      add(L"code-page", entry.path, L"The name has a character that this system's code page lacks.",
          L"The theme cannot be unpacked everywhere.",
          L"Give it a name of letters, digits, \"-\" and \"_\".");
    const std::size_t length = report_.name.size() + 1 + entry.path.size();
    if (length > longestPathBelow)
      add(L"path-length", entry.path,
          text::join({L"The path has ", text::decimal(static_cast<long long>(length)),
                      L" characters from the theme's name on."}),
          L"With more than 170 it cannot be unpacked by everybody.",
          L"Use shorter names, or fewer folders inside of each other.");
  }

  ThemeReport report_;
};

}  // namespace

ThemeReport checkTheme(const std::wstring& folder, const std::wstring& shown, Work& work) {
  return Check(folder, shown, work).run();
}

}  // namespace author
