#include "help/local_page.h"

#include "common/handles.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

using namespace help;

namespace {

std::wstring textOf(const html::Page& page) {
  std::wstring text;
  for (const html::Block& block : page.body.blocks) {
    for (const html::Piece& piece : block.pieces) text += piece.text;
    text += L"|";
  }
  return text;
}

BOOL WINAPI refuseToRead(HANDLE, void*, DWORD, DWORD*, OVERLAPPED*) {
  SetLastError(ERROR_CRC);
  return FALSE;
}

std::string bytesBeside(const std::wstring& page, const std::wstring& address) {
  const auto picture = pictureBeside(page, address);
  return picture ? readPicture(*picture) : std::string();
}

}  // namespace

TEST_CASE("a page of notes is shown as a page") {
  const ScratchFolder disk;
  const auto file = disk.writeFile(L"readme.htm", "<title>Notes</title><p>One<p>two");
  CHECK(pageOf(file).title == L"Notes");
  CHECK(textOf(pageOf(file)) == L"One|two|");
}

TEST_CASE("a text is shown as it stands") {
  const ScratchFolder disk;
  const auto file = disk.writeFile(L"readme.txt", "a <b> & c");
  CHECK(textOf(pageOf(file)) == L"a <b> & c|");
}

TEST_CASE("a picture is shown as a page around it") {
  const ScratchFolder disk;
  const auto file = disk.writeFile(L"50% off.gif", "GIF89a");
  const html::Page page = pageOf(file);
  REQUIRE(page.body.blocks.size() == 1);
  CHECK(page.body.blocks[0].pieces[0].kind == html::Piece::Kind::picture);
  CHECK(bytesBeside(file, page.body.blocks[0].pieces[0].text) == "GIF89a");
}

TEST_CASE("a page that is missing says so with its path") {
  const ScratchFolder disk;
  CHECK(textOf(pageOf(disk / L"no<ne.htm")) ==
        L"This page is not there.|" + (disk / L"no<ne.htm") + L"|");
  CHECK(textOf(pageOf(L"")).starts_with(L"This page is not there."));
  CHECK(textOf(pageOf(disk.path())).starts_with(L"This page is not there."));
}

TEST_CASE("a page that another program keeps to itself says why, and such a picture is none") {
  const ScratchFolder disk;
  const auto page = disk.writeFile(L"a.htm", "<p>one");
  const auto picture = disk.writeFile(L"a.gif", "GIF89a");
  const auto keep = [](const std::wstring& file) {
    return handles::File(
        CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  };
  const handles::File pageKept = keep(page);
  const handles::File pictureKept = keep(picture);
  CHECK(textOf(pageOf(page)) == L"This page cannot be read: Permission denied|" + page + L"|");
  CHECK(bytesBeside(page, L"a.gif").empty());
}

TEST_CASE("a page whose disk fails while it is read says so, and such a picture is none") {
  const ScratchFolder disk;
  const auto page = disk.writeFile(L"a.htm", "<p>one");
  disk.writeFile(L"a.gif", "GIF89a");
  CHECK(bytesBeside(page, L"a.gif") == "GIF89a");
  const ImportPatch broken(nullptr, "kernel32.dll", "ReadFile", refuseToRead);
  CHECK(textOf(pageOf(page)) == L"This page cannot be read: Device I/O error|" + page + L"|");
  CHECK(bytesBeside(page, L"a.gif").empty());
}

TEST_CASE("a page that another program has open for writing is shown") {
  const ScratchFolder disk;
  const auto page = disk.writeFile(L"a.htm", "<p>one");
  const handles::File writing(CreateFileW(page.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                          nullptr, OPEN_EXISTING, 0, nullptr));
  REQUIRE(writing);
  CHECK(textOf(pageOf(page)) == L"one|");
}

TEST_CASE("a file of another kind says so and is not read") {
  const ScratchFolder disk;
  const auto file = disk.writeFile(L"setup.exe", "MZ");
  CHECK(textOf(pageOf(file)) == L"This is no page that can be shown.|" + file + L"|");
}

TEST_CASE("scripts of a page are neither run nor shown") {
  const ScratchFolder disk;
  const auto file = disk.writeFile(L"a.htm", "<script>alert(1)</script><p onclick='x()'>seen");
  CHECK(textOf(pageOf(file)) == L"seen|");
}

TEST_CASE("a page that is too long is shown in part and says so") {
  const ScratchFolder disk;
  const auto file =
      disk.writeFile(L"a.txt", std::string(static_cast<std::size_t>(longestPage) + 10, 'x'));
  CHECK_FALSE(readPage(file).whole);
  CHECK(readPage(file).text.size() == longestPage);
  CHECK(textOf(pageOf(file)).find(L"too long to be shown whole") != std::wstring::npos);
}

TEST_CASE("only pictures are taken for pictures of a page") {
  const ScratchFolder disk;
  const auto page = disk.writeFile(L"a.htm", "");
  disk.writeFile(L"a.gif", "GIF89a");
  disk.writeFile(L"secret.doc", "x");
  CHECK(bytesBeside(page, L"A.GIF") == "GIF89a");
  CHECK_FALSE(pictureBeside(page, L"secret.doc").has_value());
  CHECK(bytesBeside(page, L"none.gif").empty());
}
