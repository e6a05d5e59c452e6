// Paths and addresses of a web's folders, as the host and the template's author spell them.
#include "addin/host/web_path.h"

#include "common/letter_case.h"
#include "tests/fuzz/System.h"
#include "tests/fuzz/Target.h"
#include "webcopy/web_folder_path.h"

using fuzz::promise;

namespace {

bool hasSlash(std::wstring_view text) { return text.find_first_of(L"/\\") != text.npos; }

void checkLevels(const std::wstring& path) {
  for (const std::wstring& level : webpath::levels(path))
    promise(!level.empty() && !hasSlash(level), "a level is a name");
  const std::wstring normal = webpath::normal(path);
  promise(webpath::normal(normal) == normal, "a normal path stays");
  promise(webpath::levels(normal) == webpath::levels(path), "a normal path has the same levels");
  promise(!normal.starts_with(L'/') && !normal.ends_with(L'/') && normal.size() <= path.size(),
          "a normal path is below a folder");
}

void checkBelow(const std::wstring& address, const std::wstring& root) {
  if (const auto below = webpath::below(address, root)) {
    promise(address.ends_with(below->path), "what is below is the end of the address");
    promise(below->path.empty() || hasSlash(below->path.substr(0, 1)),
            "what is below begins with a slash");
  }
  if (root.find_last_not_of(L"/\\") == root.npos) return;
  const auto own = webpath::below(root + L"/one/two", root);
  if (!root.ends_with(L'/') && !root.ends_with(L'\\'))
    promise(own && own->path == L"/one/two", "a folder of the root is below it");
}

void checkWalk(const std::wstring& path, const std::wstring& web) {
  const std::wstring initial = webfolder::initialPath(path, web);
  promise(initial.size() <= path.size() && path.ends_with(initial), "a walk is the path's end");
  for (const std::wstring& folder : webfolder::foldersOf(initial))
    promise(folder.find(L'/') == folder.npos, "a walk goes from folder to folder");
  promise(!webfolder::displayPath(path, web).empty(), "a folder has a name for the user");

  const std::wstring chosen = webfolder::chosenPath(L"root/" + path, web, false);
  promise(chosen == path, "what is chosen is below the root");
  promise(webfolder::chosenPath(L"root/" + path, web, true) == web + L"/" + path,
          "an absolute choice is below the web");
  promise(webfolder::rootName(path).find(L'/') == std::wstring::npos, "a root's name is one level");
}

const fuzz::Target target("web_path", [](fuzz::Input input) {
  fuzz::chooseCodePage(input.byte());
  const std::wstring path = input.text();
  const std::wstring web = input.text();
  checkLevels(path);
  checkBelow(path, web);
  checkWalk(path, web);
  promise(webpath::unescaped(path).size() <= path.size(), "an address gets no longer unescaped");
  if (path.find(L'%') == path.npos)
    promise(webpath::unescaped(path) == path, "an address without escapes stays");
  if (webpath::isAbsolute(path)) promise(path.find(L"://") >= 2, "a drive is no scheme");
});

}  // namespace
