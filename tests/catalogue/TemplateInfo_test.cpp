#include "catalogue/TemplateInfo.h"

#include <windows.h>

#include "common/description_file.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

namespace {

// A template folder with a description file of these lines.
class TemplateFolder : public ScratchFolder {
 public:
  explicit TemplateFolder(const std::string& lines = {}) {
    if (!lines.empty()) writeFile(descriptionFileName, lines);
  }

  TemplateInfo info(std::wstring_view baseName = L"home") const {
    return GetDWTInfo(path(), baseName);
  }
};

}  // namespace

TEST_CASE("a template without a description file has its base name as title") {
  const TemplateFolder folder;
  const TemplateInfo info = folder.info();
  CHECK(info.title == L"home");
  CHECK(info.description == L"<not available>");
  CHECK(info.preview == L"");
  CHECK(info.readme == L"");
}

TEST_CASE("a template without a section of its own gets every default") {
  const TemplateFolder folder("[other]\r\nTitle=Other\r\nDescription=Not mine\r\n");
  const TemplateInfo info = folder.info();
  CHECK(info.title == L"home");
  CHECK(info.description == L"<not available>");
}

TEST_CASE("a template folder that does not exist gives every default") {
  const TemplateInfo info = GetDWTInfo(L"C:\\no such folder\\at all", L"home");
  CHECK(info.title == L"home");
  CHECK(info.description == L"<not available>");
  CHECK(info.preview == L"");
  CHECK(info.readme == L"");
}

TEST_CASE("a described template has what its section says") {
  const TemplateFolder folder(
      "[home]\r\nTitle=Home page\r\nDescription=The first page\r\nPreview=shot.gif\r\n"
      "Readme=notes.htm\r\n[other]\r\nTitle=Other\r\n");
  folder.writeFile(L"shot.gif");
  folder.writeFile(L"notes.htm");
  const TemplateInfo info = folder.info();
  CHECK(info.title == L"Home page");
  CHECK(info.description == L"The first page");
  CHECK(info.preview == folder / L"shot.gif");
  CHECK(info.readme == folder / L"notes.htm");
}

TEST_CASE("several templates of one folder have a section each") {
  const TemplateFolder folder("[home]\r\nTitle=Home\r\n[news.2003]\r\nTitle=News\r\n");
  CHECK(folder.info(L"home").title == L"Home");
  CHECK(folder.info(L"news.2003").title == L"News");
}

TEST_CASE("an empty title counts as missing") {
  const TemplateFolder folder("[home]\r\nTitle=\r\nDescription=\r\n");
  CHECK(folder.info().title == L"home");
  CHECK(folder.info().description == L"<not available>");
}

TEST_CASE("blanks around a described value are trimmed") {
  const TemplateFolder folder("[home]\r\nTitle=  \"  Home page  \"  \r\nDescription = x y \r\n");
  CHECK(folder.info().title == L"Home page");
  CHECK(folder.info().description == L"x y");
}

TEST_CASE("a title of more than 512 characters is cut to what the reader takes") {
  const TemplateFolder folder("[home]\r\nTitle=" + std::string(600, 'x') +
                              "\r\nDescription=after\r\n");
  CHECK(folder.info().title == std::wstring(511, L'x'));
  CHECK(folder.info().description == L"after");
}

TEST_CASE("a described value is cut at its first NUL character") {
  const TemplateFolder folder(std::string("[home]\r\nTitle=Home\0page\r\n", 24));
  CHECK(folder.info().title == L"Home");
}

TEST_CASE("the title keeps percent signs and quotes and umlauts") {
  const TemplateFolder folder("[100% \xE4\xF6]\r\nTitle=50% \"off\" \xC4pfel & 'more'\r\n");
  CHECK(folder.info(L"100% \x00E4\x00F6").title == L"50% \"off\" \x00C4pfel & 'more'");
}

TEST_CASE("a preview file that is missing gives way to the picture beside the template") {
  const TemplateFolder folder("[home]\r\nPreview=gone.gif\r\n");
  folder.writeFile(L"previewhome.jpeg");
  CHECK(folder.info().preview == folder / L"previewhome.jpeg");
}

TEST_CASE("of the pictures beside a template the gif is taken first") {
  const TemplateFolder folder;
  folder.writeFile(L"previewhome.jpg");
  folder.writeFile(L"previewhome.gif");
  CHECK(folder.info().preview == folder / L"previewhome.gif");
}

TEST_CASE("of the pictures beside a template the jpg is taken before the jpeg") {
  const TemplateFolder folder;
  folder.writeFile(L"previewhome.jpeg");
  folder.writeFile(L"previewhome.jpg");
  CHECK(folder.info().preview == folder / L"previewhome.jpg");
}

TEST_CASE("the picture of another template is no preview") {
  const TemplateFolder folder;
  folder.writeFile(L"previewnews.gif");
  folder.writeFile(L"preview.gif");
  CHECK(folder.info().preview == L"");
}

TEST_CASE("a page can be the preview") {
  const TemplateFolder folder("[home]\r\nPreview=look.htm\r\n");
  folder.writeFile(L"look.htm");
  folder.writeFile(L"previewhome.gif");
  CHECK(folder.info().preview == folder / L"look.htm");
}

TEST_CASE("a preview that names a folder is no preview") {
  const TemplateFolder folder("[home]\r\nPreview=images\r\n");
  folder.makeFolder(L"images");
  CHECK(folder.info().preview == L"");
}

TEST_CASE("a preview with wild cards names no file") {
  const TemplateFolder folder("[home]\r\nPreview=*.gif\r\n");
  folder.writeFile(L"shot.gif");
  CHECK(folder.info().preview == L"");
}

