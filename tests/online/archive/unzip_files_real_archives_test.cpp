// What the usual tools write is unpacked. The archives were made beside the test program, by the
// tools themselves.
#include <windows.h>

#include <map>

#include "tests/online/archive/Unpacking.h"
#include "tests/support/read_all.h"

namespace {

using Files = std::map<std::wstring, std::string>;

std::wstring madeFolder() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring program = path;
  return program.substr(0, program.rfind(L'\\') + 1) + L"archives\\";
}

std::string repeated(const std::string& text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

// What every tool was given.
Files plainFiles() {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  return {{L".hidden", "dot"},
          {L"__MACOSX\\._page.htm", "fork"},
          {L"deep\\er\\back ground.txt", "x"},
          {L"empty.txt", ""},
          {L"images\\dot.gif", repeated(bytes, 20)},
          {L"page.htm", repeated("<p>a page</p>\n", 300)}};
}

Files filesIn(const Unpacking& unpacking) {
  Files files;
  const std::wstring folder = L"inside\\";
  for (const std::wstring& path : unpacking.scratch.tree())
    if (path.starts_with(folder) && !path.ends_with(L'\\'))
      files.emplace(path.substr(folder.size()), unpacking.scratch.readFile(path));
  return files;
}

// Names, sizes and check sums, as text.
Tree listed(const Files& files) {
  Tree lines;
  for (const auto& [name, bytes] : files)
    lines.push_back(name + L" " + std::to_wstring(bytes.size()) + L" " +
                    std::to_wstring(ZipMaker::crc(bytes)));
  return lines;
}

void checkUnpacked(const wchar_t* name, const Files& expected) {
  CAPTURE(std::wstring(name));
  const Logging logging;
  ModalDriver driver;
  const Unpacking unpacking(readAll(madeFolder() + name + L".zip"));
  CHECK(unpacking.run());
  CHECK(driver.boxes().empty());
  CHECK(listed(filesIn(unpacking)) == listed(expected));
}

}  // namespace

TEST_CASE("archives that zip makes are unpacked") {
  for (const wchar_t* name :
       {L"zip", L"zip-stored", L"zip-long", L"zip-comment", L"zip-streamed", L"zip-program"})
    checkUnpacked(name, plainFiles());
}

TEST_CASE("archives that 7-Zip makes are unpacked") {
  for (const wchar_t* name : {L"7z", L"7z-stored"}) checkUnpacked(name, plainFiles());
}

TEST_CASE("archives that bsdtar makes are unpacked") {
  for (const wchar_t* name : {L"bsdtar", L"bsdtar-stored", L"bsdtar-long"})
    checkUnpacked(name, plainFiles());
}

TEST_CASE("archives that a Java tool makes are unpacked") {
  Files files = plainFiles();
  files.erase(L"__MACOSX\\._page.htm");  // the tool leaves such a file out
  checkUnpacked(L"jar-stored", files);
  const Unpacking unpacking(readAll(madeFolder() + L"jar.zip"));
  CHECK(unpacking.run());
  files[L"META-INF\\MANIFEST.MF"] = unpacking.read(L"META-INF\\MANIFEST.MF");
  CHECK(listed(filesIn(unpacking)) == listed(files));
}

TEST_CASE("archives that Python makes are unpacked") {
  for (const wchar_t* name : {L"python", L"python-stored", L"python-comment", L"python-long",
                              L"python-streamed", L"python-streamed-long", L"python-program"})
    checkUnpacked(name, plainFiles());
}

TEST_CASE("names beyond the English alphabet are unpacked as they are meant") {
  const Files expected = {{L"caf\u00E9.htm", "accent"}, {L"\u00FCber\\\u00E4.htm", "umlaut"}};
  for (const wchar_t* name :
       {L"accents-7z", L"accents-bsdtar", L"accents-python", L"accents-python-streamed"})
    checkUnpacked(name, expected);
}

TEST_CASE("a folder without files is made") {
  const Unpacking unpacking(readAll(madeFolder() + L"zip.zip"));
  CHECK(unpacking.run());
  CHECK(unpacking.scratch.exists(L"inside\\void"));
}

// The form that a tool gives a name which is not said to be in UTF-8 itself.
TEST_CASE("a name in an extra field is unpacked as it is meant, sizes behind the data or not") {
  for (const bool isStreamed : {false, true}) {
    ZipMaker::Extras extras;
    extras.extraField = ZipMaker::unicodeName("caf_.htm", "caf\xC3\xA9.htm");
    if (isStreamed) extras.descriptor = ZipMaker::Descriptor{};
    ModalDriver driver;
    const Unpacking unpacking(
        ZipMaker().add("caf_.htm", "accent", extras).add("last.htm", "last", {}));
    CHECK(unpacking.run());
    CHECK(filesIn(unpacking) == Files{{L"caf\u00E9.htm", "accent"}, {L"last.htm", "last"}});
  }
}
