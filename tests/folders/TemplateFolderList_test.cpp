#include "folders/TemplateFolderList.h"

#include "common/errors.h"
#include "common/handles.h"
#include "tests/folders/folder_support.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/text_output.h"

namespace {

using modCommon::ReadTemplateFolderList;

// How many values the patched registry pretends to hold.
DWORD pretendedValues = 0;

LSTATUS WINAPI enumeratePretendedValues(HKEY, DWORD index, LPSTR name, LPDWORD length, LPDWORD,
                                        LPDWORD type, LPBYTE, LPDWORD) {
  if (index >= pretendedValues) return ERROR_NO_MORE_ITEMS;
  lstrcpyA(name, "C:\\T");
  *length = 4;
  if (type) *type = REG_SZ;
  return ERROR_SUCCESS;
}

}  // namespace

TEST_CASE("no machine-wide key and no per-user settings give an empty folder list") {
  ScratchRegistry registry;
  const LoggingOn logging;
  const DebugOutput output;
  TemplateFolderList list;
  CHECK(ReadTemplateFolderList(list) == 0);
  CHECK(list.empty());
  CHECK(output.messages() ==
        Lines{L"Reading DWT folders list...", L"DWT folders list contains 0 items."});
}

TEST_CASE("reading the folder list makes no machine-wide key") {
  ScratchRegistry registry;
  TemplateFolderList list;
  ReadTemplateFolderList(list);
  CHECK_FALSE(registry.hasKey(HKEY_LOCAL_MACHINE, machineFolders));
  CHECK_FALSE(registry.hasKey(HKEY_CURRENT_USER, userFolders));
}

TEST_CASE("machine-wide folders come before the folders of the user") {
  ScratchRegistry registry;
  listForUser(registry, L"C:\\A");
  listForMachine(registry, L"D:\\Z");
  const LoggingOn logging;
  const DebugOutput output;
  TemplateFolderList list;
  CHECK(ReadTemplateFolderList(list) == 2);
  CHECK(tagged(list) == Lines{L"GD:\\Z", L"UC:\\A"});
  CHECK(output.messages() == Lines{L"Reading DWT folders list...", L"key opened", L"Global - D:\\Z",
                                   L"User - C:\\A", L"DWT folders list contains 2 items."});
}

TEST_CASE("a path in both folder lists is listed twice") {
  ScratchRegistry registry;
  listForMachine(registry, L"C:\\Templates");
  listForUser(registry, L"C:\\Templates");
  TemplateFolderList list;
  CHECK(ReadTemplateFolderList(list) == 2);
  CHECK(tagged(list) == Lines{L"GC:\\Templates", L"UC:\\Templates"});
}

TEST_CASE("each source of the folder list keeps its own storage order") {
  ScratchRegistry registry;
  for (const wchar_t* path : {L"C:\\b", L"C:\\a", L"C:\\c"}) {
    listForMachine(registry, path);
    listForUser(registry, path);
  }
  Lines expected;
  for (const auto& name : registry.valueNames(HKEY_LOCAL_MACHINE, machineFolders))
    expected.push_back(L"G" + name);
  for (const auto& name : registry.valueNames(HKEY_CURRENT_USER, userFolders))
    expected.push_back(L"U" + name);
  TemplateFolderList list;
  CHECK(ReadTemplateFolderList(list) == 6);
  CHECK(tagged(list) == expected);
}

TEST_CASE("an empty machine-wide key is opened and contributes nothing") {
  ScratchRegistry registry;
  registry.setString(HKEY_LOCAL_MACHINE, std::wstring(machineFolders) + L"\\below", L"x", L"");
  const LoggingOn logging;
  const DebugOutput output;
  TemplateFolderList list;
  CHECK(ReadTemplateFolderList(list) == 0);
  CHECK(output.messages() == Lines{L"Reading DWT folders list...", L"key opened",
                                   L"DWT folders list contains 0 items."});
}

TEST_CASE("type and data of a machine-wide folder are not read") {
  ScratchRegistry registry;
  registry.setBinary(HKEY_LOCAL_MACHINE, machineFolders, L"C:\\Binary", {1, 2, 3});
  registry.setNumber(HKEY_LOCAL_MACHINE, machineFolders, L"C:\\Number", 7);
  registry.setString(HKEY_LOCAL_MACHINE, machineFolders, L"C:\\Text", L"D:\\Other");
  TemplateFolderList list;
  ReadTemplateFolderList(list);
  CHECK(tagged(list) == Lines{L"GC:\\Binary", L"GC:\\Number", L"GC:\\Text"});
}

