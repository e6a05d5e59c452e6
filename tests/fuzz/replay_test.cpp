// The inputs that are kept, given to the rules as they are built for Windows: those that fuzzing
// has found to lead somewhere, and those that once broke a promise.
#include <windows.h>

#include <algorithm>
#include <stdexcept>

#include "common/handles.h"
#include "tests/fuzz/Target.h"
#include "tests/support/read_all.h"
#include "tests/support/text_output.h"

namespace fuzz {

void promise(bool kept, const char* what) {
  if (!kept) throw std::logic_error(what);
}

}  // namespace fuzz

namespace {

std::wstring corpusFolder() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring program = path;
  return program.substr(0, program.rfind(L'\\') + 1) + L"fuzz-corpus\\";
}

std::vector<std::wstring> namesIn(const std::wstring& folder) {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW entry;
  const handles::Find search(FindFirstFileW((folder + L"*").c_str(), &entry));
  if (!search) return names;
  do names.push_back(entry.cFileName);
  while (FindNextFileW(search.get(), &entry));
  std::erase(names, L".");
  std::erase(names, L"..");
  return names;
}

const fuzz::Target* find(std::string_view name) {
  const fuzz::Target* target = fuzz::Target::first();
  while (target && target->name() != name) target = target->next();
  return target;
}

void replay(const std::string& name) {
  const fuzz::Target* const target = find(name);
  REQUIRE(target != nullptr);
  const std::wstring folder = corpusFolder() + std::wstring(name.begin(), name.end()) + L"\\";
  const auto inputs = namesIn(folder);
  REQUIRE_FALSE(inputs.empty());
  for (const std::wstring& input : inputs) {
    CAPTURE(input);
    CHECK_NOTHROW(target->run(readAll(folder + input)));
  }
}

}  // namespace

TEST_CASE("each folder of kept inputs is replayed") {
  std::vector<std::wstring> targets;
  for (const auto* target = fuzz::Target::first(); target; target = target->next()) {
    const std::string name = target->name();
    targets.emplace_back(name.begin(), name.end());
  }
  std::sort(targets.begin(), targets.end());
  std::vector<std::wstring> folders = namesIn(corpusFolder());
  std::erase(folders, L"complete");
  std::sort(folders.begin(), folders.end());
  CHECK(targets == folders);
}

TEST_CASE("a promise that is broken fails a replay") {
  CHECK_THROWS_WITH(fuzz::promise(false, "this one"), "this one");
  CHECK_NOTHROW(fuzz::promise(true, "this one"));
}

TEST_CASE("kept inputs of the choice of an accelerator") { replay("accelerator"); }
TEST_CASE("kept inputs of the archive gate") { replay("archive_gate"); }
TEST_CASE("kept inputs of the names in archives") { replay("archive_names"); }
TEST_CASE("kept inputs of the templates that authors check") { replay("author_page"); }
TEST_CASE("kept inputs of what authors say") { replay("author_words"); }
TEST_CASE("kept inputs of the file addresses") { replay("file_address"); }
TEST_CASE("kept inputs of the names of files and folders") { replay("file_names"); }
TEST_CASE("kept inputs of the pages of notes and help") { replay("html_page"); }
TEST_CASE("kept inputs of the description file") { replay("ini_value"); }
TEST_CASE("kept inputs of the page addresses") { replay("page_address"); }
TEST_CASE("kept inputs of the pictures") { replay("picture_header"); }
TEST_CASE("kept inputs of the placement record") { replay("placement_record"); }
TEST_CASE("kept inputs of the download list") { replay("query_list"); }
TEST_CASE("kept inputs of the success page") { replay("success_address"); }
TEST_CASE("kept inputs of the theme line") { replay("theme_value"); }
TEST_CASE("kept inputs of the whole unpacking") { replay("unpacking"); }
TEST_CASE("kept inputs of the help viewers' command lines") { replay("viewer_arguments"); }
TEST_CASE("kept inputs of the paths in a web") { replay("web_path"); }
