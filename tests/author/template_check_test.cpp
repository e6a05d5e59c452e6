// What the check says of a template folder, rule by rule, on a real disk.
#include "author/template_check.h"

#include <algorithm>

#include "author/DescriptionLines.h"
#include "tests/author/OddFolders.h"
#include "tests/author/TemplateOnDisk.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/MadeUpFolder.h"

using namespace author;

namespace {

// A file system on which one file has lost its archive attribute.
class LostAttribute {
 public:
  explicit LostAttribute(std::wstring name) : name_(std::move(name)) { current_ = this; }
  ~LostAttribute() { current_ = nullptr; }
  LostAttribute(const LostAttribute&) = delete;
  LostAttribute& operator=(const LostAttribute&) = delete;

 private:
  static HANDLE WINAPI firstA(LPCSTR pattern, LPWIN32_FIND_DATAA data) {
    const HANDLE search = current_->firstA_.original<decltype(firstA)>()(pattern, data);
    if (search != INVALID_HANDLE_VALUE) current_->change(data->cFileName, data->dwFileAttributes);
    return search;
  }
  static HANDLE WINAPI firstW(LPCWSTR pattern, LPWIN32_FIND_DATAW data) {
    const HANDLE search = current_->firstW_.original<decltype(firstW)>()(pattern, data);
    if (search != INVALID_HANDLE_VALUE) current_->change(data->cFileName, data->dwFileAttributes);
    return search;
  }
  static BOOL WINAPI nextW(HANDLE search, LPWIN32_FIND_DATAW data) {
    const BOOL found = current_->nextW_.original<decltype(nextW)>()(search, data);
    if (found) current_->change(data->cFileName, data->dwFileAttributes);
    return found;
  }
  template <class Letter>
  void change(const Letter* found, DWORD& attributes) const {
    const std::wstring name(found, found + std::char_traits<Letter>::length(found));
    if (name == name_) attributes &= ~static_cast<DWORD>(FILE_ATTRIBUTE_ARCHIVE);
  }

  static inline LostAttribute* current_ = nullptr;
  std::wstring name_;
  ImportPatch firstA_{nullptr, "kernel32.dll", "FindFirstFileA", firstA};
  ImportPatch firstW_{nullptr, "kernel32.dll", "FindFirstFileW", firstW};
  ImportPatch nextW_{nullptr, "kernel32.dll", "FindNextFileW", nextW};
};

// "loop" and every folder in it holds a folder "loop".
class LoopingFolder {
 public:
  LoopingFolder() { current_ = this; }
  ~LoopingFolder() { current_ = nullptr; }
  LoopingFolder(const LoopingFolder&) = delete;
  LoopingFolder& operator=(const LoopingFolder&) = delete;

 private:
  static HANDLE WINAPI first(LPCWSTR pattern, LPWIN32_FIND_DATAW data) {
    std::wstring path(pattern);
    const auto loop = path.find(L"\\loop\\");
    // The first one stands for all that lie in it; its own folder is found in the folder above.
    if (loop != path.npos) path = path.substr(0, loop) + L"\\loop*";
    return current_->patch_.original<decltype(first)>()(path.c_str(), data);
  }
  static inline LoopingFolder* current_ = nullptr;
  ImportPatch patch_{nullptr, "kernel32.dll", "FindFirstFileW", first};
};

Told rulesOf(const Findings& findings) {
  Told rules;
  for (const Finding& each : findings) rules.push_back(each.rule);
  return rules;
}

std::string blueGif() {
  return std::string(reinterpret_cast<const char*>(pictures::blueGif), sizeof pictures::blueGif);
}

constexpr wchar_t ignored[] = L"The line is ignored, and the template is copied without a theme.";
constexpr wchar_t howFlags[] =
    L"Write the name, one blank and four digits, as in \"nightferry 1111\".";

}  // namespace

