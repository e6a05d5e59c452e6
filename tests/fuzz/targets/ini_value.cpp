// Values of a template's description file.
#include "common/ini_file.h"

#include "common/ansi.h"
#include "tests/fuzz/System.h"
#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

const fuzz::Target target("ini_value", [](fuzz::Input input) {
  fuzz::chooseCodePage(input.byte());
  const std::wstring section = input.text();
  const std::wstring key = input.text();
  const unsigned longest = input.word() % 600;
  const std::wstring file = fuzz::descriptionFile(input.rest());

  const std::wstring value = readIniValue(file, section, key, {}, longest);
  promise(value.empty() || value.size() < longest, "a value is as long as was asked for at most");
  promise(value.find(L'\0') == value.npos, "a value ends before its first NUL");
  promise(readIniValue(file, section, key, L"fallback", longest) ==
              (value.empty() ? L"fallback" : value),
          "an empty value counts as missing");
  if (!text::fitsAnsi(section) || !text::fitsAnsi(key))
    promise(value.empty(), "what the code page lacks is no other section or key");
});

}  // namespace