TEST_CASE("of a folder of the user only the name counts") {
  ScratchRegistry registry;
  registry.setString(HKEY_CURRENT_USER, userFolders, L"C:\\Name", L"D:\\Data");
  TemplateFolderList list;
  ReadTemplateFolderList(list);
  CHECK(tagged(list) == Lines{L"UC:\\Name"});
}

TEST_CASE("listed paths stay as they were stored") {
  ScratchRegistry registry;
  listForMachine(registry, L" c:\\with blanks\\ ");
  listForUser(registry, L"C:\\100% \x00E4\x00F6\x00FC's\\..\\");
  TemplateFolderList list;
  ReadTemplateFolderList(list);
  CHECK(tagged(list) == Lines{L"G c:\\with blanks\\ ", L"UC:\\100% \x00E4\x00F6\x00FC's\\..\\"});
}

TEST_CASE("a listed path outside the code page is listed with question marks") {
  ScratchRegistry registry;
  listForMachine(registry, L"C:\\\x4E2D\x6587");
  listForMachine(registry, L"C:\\Plain");
  TemplateFolderList list;
  CHECK(ReadTemplateFolderList(list) == 2);
  CHECK(tagged(list) == Lines{L"GC:\\Plain", L"GC:\\??"});
}

TEST_CASE("a path of the user outside the code page is listed with question marks too") {
  ScratchRegistry registry;
  listForUser(registry, L"C:\\\x4E2D\x6587");
  TemplateFolderList list;
  CHECK(ReadTemplateFolderList(list) == 1);
  CHECK(tagged(list) == Lines{L"UC:\\??"});
}

TEST_CASE("a name that is too long hides only itself in the folder list") {
  ScratchRegistry registry;
  listForMachine(registry, L"A:\\first");
  listForMachine(registry, L"B:\\" + std::wstring(3000, L'x'));
  listForMachine(registry, L"C:\\last");
  TemplateFolderList list;
  CHECK(ReadTemplateFolderList(list) == 2);
  CHECK(tagged(list) == Lines{L"GA:\\first", L"GC:\\last"});
}

TEST_CASE("reading the folder list forgets what the list held") {
  ScratchRegistry registry;
  listForUser(registry, L"C:\\New");
  TemplateFolderList list{{FolderList::user, L"C:\\Old"}};
  CHECK(ReadTemplateFolderList(list) == 1);
  CHECK(tagged(list) == Lines{L"UC:\\New"});
}

TEST_CASE("32767 listed folders are counted") {
  ScratchRegistry registry;
  listForMachine(registry, L"C:\\T");
  pretendedValues = 32767;
  const ImportPatch patch(nullptr, "advapi32.dll", "RegEnumValueA", enumeratePretendedValues);
  TemplateFolderList list;
  CHECK(ReadTemplateFolderList(list) == 32767);
  CHECK(list.size() == 32767);
}

TEST_CASE("one listed folder more than 32767 is an overflow") {
  ScratchRegistry registry;
  listForMachine(registry, L"C:\\T");
  pretendedValues = 32768;
  const ImportPatch patch(nullptr, "advapi32.dll", "RegEnumValueA", enumeratePretendedValues);
  const long open = handles::liveCount();
  TemplateFolderList list;
  long number = 0;
  std::wstring description;
  try {
    ReadTemplateFolderList(list);
  } catch (const Error& error) {
    number = error.number();
    description = error.description();
  }
  CHECK(number == 6);
  CHECK(description == L"Overflow");
  CHECK(handles::liveCount() == open);
}

TEST_CASE("the log names no folder that does not fit into the list any more") {
  ScratchRegistry registry;
  listForUser(registry, L"C:\\T");
  listForMachine(registry, L"C:\\T");
  const ImportPatch patch(nullptr, "advapi32.dll", "RegEnumValueA", enumeratePretendedValues);
  const LoggingOn logging;
  for (const DWORD values : {32767U, 32768U}) {
    pretendedValues = values;
    const DebugOutput output;
    TemplateFolderList list;
    CHECK_THROWS_AS(ReadTemplateFolderList(list), Error);
    CHECK(output.messages().size() == 2 + 32767);
    CHECK(output.messages().back() == L"Global - C:\\T");
  }
}