TEST_CASE("a template without fault is told as the browser shows it") {
  const TemplateOnDisk quay;
  quay.write(L"previewquay.gif", blueGif());
  quay.describe("Title= The Quay \r\nDescription=Stone and water.\r\nTheme=nightferry 1011\r\n");
  const FolderReport report = quay.check();
  CHECK(quay.told(report.findings) == Told{});
  REQUIRE(report.templates.size() == 1);
  const ListedTemplate& listed = report.templates[0];
  CHECK(listed.file == quay.folder + L"\\quay.dwt");
  CHECK(listed.title == L"The Quay");
  CHECK(listed.description == L"Stone and water.");
  CHECK(listed.preview == quay.folder + L"\\previewquay.gif");
  CHECK(listed.isPicture);
  CHECK(listed.width == 201);
  CHECK(listed.height == 100);
  CHECK(listed.notes == quay.folder + L"\\previewquay.gif");
  REQUIRE(listed.theme);
  CHECK(listed.theme->name == L"nightferry");
  CHECK(listed.theme->flags == 0x1011);
  CHECK(listed.regions == Told{L"body"});
}

TEST_CASE("a template without a description file is listed by its name") {
  const TemplateOnDisk quay;
  DeleteFileW((quay.folder + L"\\quillet.ini").c_str());
  const FolderReport report = quay.check();
  CHECK(quay.told(report.findings) == Told{});
  REQUIRE(report.templates.size() == 1);
  CHECK(report.templates[0].title == L"quay");
  CHECK(report.templates[0].description == L"<not available>");
  CHECK(report.templates[0].preview == quay.folder + L"\\quay.dwt");
}

TEST_CASE("a theme line without flags and one with too few are told to be ignored") {
  const TemplateOnDisk quay;
  quay.describe("Title=x\r\nTheme=Blends\r\n");
  CHECK(quay.told() ==
        Told{std::wstring(L"Quay\\quillet.ini:3: theme-flags-missing: No flags stand "
                          L"behind the theme's name: Blends | ") +
             ignored + L" | " + howFlags});
  quay.describe("Title=x\r\nTheme=Blends 0\r\n");
  CHECK(quay.told() ==
        Told{std::wstring(L"Quay\\quillet.ini:3: theme-flags-short: The theme's flags "
                          L"have fewer than two characters: Blends 0 | ") +
             ignored + L" | " + howFlags});
}

TEST_CASE("a theme's name with a blank is told as it is read") {
  const TemplateOnDisk quay;
  quay.describe("Theme=Sumi Painting 011\r\n");
  CHECK(
      quay.told() ==
      Told{
          L"Quay\\quillet.ini:2: theme-name-blank: The theme's name has a blank: Sumi Painting 011 "
          L"| The name ends at the first blank: the host is asked for the theme \"Sumi\". | Give "
          L"the theme's folder a name without blanks. Exactly one stands before the flags."});
}

TEST_CASE("a theme's flags that are too long or no digits are told as they are read") {
  const TemplateOnDisk quay;
  quay.describe("Theme=Blends 01101\r\n");
  CHECK(quay.told() ==
        Told{L"Quay\\quillet.ini:2: theme-flags-long: The theme's flags have more than "
             L"four characters: 01101 | Only the first four count: 0110 | Write four "
             L"digits."});
  quay.describe("Theme=Blends all\r\n");
  CHECK(rulesOf(quay.findings()) == Told{L"theme-flags-digits"});
  quay.describe("Theme=Blends 1111\r\n");
  CHECK(rulesOf(quay.findings()) == Told{});
}

TEST_CASE("a value beyond its read length is told with what is read of it") {
  const TemplateOnDisk quay;
  quay.describe("Title=" + std::string(511, 'x') + "\r\nDescription=" + std::string(512, 'y') +
                "\r\nTheme=" + std::string(251, 't') + " 1111\r\n");
  const Told told = quay.told();
  REQUIRE(told.size() == 2);
  CHECK(told[0] ==
        L"Quay\\quillet.ini:3: value-length: The value of \"Description\" has 512 "
        L"characters. | Only the first 511 are read. | Make it shorter.");
  CHECK(told[1] ==
        L"Quay\\quillet.ini:4: value-length: The value of \"Theme\" has 256 characters. | "
        L"Only the first 255 are read. | Make it shorter.");
}

