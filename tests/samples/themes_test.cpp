// The sample themes: that they are whole.
#include <set>

#include "catalogue/TemplateInfo.h"
#include "common/ini_file.h"
#include "common/paths.h"
#include "common/text.h"
#include "tests/samples/samples_support.h"

namespace {

const std::wstring names[] = {L"limewash", L"nightferry"};

std::wstring folderOf(const std::wstring& theme) { return samples() + L"\\themes\\" + theme; }

}  // namespace

TEST_CASE("there is no other folder among the sample themes") {
  std::set<std::wstring> folders;
  const std::wstring above = samples() + L"\\themes\\";
  for (const std::wstring& file : filesBelow(samples() + L"\\themes"))
    folders.insert(file.substr(above.size(), file.find(L'\\', above.size()) - above.size()));
  CHECK(folders == std::set<std::wstring>(std::begin(names), std::end(names)));
}

TEST_CASE("every sample theme has its title and every file that it names") {
  for (const std::wstring& theme : names) {
    CAPTURE(theme);
    const std::wstring base = folderOf(theme) + L"\\" + theme;
    CHECK(readIniValue(base + L".inf", L"info", L"title", L"", 256) != L"");
    // What the theme is made of, one element a line; a comment in front of them.
    const std::wstring elements = help::readPage(base + L".elm").text;
    int files = 0;
    for (const std::wstring& row : text::split(elements, L'\n')) {
      const std::wstring line = text::replaceAll(row, L"\r", L"");
      const std::wstring value(text::afterLast(line, L'='));
      if (value.empty() || line.front() == L';' || value.front() == L'#') continue;
      CAPTURE(value);
      CHECK(modCommon::fileExists(folderOf(theme) + L"\\" + value));
      ++files;
    }
    CHECK(files == 4);
  }
}

TEST_CASE("every sample theme has a picture and a description for a catalogue") {
  for (const std::wstring& theme : names) {
    CAPTURE(theme);
    const TemplateInfo info = GetDWTInfo(folderOf(theme), theme);
    CHECK(info.description != L"<not available>");
    checkPreview(info.preview);
  }
}
