// A template folder "Quay" on a real disk that is without fault until a test changes it.
#pragma once

#include <string>
#include <vector>

#include "author/template_check.h"
#include "tests/author/RecordedConsole.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/pictures.h"
#include "tests/support/text_output.h"

inline constexpr char quayPage[] =
    "<html>\n<head><title>Quay</title>\n<link rel=\"stylesheet\" "
    "href=\"quay.css\">\n</head>\n<body>\n"
    "<!-- #BeginEditable \"body\" -->\n<p>Words</p>\n<!-- #EndEditable -->\n</body>\n</html>\n";

class TemplateOnDisk {
 public:
  TemplateOnDisk() {
    write(L"quay.dwt", quayPage);
    write(L"quay.css", "body { background: url(stone.gif) }\n");
    write(L"stone.gif", "GIF89a");
    describe("Title=The Quay\r\nDescription=Stone and water.\r\n");
  }

  void write(const std::wstring& name, const std::string& bytes) const {
    disk.writeFile(L"Quay\\" + name, bytes);
  }
  // The lines of the section [quay], from the file's second line on.
  void describe(const std::string& lines) const { write(L"quillet.ini", "[quay]\r\n" + lines); }
  // The page with these lines in its body's place, from its sixth line on.
  void fill(const std::string& body) const {
    write(L"quay.dwt",
          "<html>\n<head>\n<link rel=\"stylesheet\" href=\"quay.css\">\n</head>\n<body>\n" + body +
              "\n</body>\n</html>\n");
  }

  author::FolderReport check() const {
    RecordedConsole console;
    return author::checkTemplateFolder(folder, L"Quay", console);
  }
  author::Findings findings() const { return check().findings; }

  // Each finding as "file:line: rule: what | effect | advice".
  std::vector<std::wstring> told() const { return told(findings()); }
  static std::vector<std::wstring> told(const author::Findings& findings) {
    std::vector<std::wstring> lines;
    for (const author::Finding& each : findings)
      lines.push_back(each.file + L":" + std::to_wstring(each.line) + L": " + each.rule + L": " +
                      each.what + L" | " + each.effect + L" | " + each.advice);
    return lines;
  }

  ScratchFolder disk;
  std::wstring folder = disk.makeFolder(L"Quay");
};

using Told = std::vector<std::wstring>;