TEST_CASE("a preview and notes that are missing are told with what is shown instead") {
  const TemplateOnDisk quay;
  quay.describe("Preview=quay.gif\r\nReadme=notes.htm\r\n");
  CHECK(quay.told() ==
        Told{L"Quay\\quillet.ini:2: preview-missing: There is no preview quay.gif. | The browser "
             L"shows "
             L"quay.dwt instead. | Put the picture or page there, or name one that is there.",
             L"Quay\\quillet.ini:3: notes-missing: There are no notes notes.htm. | The button "
             L"\"Notes...\" shows quay.dwt instead. | Put the page there, or name one that is "
             L"there."});
}

TEST_CASE("a preview that is no picture is told") {
  const TemplateOnDisk quay;
  quay.write(L"quay.gif", "not a picture at all");
  quay.describe("Preview=quay.gif\r\n");
  CHECK(quay.told() ==
        Told{L"Quay\\quay.gif:0: preview-undecodable: The preview is no picture that "
             L"can be shown: it is damaged, or not what its name says. | The browser "
             L"shows \"Error in preview\" in its place. | Save the picture anew as GIF "
             L"or JPEG."});
}

TEST_CASE("a preview that the browser opens no window for is told") {
  const TemplateOnDisk quay;
  quay.write(L"quay.doc", "words");
  quay.describe("Preview=quay.doc\r\n");
  CHECK(rulesOf(quay.findings()) == Told{L"preview-kind"});
}

TEST_CASE("a preview in a folder is found however its path is written") {
  const TemplateOnDisk quay;
  quay.write(L"images\\quay.gif", blueGif());
  quay.describe("Preview=images/.\\..\\images/quay.gif\r\n");
  const FolderReport report = quay.check();
  CHECK(quay.told(report.findings) == Told{});
  CHECK(report.templates[0].width == 201);
}

TEST_CASE("a preview outside of the template folder is told") {
  const TemplateOnDisk quay;
  quay.disk.writeFile(L"out.gif", blueGif());
  quay.describe("Preview=..\\out.gif\r\n");
  CHECK(quay.told() ==
        Told{L"Quay\\quillet.ini:2: value-outside: \"Preview\" names a file outside of "
             L"the template folder: ..\\out.gif | Whoever downloads the template does "
             L"not get it. | Put the file into the template folder and name it from "
             L"there."});
}

TEST_CASE("lines of the description file that nobody reads are told") {
  const TemplateOnDisk quay;
  quay.write(L"quillet.ini",
             "Stray=1\r\n; a comment\r\n[quay]\r\nTitle=a\r\ntitle=b\r\nAuthor=c\r\nwords\r\n"
             "[harbour]\r\n[QUAY]\r\n");
  CHECK(
      quay.told() ==
      Told{(L"Quay\\quillet.ini:1: description-line: The line belongs to no section, or is no "
            L"\"key=value\". | It is passed over. | Take it away, or put a \";\" in front of it."),
           (L"Quay\\quillet.ini:5: description-repeated: The key \"title\" stands in the section "
            L"before. | Only the first one is read. | Keep one of the two."),
           (L"Quay\\quillet.ini:6: description-key: The key \"Author\" is not known. | The line is "
            L"passed over. | The keys are Title, Description, Preview, Readme and Theme."),
           (L"Quay\\quillet.ini:7: description-line: The line belongs to no section, or is no "
            L"\"key=value\". | It is passed over. | Take it away, or put a \";\" in front of it."),
           (L"Quay\\quillet.ini:8: description-section: No template of the folder is named like "
            L"the section [harbour]. | The section is passed over. | Name the section like the "
            L"template's file, without \".dwt\"."),
           (L"Quay\\quillet.ini:9: description-repeated: The section [QUAY] stands in the file "
            L"before. | Only the first one is read. | Put all lines of a template into one "
            L"section.")});
}

