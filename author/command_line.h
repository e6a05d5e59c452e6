// What the program is asked to do. A pure rule.
#pragma once

#include <string>
#include <vector>

namespace author {

struct Request {
  enum class Command { help, version, check, pack, catalogue, checkCatalogue, pages };

  Command command = Command::help;
  std::vector<std::wstring> folders;
  std::vector<std::wstring> themes;
  std::wstring output;   // -o
  std::wstring address;  // --url, --check
  std::wstring pages;    // --pages
  std::wstring title;    // --title
  bool json = false;
  bool anyway = false;

  // Why it cannot be done, as a sentence; empty when it can.
  std::wstring fault;
};

// `arguments` without the program's own name.
Request parseCommandLine(const std::vector<std::wstring>& arguments);

extern const wchar_t usageText[];

}  // namespace author
