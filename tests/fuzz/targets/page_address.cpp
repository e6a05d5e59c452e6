// Addresses that pages and the browser name: what on the disk they mean.
#include "common/forms/page_address.h"

#include "common/letter_case.h"
#include "common/text.h"
#include "help/references.h"
#include "tests/fuzz/System.h"
#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

bool isLetter(wchar_t letter) {
  return (letter >= L'a' && letter <= L'z') || (letter >= L'A' && letter <= L'Z');
}

// The drive, or the server and its share.
std::wstring placeOf(const std::wstring& path) {
  if (path.size() > 2 && isLetter(path[0]) && path[1] == L':') return path.substr(0, 2);
  if (!path.starts_with(L"\\\\")) return {};
  const auto share = path.find(L'\\', 2);
  return share == path.npos ? std::wstring() : path.substr(0, path.find(L'\\', share + 1));
}

void checkPage(const std::wstring& address, const std::wstring& page) {
  if (const auto file = forms::fileBeside(address, page))
    promise(!placeOf(*file).empty() && text::equalIgnoringCase(placeOf(*file), placeOf(page)),
            "a page leads to files of its own drive or share alone");
  forms::isSamePage(address, page);
}

void checkReference(const std::wstring& address) {
  const std::wstring folder = L"C:\\t\\Blue\\";
  const auto file = help::fileBeside(folder + L"readme.htm", address);
  if (file) {
    promise(file->starts_with(folder) && file->size() > folder.size(),
            "a file is in the page's folder");
    const std::wstring below = file->substr(folder.size());
    promise(below.find(L':') == below.npos && !below.starts_with(L'\\'),
            "a file is no other place");
    promise(below.find(L'\0') == below.npos, "a file's name is whole");
    for (const std::wstring& part : text::split(below, L'\\'))
      promise(part.empty() || part == L"." || (part.back() != L'.' && part.back() != L' '),
              "a file is not above the page, and the system drops nothing of its name");
  }
  if (help::isOutside(address)) promise(!file, "what the user's browser is given is no file");
}

const fuzz::Target target("page_address", [](fuzz::Input input) {
  fuzz::chooseCodePage(input.byte());
  const std::wstring address = input.text();
  const std::wstring page = input.text();
  forms::fileBeside(address, page);
  forms::isSamePage(address, page);
  checkPage(address, L"C:\\pages\\a.htm");
  checkPage(address, L"\\\\server\\share\\a.htm");
  const std::wstring plain =
      L"C:\\pages\\" + text::replaceAll(text::replaceAll(page, L"#", L""), L"?", L"");
  if (plain.find(L'%') == plain.npos && plain.find(L'\0') == plain.npos)
    promise(forms::isSamePage(plain, plain), "a page is itself");
  checkReference(address);
});

}  // namespace