TEST_CASE("a description file in another encoding is told") {
  const TemplateOnDisk quay;
  quay.describe("Title=Gr\xC3\xBCn\r\n");
  CHECK(rulesOf(quay.findings()) == Told{L"description-encoding"});
  quay.describe("Title=Gr\xFCn\r\n");
  CHECK(rulesOf(quay.findings()) == Told{});
  quay.write(L"quillet.ini", "\xEF\xBB\xBF[quay]\r\nTitle=a\r\n");
  const Findings findings = quay.findings();
  REQUIRE(!findings.empty());
  CHECK(findings[0].rule == L"description-encoding");
  CHECK(findings[0].line == 1);
  quay.write(L"quillet.ini", "\xFF\xFE[");
  CHECK(quay.told()[0] ==
        L"Quay\\quillet.ini:1: description-encoding: The file is in UTF-16. | Older systems read "
        L"nothing of it. | Save it in the code page of its readers (\"ANSI\").");
}

TEST_CASE("what the system reads in a file in UTF-16 is told without lines, the preview first") {
  const TemplateOnDisk quay;
  const std::wstring_view lines = L"\uFEFF[quay]\r\nReadme=gone.htm\r\nPreview=gone.gif\r\n";
  quay.write(L"quillet.ini", {reinterpret_cast<const char*>(lines.data()), 2 * lines.size()});
  const Told told = rulesOf(quay.findings());
  REQUIRE(told.size() > 2);
  CHECK(Told(told.begin(), told.begin() + 2) == Told{L"preview-missing", L"notes-missing"});
}

TEST_CASE("a value with a NUL character is told with its line") {
  const TemplateOnDisk quay;
  quay.describe(std::string("Title=a\0b\r\n", 11));
  CHECK(quay.told() == Told{L"Quay\\quillet.ini:2: value-nul: The value of \"Title\" holds a NUL "
                            L"character. | It is cut there. | Take the character out."});
}

TEST_CASE("a description file that is too large to be read is told") {
  const TemplateOnDisk quay;
  quay.write(L"quillet.ini", std::string(256u << 10, ';') + "\n");
  const Told told = quay.told();
  REQUIRE(told.size() == 1);
  CHECK(told[0].starts_with(L"Quay\\quillet.ini:0: unreadable: "));
  CHECK(
      told[0].ends_with(L" | The browser knows nothing of the templates but their names. | See "
                        L"that the file can be read and is of a usual size."));
}

TEST_CASE("a line of the description file that is not there has the number nought") {
  const DescriptionLines lines = readDescription(L"[quay]\nTitle=a");
  CHECK(lines.lineOf(L"QUAY", L"title") == 2);
  CHECK(lines.lineOf(L"quay", L"Preview") == 0);
  CHECK(lines.lineOf(L"pier", L"Title") == 0);
}

TEST_CASE("a template that the browser's search does not come by is told not to be listed") {
  const TemplateOnDisk quay;
  const MadeUpFolder<AnsiSearch> nothing("Quay", 0, 0);
  const Told told = quay.told();
  REQUIRE(!told.empty());
  CHECK(told[0] ==
        L"Quay\\quay.dwt:0: not-listed: The search for templates does not find the "
        L"file. | The browser does not list it. | Look whether the path is too long or "
        L"the file cannot be read.");
}

TEST_CASE("a folder's templates are told in the order of their names") {
  const TemplateOnDisk quay;
  quay.write(L"pier.dwt", quayPage);
  const FolderReport report = quay.check();
  REQUIRE(report.templates.size() == 2);
  CHECK(report.templates[0].title == L"pier");
  CHECK(report.templates[1].title == L"The Quay");
}

