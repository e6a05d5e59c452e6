// A template "Quay", its theme "glass", and the site that is made of them.
#pragma once

#include <string>
#include <vector>

#include "author/program.h"
#include "tests/author/TemplateOnDisk.h"

class Catalogue {
 public:
  explicit Catalogue(std::wstring address = L"http://example.invalid/shop/")
      : address_(std::move(address)) {
    quay.write(L"previewquay.gif", std::string(reinterpret_cast<const char*>(pictures::blueGif),
                                               sizeof pictures::blueGif));
    quay.describe("Title=The <Quay>\r\nDescription=Stone & water.\r\nTheme=glass 1011\r\n");
    quay.disk.writeFile(L"glass\\glass.inf", "[info]\r\ntitle=Sea Glass\r\n");
    quay.disk.writeFile(L"glass\\glass.elm", "x");
  }

  author::ExitCode make(const std::vector<std::wstring>& more = {}) {
    std::vector<std::wstring> arguments = {
        L"catalogue", quay.folder, L"-o",      out / L"site",
        L"--url",     address_,    L"--theme", quay.disk / L"glass"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return author::runProgram(arguments, console);
  }
  std::string read(const std::wstring& name) const { return out.readFile(L"site\\" + name); }

  TemplateOnDisk quay;
  ScratchFolder out;
  RecordedConsole console;

 private:
  std::wstring address_;
};

inline bool holds(const std::string& text, const std::string& what) {
  return text.find(what) != std::string::npos;
}
