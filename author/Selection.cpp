#include "author/Selection.h"

#include <algorithm>

#include "catalogue/TemplateScan.h"
#include "common/NameSet.h"
#include "common/errors.h"
#include "common/letter_case.h"
#include "common/text.h"

namespace author {
namespace {

enum class Kind { templates, theme, other };

bool endsIn(std::wstring_view name, std::wstring_view ending) {
  return name.size() > ending.size() &&
         text::equalIgnoringCase(name.substr(name.size() - ending.size()), ending);
}

// By what lies directly in it.
Kind kindOf(const std::wstring& folder) {
  const auto names = namesIn(folder);
  const auto has = [&](const wchar_t* ending) {
    return std::any_of(names.begin(), names.end(),
                       [&](const std::wstring& name) { return endsIn(name, ending); });
  };
  if (has(L".dwt")) return Kind::templates;
  return has(L".inf") || has(L".elm") ? Kind::theme : Kind::other;
}

class Look {
 public:
  explicit Look(Work& work) : work_(work) {}

  void take(const std::wstring& named) {
    std::wstring shown = text::replaceAll(named, L"/", L"\\");
    while (shown.size() > 1 && shown.back() == L'\\') shown.pop_back();
    const std::wstring folder = fullPath(named);
    if (!isThere(folder)) throw Error(errors::pathNotFound, named + L": There is no such folder.");
    if (!isFolder(folder)) throw Error(errors::pathNotFound, named + L": This is no folder.");
    if (kindOf(folder) != Kind::other || !takeBelow(folder, shown)) takeOne(folder, shown);
  }

  Selection result;

 private:
  // False when there is no folder in it.
  bool takeBelow(const std::wstring& folder, const std::wstring& shown) {
    bool any = false;
    for (const std::wstring& name : foldersIn(folder)) {
      if (isHostFolder(name)) continue;
      any = true;
      takeOne(folder + (folder.back() == L'\\' ? L"" : L"\\") + name, shown + L"\\" + name);
    }
    return any;
  }

  void takeOne(const std::wstring& folder, const std::wstring& shown) {
    goOnOrCancel(work_);
    if (!seen_.insert(folder)) return;
    if (nameOf(folder).empty())
      throw Error(errors::badFileName, shown + L": A whole drive is no template.");
    work_.show(L"Looking through " + shown + L"...");
    if (kindOf(folder) == Kind::theme)
      result.themes.push_back(checkTheme(folder, shown, work_));
    else
      result.templates.push_back(checkTemplateFolder(folder, shown, work_));
  }

  Work& work_;
  text::NameSet seen_;
};

}  // namespace

Findings Selection::findings() const {
  Findings all;
  for (const FolderReport& each : templates)
    all.insert(all.end(), each.findings.begin(), each.findings.end());
  for (const ThemeReport& each : themes)
    all.insert(all.end(), each.findings.begin(), each.findings.end());
  return all;
}

Selection lookThrough(const std::vector<std::wstring>& folders, Work& work) {
  Look look(work);
  for (const std::wstring& folder : folders) look.take(folder);
  return std::move(look.result);
}

}  // namespace author