TEST_CASE("described paths are joined to the folder as they stand") {
  const TemplateFolder folder("[home]\r\nPreview=images\\shot.gif\r\nReadme=\\notes.htm\r\n");
  folder.writeFile(L"images\\shot.gif");
  folder.writeFile(L"notes.htm");
  CHECK(folder.info().preview == folder / L"images\\shot.gif");
  CHECK(folder.info().readme == folder / L"\\notes.htm");
}

TEST_CASE("a template folder may end in a backslash") {
  const TemplateFolder folder("[home]\r\nTitle=Home page\r\nPreview=shot.gif\r\n");
  folder.writeFile(L"shot.gif");
  const TemplateInfo info = GetDWTInfo(folder.path() + L"\\", L"home");
  CHECK(info.title == L"Home page");
  CHECK(info.preview == folder / L"shot.gif");
}

TEST_CASE("hidden previews and notes count as existing") {
  const TemplateFolder folder("[home]\r\nPreview=shot.gif\r\n");
  SetFileAttributesW(folder.writeFile(L"shot.gif").c_str(), FILE_ATTRIBUTE_HIDDEN);
  SetFileAttributesW(folder.writeFile(L"readme.htm").c_str(), FILE_ATTRIBUTE_HIDDEN);
  CHECK(folder.info().preview == folder / L"shot.gif");
  CHECK(folder.info().readme == folder / L"readme.htm");
}

TEST_CASE("without a Readme key and readme.htm the preview is the notes") {
  const TemplateFolder folder("[home]\r\nPreview=shot.htm\r\n");
  folder.writeFile(L"shot.htm");
  CHECK(folder.info().readme == folder / L"shot.htm");
}

TEST_CASE("notes that are missing give way to readme.htm") {
  const TemplateFolder folder("[home]\r\nReadme=gone.htm\r\n");
  folder.writeFile(L"readme.htm");
  folder.writeFile(L"previewhome.gif");
  CHECK(folder.info().readme == folder / L"readme.htm");
}

TEST_CASE("a template without notes shows its preview as notes") {
  const TemplateFolder folder("[home]\r\nReadme=gone.htm\r\n");
  folder.writeFile(L"previewhome.gif");
  CHECK(folder.info().readme == folder / L"previewhome.gif");
}

TEST_CASE("a template without notes and preview has empty notes") {
  const TemplateFolder folder("[home]\r\nTitle=Home\r\n");
  CHECK(folder.info().readme == L"");
}

TEST_CASE("a binary description file gives the defaults") {
  std::string bytes;
  for (int i = 0; i < 4096; ++i) bytes += static_cast<char>(i * 37 + i / 251);
  const TemplateFolder folder(bytes);
  const TemplateInfo info = folder.info();
  CHECK(info.title == L"home");
  CHECK(info.description == L"<not available>");
}

TEST_CASE("a description file of 10 MB is read like any other") {
  std::string lines = "[home]\r\nTitle=Home page\r\n[rest]\r\n";
  while (lines.size() < 10 * 1024 * 1024) lines += "Key" + std::string(1000, 'x') + "=value\r\n";
  const TemplateFolder folder(lines);
  CHECK(folder.info().title == L"Home page");
  CHECK(folder.info().description == L"<not available>");
}

TEST_CASE("a description file that is a folder gives the defaults") {
  const TemplateFolder folder;
  folder.makeFolder(descriptionFileName);
  CHECK(folder.info().title == L"home");
}

TEST_CASE("a base name outside the code page gives the defaults") {
  const TemplateFolder folder("[??]\r\nTitle=Not this one\r\n");
  CHECK(folder.info(L"\x4E2D\x6587").title == L"\x4E2D\x6587");
}

TEST_CASE("a template folder outside the code page gives the defaults") {
  const TemplateFolder folder;
  folder.writeFile(L"\x4E2D\\quillet.ini", "[home]\r\nTitle=Home page\r\n");
  const TemplateInfo info = GetDWTInfo(folder / L"\x4E2D", L"home");
  CHECK(info.title == L"home");
  CHECK(info.description == L"<not available>");
}

TEST_CASE("paths longer than the system takes give the defaults") {
  const TemplateInfo info = GetDWTInfo(L"C:\\" + std::wstring(300, L'x'), std::wstring(300, L'y'));
  CHECK(info.title == std::wstring(300, L'y'));
  CHECK(info.preview == L"");
}

TEST_CASE("gif and jpg and jpeg in any letter case are pictures") {
  CHECK(IsImageFile(L"C:\\a\\shot.gif"));
  CHECK(IsImageFile(L"C:\\a\\shot.JPG"));
  CHECK(IsImageFile(L"shot.JpEg"));
  CHECK(IsImageFile(L".gif"));
  CHECK(IsImageFile(L"C:\\a\\page.htm.gif"));
}

TEST_CASE("only the extension of the file name makes a picture") {
  CHECK_FALSE(IsImageFile(L"C:\\pictures.gif\\page"));
  CHECK_FALSE(IsImageFile(L"C:\\a\\shot.gif.htm"));
  CHECK_FALSE(IsImageFile(L"C:\\a\\gif"));
  CHECK_FALSE(IsImageFile(L"C:\\a\\shot.png"));
  CHECK_FALSE(IsImageFile(L"C:\\a\\shot.gif "));
  CHECK_FALSE(IsImageFile(L"shot."));
  CHECK_FALSE(IsImageFile(L""));
}

TEST_CASE("a base name is the file name up to its last point") {
  CHECK(templateBaseName(L"home.dwt") == L"home");
  CHECK(templateBaseName(L"news.2003.dwt") == L"news.2003");
  CHECK(templateBaseName(L".dwt") == L"");
  CHECK(templateBaseName(L"home") == L"home");
}
