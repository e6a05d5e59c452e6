#include "tests/runner/TestRun.h"

#include <shlwapi.h>

#include <algorithm>
#include <stdexcept>

#include "common/handles.h"
#include "tests/runner/TemporaryFolder.h"

namespace {

constexpr wchar_t ending[] = L".exe";
constexpr DWORD listLimit = 60000;  // milliseconds

// With long names: a path that a test is given it may get back in full.
std::wstring temporaryFolder() {
  wchar_t path[MAX_PATH] = {};
  GetTempPathW(MAX_PATH, path);
  wchar_t whole[MAX_PATH] = {};
  const DWORD length = GetLongPathNameW(path, whole, MAX_PATH);
  std::wstring result = length > 0 && length < MAX_PATH ? whole : path;
  if (!result.ends_with(L'\\')) result += L'\\';
  return result;
}

// What a test that was ended leaves of the registry of its own.
void removeScratchKeys() { SHDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Quillet scratch"); }

}  // namespace

TestRun::TestRun(const std::wstring& programs, DWORD limit)
    : programs_(programs),
      scratch_(temporaryFolder() + L"Q" + std::to_wstring(GetCurrentProcessId())),
      limit_(limit) {}

std::vector<TestRun::Program> TestRun::find(const std::vector<std::wstring>& wanted) const {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW entry;
  const handles::Find search(FindFirstFileW((programs_ + L"*-tests.exe").c_str(), &entry));
  for (bool more = static_cast<bool>(search); more;
       more = FindNextFileW(search.get(), &entry) != FALSE) {
    const std::wstring file = entry.cFileName;
    names.push_back(file.substr(0, file.size() - std::size(ending) + 1));
  }
  if (!wanted.empty())
    std::erase_if(names, [&](const auto& name) { return std::ranges::count(wanted, name) == 0; });
  std::ranges::sort(names);
  std::vector<Program> programs;
  for (const std::wstring& name : names) {
    Program program{name, {}, {}};
    try {
      program.cases = namesOf(start(name, L"--list-test-cases", listLimit).output);
    } catch (const std::runtime_error& error) {
      program.trouble = error.what();
    }
    programs.push_back(program);
  }
  return programs;
}

// By their numbers: in a name a comma, a wildcard or a letter that is not in the system's code page
// would mean something else on a command line.
void TestRun::run(const Program& program, Report& report) const {
  if (!program.trouble.empty()) report.add("(all of them)", {Result::failed, {program.trouble}});
  for (std::size_t index = 0; index < program.cases.size(); ++index) {
    const std::string& name = program.cases[index];
    const std::wstring number = std::to_wstring(index + 1);
    try {
      const auto outcome = start(
          program.name, L"--first=" + number + L" --last=" + number + L" --duration=true", limit_);
      report.add(name, judge(outcome.isEnded, outcome.code, outcome.output, name));
    } catch (const std::runtime_error& error) {
      report.add(name, {Result::failed, {error.what()}});
    }
  }
}

ChildProcess::Outcome TestRun::start(const std::wstring& name, const std::wstring& arguments,
                                     DWORD limit) const {
  const TemporaryFolder folder(scratch_);
  ChildProcess child(L"\"" + programs_ + name + ending + L"\" --no-colors=true " + arguments,
                     folder.path());
  const auto outcome = child.wait(limit);
  removeScratchKeys();
  return outcome;
}