TEST_CASE("a template without its archive attribute is told not to be listed") {
  const TemplateOnDisk quay;
  const LostAttribute lost(L"quay.dwt");
  const FolderReport report = quay.check();
  CHECK(report.templates.empty());
  const Told told = quay.told(report.findings);
  REQUIRE(told.size() == 2);
  CHECK(told[0] ==
        L"Quay\\quay.dwt:0: archive-attribute: The file's archive attribute is cleared. | "
        L"The browser does not list it. | Set it: attrib +a \"quay.dwt\"");
  CHECK(report.findings[1].rule == L"description-section");
}

TEST_CASE("a name outside the code page is told") {
  const TemplateOnDisk quay;
  quay.write(L"\u6E2F.dwt", quayPage);
  const FolderReport report = quay.check();
  CHECK(report.templates.size() == 1);
  CHECK(
      quay.told(report.findings) ==
      Told{
          L"Quay\\\u6E2F.dwt:0: code-page: The name has a character that this system's code page "
          L"lacks. | No program of the host's kind can open it; copying the template fails. | Give "
          L"it a name of letters, digits, \"-\" and \"_\"."});
}

TEST_CASE("a template in a folder below is told not to be listed") {
  const TemplateOnDisk quay;
  quay.write(L"more\\pier.dwt", quayPage);
  CHECK(quay.told() ==
        Told{L"Quay\\more\\pier.dwt:0: template-too-deep: The template lies in a folder "
             L"below the template folder. | The browser does not list it. | Move it, "
             L"and what belongs to it, one level up."});
}

TEST_CASE("a folder that is named like a template is told not to be listed") {
  const TemplateOnDisk quay;
  quay.disk.makeFolder(L"Quay\\pier.dwt");
  CHECK(rulesOf(quay.findings()) == Told{L"folder-as-template"});
}

TEST_CASE("the host's own folders are passed over") {
  const TemplateOnDisk quay;
  quay.write(L"_vti_cnf\\quay.dwt", "x");
  quay.write(L"_vti_cnf\\stone.gif", "x");
  CHECK(quay.told() == Told{});
}

TEST_CASE("a template below a host's own folder is told not to be listed") {
  const TemplateOnDisk quay;
  quay.disk.writeFile(L"_vti_x\\Quay\\quay.dwt", quayPage);
  RecordedConsole console;
  const FolderReport report = checkTemplateFolder(quay.disk / L"_vti_x\\Quay", L"Quay", console);
  CHECK(report.templates.empty());
  REQUIRE(!report.findings.empty());
  CHECK(report.findings[0].rule == L"host-folder");
}

TEST_CASE("a path that is too long for the host is told once") {
  const TemplateOnDisk quay;
  const std::wstring deep(160, L'd');
  quay.write(deep + L"\\stone-of-the-quay.gif", "x");
  quay.fill("<!-- #BeginEditable \"b\" --><img src=\"" + std::string(160, 'd') +
            "/stone-of-the-quay.gif\"><!-- #EndEditable -->");
  CHECK(quay.told() ==
        Told{L"Quay\\" + deep +
             L"\\stone-of-the-quay.gif:0: path-length: The path has 187 characters from "
             L"the template folder's name on. | The host takes 259 for a whole path. "
             L"With more than 170 here, the template cannot be downloaded or copied by "
             L"everybody. | Use shorter names, or fewer folders inside of each other."});
}

TEST_CASE("a template without editable regions is told") {
  const TemplateOnDisk quay;
  quay.fill("<p>Words</p>");
  CHECK(quay.told() ==
        Told{L"Quay\\quay.dwt:0: regions-missing: The template has no editable region. "
             L"| Nothing can be changed in the pages that are made of it. | Mark what "
             L"is to be filled in: <!-- #BeginEditable \"body\" --> ... <!-- "
             L"#EndEditable -->"});
}

TEST_CASE("editable regions that do not fit together are told by line") {
  const TemplateOnDisk quay;
  quay.fill(
      "<!-- #BeginEditable \"a\" -->\n<!-- #BeginEditable \"b\" -->\n<!-- #EndEditable -->\n"
      "<!-- #EndEditable -->\n<!-- #BeginEditable \"\" -->\n<!-- #EndEditable -->\n"
      "<!-- #BeginEditable \"A\" -->");
  CHECK(
      quay.told() ==
      Told{(L"Quay\\quay.dwt:7: region-unbalanced: The editable region \"b\" begins before the one "
            L"of line 6 has ended. | The host does not attach pages to such a template. | End the "
            L"first one before: <!-- #EndEditable -->"),
           (L"Quay\\quay.dwt:9: region-unbalanced: An editable region ends that has not begun. | "
            L"The host does not attach pages to such a template. | Take the mark away, or begin "
            L"the region before it."),
           (L"Quay\\quay.dwt:10: region-unnamed: The editable region has no name. | The host "
            L"cannot tell which part of a page belongs into it. | Name it: <!-- #BeginEditable "
            L"\"body\" -->"),
           (L"Quay\\quay.dwt:12: region-repeated: The editable region \"A\" begins in line 6 "
            L"already. | Pages lose what stands in one of the two when the template changes. | "
            L"Give each region a name of its own."),
           (L"Quay\\quay.dwt:12: region-unbalanced: The editable region \"A\" does not end. | The "
            L"host does not attach pages to such a template. | End it: <!-- #EndEditable -->")});
}

TEST_CASE("links to files that are not in the folder are told by line") {
  const TemplateOnDisk quay;
  quay.fill(
      "<!-- #BeginEditable \"b\" -->\n<img src=\"gone.gif\">\n<a href=\"../up.htm\">up</a>\n"
      "<img src=\"file:///C:/a.gif\">\n<a href=\"quillet.ini\">ini</a>\n"
      "<a href=\"http://elsewhere/\">out</a>\n<!-- #EndEditable -->");
  CHECK(
      quay.told() ==
      Told{
          L"Quay\\quay.dwt:7: link-missing: The address \"gone.gif\" leads to no file of the "
          L"template folder. | Pages of the template show a gap or a broken link there. | Put the "
          L"file where the address says, or take the link out.",
          L"Quay\\quay.dwt:8: link-outside: The address \"../up.htm\" leads out of the template "
          L"folder. | What it leads to is not copied with the template. | Put the file into the "
          L"template folder and name it from there.",
          L"Quay\\quay.dwt:9: link-local: The address \"file:///C:/a.gif\" names a place of this "
          L"computer's disk. | Nobody else can see it. | Put the file into the template folder and "
          L"name it from there.",
          L"Quay\\quay.dwt:10: link-missing: The address \"quillet.ini\" leads to a file that is "
          L"not copied. | Pages of the template show a gap or a broken link there. | Put the file "
          L"where the address says, or take the link out."});
}

TEST_CASE("two links of one line to the same missing file are told once") {
  const TemplateOnDisk quay;
  quay.fill("<!-- #BeginEditable \"b\" --><img src=x.gif><img src=x.gif><!-- #EndEditable -->");
  CHECK(rulesOf(quay.findings()) == Told{L"link-missing"});
}

TEST_CASE("a link in other letters than the file's name is told") {
  const TemplateOnDisk quay;
  quay.write(L"quay.css", "body { background: url('Stone.GIF') }");
  CHECK(quay.told() ==
        Told{L"Quay\\quay.css:1: link-case: The address \"Stone.GIF\" differs from the "
             L"file's name, stone.gif, in capital letters. | Web servers that tell "
             L"capital letters apart do not find the file. | Write the address as the "
             L"file is named."});
}

TEST_CASE("a file that nobody links to is told") {
  const TemplateOnDisk quay;
  quay.write(L"old\\left.htm", "<img src=\"left.gif\">");
  quay.write(L"old\\left.gif", "x");
  CHECK(
      quay.told() ==
      Told{L"Quay\\old\\left.gif:0: unlinked: No template and no page that they lead to names the "
           L"file. | It is copied into every web, and nobody sees it. | Take it out of the folder, "
           L"or link to it.",
           L"Quay\\old\\left.htm:0: unlinked: No template and no page that they lead to names the "
           L"file. | It is copied into every web, and nobody sees it. | Take it out of the folder, "
           L"or link to it."});
}

TEST_CASE("files that pages and scripts and notes lead to are linked") {
  const TemplateOnDisk quay;
  quay.fill(
      "<!-- #BeginEditable \"b\" --><a href=\"more/one.htm\">one</a><script "
      "src=\"swap.js\"></script><!-- #EndEditable -->");
  quay.write(L"more\\one.htm", "<img src=\"../two.gif\">");
  quay.write(L"two.gif", "x");
  quay.write(L"swap.js", "image.src = 'Three.gif'");
  quay.write(L"three.gif", "x");
  quay.write(L"readme.htm", "<img src=\"four.gif\">");
  quay.write(L"four.gif", "x");
  CHECK(quay.told() == Told{});
}

TEST_CASE("of findings of one kind a hundred are told and the number of the others") {
  const TemplateOnDisk quay;
  const std::wstring huge = quay.disk.makeFolder(L"Quay\\huge");
  const MadeUpFolder<WideSearch> files(L"huge", 0, 70000);
  const FolderReport report = quay.check();
  CHECK(report.tree.entries.size() == FolderTree::mostEntries);
  const auto& findings = report.findings;
  REQUIRE(findings.size() == 102);
  CHECK(std::count_if(findings.begin(), findings.end(), [](const Finding& each) {
          return each.rule == L"unlinked" && each.file.starts_with(L"Quay\\huge\\entry");
        }) == 100);
  const Told told = quay.told({findings[0], findings[1]});
  CHECK(told[0] ==
        L"Quay:0: too-many: The folder holds more than 65,535 files and folders. | It cannot "
        L"be packed, and what is said here is not all. | Take out what does not belong to "
        L"the template.");
  CHECK(told[1].starts_with(L"Quay:0: unlinked: 65"));
  CHECK(
      told[1].ends_with(L" more findings of this kind are not told. | What happens is the same. | "
                        L"Start with those that are told."));
}

TEST_CASE("a folder that cannot be read and one that leads elsewhere are told") {
  const TemplateOnDisk quay;
  quay.disk.makeFolder(L"Quay\\locked");
  quay.disk.makeFolder(L"Quay\\link");
  const OddFolders odd;
  CHECK(
      quay.told() ==
      Told{L"Quay\\link:0: link-folder: The folder is a link to another place of the disk. | What "
           L"it "
           L"leads to is copied, but not packed. | Put the files themselves into the template "
           L"folder.",
           L"Quay\\locked:0: unreadable: The folder cannot be read. | A copy of the template ends "
           L"here with a message. | Give yourself the right to read it."});
}

TEST_CASE("a folder that holds itself is looked into as deep as a path can be") {
  const TemplateOnDisk quay;
  quay.disk.makeFolder(L"Quay\\loop");
  const LoopingFolder loop;
  const FolderReport report = quay.check();
  CHECK(rulesOf(report.findings) == Told{L"path-length"});
  CHECK(report.tree.entries.size() < 100);
}

TEST_CASE("a page that is too large to be read is told") {
  const TemplateOnDisk quay;
  quay.write(L"readme.htm", std::string(9u << 20, ' '));
  const Findings findings = quay.findings();
  REQUIRE(findings.size() == 1);
  CHECK(findings[0].rule == L"unreadable");
  CHECK(findings[0].file == L"Quay\\readme.htm");
}
