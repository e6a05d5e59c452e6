#include "common/RegKey.h"

#include <string>
#include <vector>

#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/text_output.h"

namespace {

constexpr wchar_t path[] = L"Software\\Quillet key";
const HKEY root = HKEY_CURRENT_USER;

std::wstring messageOf(DWORD code) {
  wchar_t buffer[2048] = {};
  FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                 buffer, 2048, nullptr);
  return buffer;
}

// A string value as somebody else left it: these very bytes of the ANSI form.
void setRaw(std::wstring_view key, const char* name, DWORD type, const std::string& bytes) {
  HKEY handle = nullptr;
  RegCreateKeyW(root, std::wstring(key).c_str(), &handle);
  RegSetValueExA(handle, name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                 static_cast<DWORD>(bytes.size()));
  RegCloseKey(handle);
}

std::vector<std::wstring> walk(RegKey& key) {
  std::vector<std::wstring> names;
  std::wstring name;
  DWORD type = 0;
  while (key.EnumValue(name, type)) names.push_back(name);
  return names;
}

LSTATUS WINAPI refuseToClose(HKEY) { return ERROR_ACCESS_DENIED; }

}  // namespace

TEST_CASE("closing a fresh registry key fails and says that none is open") {
  RegKey key;
  CHECK_FALSE(key.CloseKey());
  CHECK(key.GetLastError() == RegKey::noKeyOpen);
  CHECK(key.GetErrorDescription() == L"Internal error: Registry operation without opening a key.");
}

TEST_CASE("every value operation without a key fails with the verdict that none is open") {
  RegKey key;
  std::wstring text = L"kept";
  DWORD type = 77;
  BYTE bytes[4] = {};
  CHECK_FALSE(key.QueryValue(L"", text));
  CHECK(key.GetLastError() == -1);
  CHECK_FALSE(key.QueryValueEx(L"a", 4, type, bytes));
  CHECK(key.GetLastError() == -1);
  CHECK_FALSE(key.QueryValueEx_SZ(L"a", text));
  CHECK(key.GetLastError() == -1);
  CHECK_FALSE(key.SetValueEx(L"a", 4, REG_BINARY, bytes));
  CHECK(key.GetLastError() == -1);
  CHECK_FALSE(key.SetValueEx_SZ(L"a", L"b"));
  CHECK(key.GetLastError() == -1);
  CHECK_FALSE(key.EnumValue(text, type));
  CHECK(key.GetLastError() == -1);
  CHECK(text == L"kept");
  CHECK(type == 77);
}

TEST_CASE("opening a missing key fails with the system code and its message") {
  ScratchRegistry registry;
  RegKey key;
  CHECK_FALSE(key.OpenKey(root, path));
  CHECK(key.GetLastError() == ERROR_FILE_NOT_FOUND);
  CHECK(key.GetErrorDescription() == messageOf(ERROR_FILE_NOT_FOUND));
  CHECK(key.hKey() == nullptr);
  CHECK_FALSE(registry.hasKey(root, path));
}

TEST_CASE("creating a key makes every missing level and holds it open") {
  ScratchRegistry registry;
  RegKey key;
  CHECK(key.CreateKey(root, L"Software\\One\\Two"));
  CHECK(key.hKey() != nullptr);
  CHECK(key.GetLastError() == 0);
  CHECK(registry.hasKey(root, L"Software\\One\\Two"));
}

TEST_CASE("closing a held key gives the handle back") {
  ScratchRegistry registry;
  const long before = handles::liveCount();
  RegKey key;
  REQUIRE(key.CreateKey(root, path));
  CHECK(handles::liveCount() == before + 1);
  CHECK(key.CloseKey());
  CHECK(key.hKey() == nullptr);
  CHECK(handles::liveCount() == before);
}

TEST_CASE("a key object closes its key when it ends and before it opens another") {
  ScratchRegistry registry;
  const long before = handles::liveCount();
  {
    RegKey key;
    REQUIRE(key.CreateKey(root, path));
    REQUIRE(key.CreateKey(root, L"Software\\Another"));
    REQUIRE(key.OpenKey(root, path));
    CHECK(handles::liveCount() == before + 1);
  }
  CHECK(handles::liveCount() == before);
}

TEST_CASE("a failed open leaves no key held") {
  ScratchRegistry registry;
  RegKey key;
  REQUIRE(key.CreateKey(root, path));
  CHECK_FALSE(key.OpenKey(root, L"Software\\Missing"));
  CHECK(key.hKey() == nullptr);
}

TEST_CASE("opening an empty subkey does not take the handle of the caller") {
  ScratchRegistry registry;
  RegKey borrowed;
  REQUIRE(borrowed.CreateKey(root, path));
  {
    RegKey key;
    REQUIRE(key.OpenKey(borrowed.hKey(), L""));
    CHECK(key.hKey() != borrowed.hKey());
    REQUIRE(key.CreateKey(borrowed.hKey(), L""));
    CHECK(key.hKey() != borrowed.hKey());
  }
  CHECK(borrowed.SetValueEx_SZ(L"still", L"open"));
}

TEST_CASE("a key that cannot be closed stops the opening of another") {
  ScratchRegistry registry;
  RegKey key;
  REQUIRE(key.CreateKey(root, path));
  const HKEY held = key.hKey();
  {
    ImportPatch patch(nullptr, "advapi32.dll", "RegCloseKey", refuseToClose);
    CHECK_FALSE(key.OpenKey(root, path));
    CHECK(key.GetLastError() == RegKey::previousKeyNotClosed);
    CHECK(key.GetErrorDescription() ==
          L"Internal error: Failed to close previous key.\r\n" + messageOf(ERROR_ACCESS_DENIED));
    CHECK_FALSE(key.CreateKey(root, L"Software\\Another"));
    CHECK_FALSE(registry.hasKey(root, L"Software\\Another"));
    CHECK_FALSE(key.setHKey(root));
    CHECK(key.GetLastError() == -2);
    CHECK_FALSE(key.CloseKey());
    CHECK(key.GetLastError() == ERROR_ACCESS_DENIED);
  }
  CHECK(key.hKey() == held);
}

TEST_CASE("assigning a handle closes the held key and clears both error fields") {
  ScratchRegistry registry;
  RegKey key;
  CHECK_FALSE(key.OpenKey(root, L"Software\\Missing"));
  HKEY other = nullptr;
  REQUIRE(RegCreateKeyW(root, path, &other) == ERROR_SUCCESS);
  CHECK(key.setHKey(other));
  CHECK(key.hKey() == other);
  CHECK(key.GetLastError() == 0);
  CHECK(key.setHKey(other));
  CHECK(key.SetValueEx_SZ(L"a", L"b"));
}

TEST_CASE("reading into a buffer one byte too small tells the exact size") {
  ScratchRegistry registry;
  registry.setBinary(root, path, L"bytes", {1, 2, 3, 4, 5});
  RegKey key;
  REQUIRE(key.OpenKey(root, path));
  BYTE buffer[5] = {};
  DWORD type = 0;
  CHECK_FALSE(key.QueryValueEx(L"bytes", 4, type, buffer));
  CHECK(key.GetLastError() == RegKey::bufferTooSmall);
  CHECK(key.GetErrorData() == 5);
  CHECK(key.GetErrorDescription() == L"Insufficient buffer length. Please supplu more buffer.");
  CHECK(buffer[0] == 0);
  CHECK(key.QueryValueEx(L"bytes", 5, type, buffer));
  CHECK(type == REG_BINARY);
  CHECK(buffer[4] == 5);
  CHECK(key.GetLastError() == 0);
}

TEST_CASE("a value without bytes is read into no buffer at all") {
  ScratchRegistry registry;
  registry.setBinary(root, path, L"empty", {});
  RegKey key;
  REQUIRE(key.OpenKey(root, path));
  DWORD type = 0;
  CHECK(key.QueryValueEx(L"empty", 0, type, nullptr));
  CHECK(type == REG_BINARY);
}

TEST_CASE("reading a missing value fails with the system code") {
  ScratchRegistry registry;
  RegKey key;
  REQUIRE(key.CreateKey(root, path));
  BYTE buffer[4];
  DWORD type = 0;
  std::wstring text = L"kept";
  CHECK_FALSE(key.QueryValueEx(L"none", 4, type, buffer));
  CHECK(key.GetLastError() == ERROR_FILE_NOT_FOUND);
  CHECK_FALSE(key.QueryValueEx_SZ(L"none", text));
  CHECK(key.GetLastError() == ERROR_FILE_NOT_FOUND);
  CHECK(text == L"kept");
}

TEST_CASE("string reading refuses every type but the plain string") {
  ScratchRegistry registry;
  setRaw(path, "expandable", REG_EXPAND_SZ, std::string("%PATH%", 7));
  setRaw(path, "list", REG_MULTI_SZ, std::string("a\0b\0", 5));
  registry.setNumber(root, path, L"number", 1);
  registry.setBinary(root, path, L"binary", {'a', 0});
  RegKey key;
  REQUIRE(key.OpenKey(root, path));
  for (const auto* name : {L"expandable", L"list", L"number", L"binary"}) {
    CAPTURE(std::wstring(name));
    std::wstring text = L"kept";
    CHECK_FALSE(key.QueryValueEx_SZ(name, text));
    CHECK(key.GetLastError() == RegKey::wrongDataType);
    CHECK(key.GetErrorDescription() == L"Internal error: Data type supplied is invalid.");
    CHECK(text == L"kept");
  }
}

TEST_CASE("a string is read up to its first NUL unless the NULs are to be kept") {
  ScratchRegistry registry;
  setRaw(path, "two", REG_SZ, std::string("one\0two", 8));
  RegKey key;
  REQUIRE(key.OpenKey(root, path));
  std::wstring text;
  CHECK(key.QueryValueEx_SZ(L"two", text));
  CHECK(text == L"one");
  CHECK(key.QueryValueEx_SZ(L"two", text, nullptr, true));
  CHECK(text == std::wstring(L"one\0two\0", 8));
}

TEST_CASE("a string without its terminator and an empty one are read whole") {
  ScratchRegistry registry;
  setRaw(path, "bare", REG_SZ, "bare");
  setRaw(path, "none", REG_SZ, "");
  setRaw(path, "empty", REG_SZ, std::string(1, '\0'));
  RegKey key;
  REQUIRE(key.OpenKey(root, path));
  std::wstring text = L"before";
  CHECK(key.QueryValueEx_SZ(L"bare", text));
  CHECK(text == L"bare");
  CHECK(key.QueryValueEx_SZ(L"none", text));
  CHECK(text == L"");
  text = L"before";
  CHECK(key.QueryValueEx_SZ(L"empty", text));
  CHECK(text == L"");
}

TEST_CASE("a string of sixty thousand characters is read whole") {
  ScratchRegistry registry;
  const std::wstring big(60000, L'x');
  registry.setString(root, path, L"big", big);
  RegKey key;
  REQUIRE(key.OpenKey(root, path));
  std::wstring text;
  CHECK(key.QueryValueEx_SZ(L"big", text));
  CHECK(text == big);
}

TEST_CASE("umlauts pass the registry in both directions and other scripts become question marks") {
  ScratchRegistry registry;
  RegKey key;
  REQUIRE(key.CreateKey(root, L"Software\\Gr\u00fc\u00dfe"));
  CHECK(key.SetValueEx_SZ(L"\u00c4", L"\u00e4\u00f6\u00fc \u0416"));
  CHECK(registry.string(root, L"Software\\Gr\u00fc\u00dfe", L"\u00c4") ==
        std::wstring(L"\u00e4\u00f6\u00fc ?"));
  std::wstring text;
  CHECK(key.QueryValueEx_SZ(L"\u00c4", text));
  CHECK(text == L"\u00e4\u00f6\u00fc ?");
}

TEST_CASE("the unnamed value of a subkey is read") {
  ScratchRegistry registry;
  registry.setString(root, L"Software\\Quillet key\\sub", L"", L"unnamed");
  RegKey key;
  REQUIRE(key.OpenKey(root, path));
  std::wstring text;
  CHECK(key.QueryValue(L"sub", text));
  CHECK(text == L"unnamed");
  CHECK_FALSE(key.QueryValue(L"missing", text));
  CHECK(key.GetLastError() == ERROR_FILE_NOT_FOUND);
  CHECK(text == L"unnamed");
}

TEST_CASE("byte writing refuses the string types and writes nothing") {
  ScratchRegistry registry;
  RegKey key;
  REQUIRE(key.CreateKey(root, path));
  const BYTE bytes[2] = {'a', 0};
  for (const DWORD type : {REG_SZ, REG_EXPAND_SZ, REG_LINK, REG_MULTI_SZ}) {
    CHECK_FALSE(key.SetValueEx(L"value", 2, type, bytes));
    CHECK(key.GetLastError() == -3);
  }
  CHECK(registry.valueNames(root, path).empty());
}

TEST_CASE("string writing refuses every other type and writes nothing") {
  ScratchRegistry registry;
  RegKey key;
  REQUIRE(key.CreateKey(root, path));
  for (const DWORD type : {REG_NONE, REG_BINARY, REG_DWORD}) {
    CHECK_FALSE(key.SetValueEx_SZ(L"value", L"text", type));
    CHECK(key.GetLastError() == -3);
  }
  CHECK(registry.valueNames(root, path).empty());
}

TEST_CASE("bytes are written with their type") {
  ScratchRegistry registry;
  RegKey key;
  REQUIRE(key.CreateKey(root, path));
  const BYTE bytes[4] = {1, 2, 3, 4};
  CHECK(key.SetValueEx(L"number", 4, REG_DWORD, bytes));
  DWORD type = 0;
  BYTE read[4] = {};
  CHECK(key.QueryValueEx(L"number", 4, type, read));
  CHECK(type == REG_DWORD);
  CHECK(read[3] == 4);
}

TEST_CASE("a written string bears its terminator and its type") {
  ScratchRegistry registry;
  RegKey key;
  REQUIRE(key.CreateKey(root, path));
  CHECK(key.SetValueEx_SZ(L"text", L"abc", REG_EXPAND_SZ));
  DWORD type = 0;
  BYTE read[8] = {};
  CHECK(key.QueryValueEx(L"text", 8, type, read));
  CHECK(type == REG_EXPAND_SZ);
  CHECK(registry.binary(root, path, L"text")->size() == 4 * sizeof(wchar_t));
}

TEST_CASE("a walk over three values yields them in turn and then begins anew") {
  ScratchRegistry registry;
  for (const auto* name : {L"one", L"two", L"three"}) registry.setString(root, path, name, name);
  const std::vector<std::wstring> expected = registry.valueNames(root, path);
  REQUIRE(expected.size() == 3);
  RegKey key;
  REQUIRE(key.OpenKey(root, path));
  std::wstring name;
  DWORD type = 0;
  for (const auto& wanted : expected) {
    CHECK(key.EnumValue(name, type));
    CHECK(name == wanted);
    CHECK(type == REG_SZ);
  }
  CHECK_FALSE(key.EnumValue(name, type));
  CHECK(key.GetLastError() == ERROR_NO_MORE_ITEMS);
  CHECK(key.EnumValue(name, type));
  CHECK(name == expected.front());
}

TEST_CASE("a given index is read as it stands and the walk goes on behind it") {
  ScratchRegistry registry;
  for (const auto* name : {L"one", L"two", L"three"}) registry.setString(root, path, name, name);
  const std::vector<std::wstring> expected = registry.valueNames(root, path);
  RegKey key;
  REQUIRE(key.OpenKey(root, path));
  std::wstring name;
  DWORD type = 0;
  CHECK(key.EnumValue(name, type, 1));
  CHECK(name == expected[1]);
  CHECK(key.EnumValue(name, type));
  CHECK(name == expected[2]);
  CHECK_FALSE(key.EnumValue(name, type, 7));
  CHECK_FALSE(key.EnumValue(name, type, -2));
  CHECK(key.EnumValue(name, type));
  CHECK(name == expected[0]);
}

TEST_CASE(
    "a value name of over 2047 characters is answered as too long and does not end the walk") {
  ScratchRegistry registry;
  registry.setString(root, path, std::wstring(2047, L'a'), L"fits");
  registry.setString(root, path, std::wstring(2048, L'b'), L"too long");
  registry.setString(root, path, L"last", L"last");
  RegKey key;
  REQUIRE(key.OpenKey(root, path));
  std::vector<std::size_t> lengths;
  std::size_t tooLong = 0;
  std::wstring name;
  DWORD type = 0;
  for (;;) {
    if (key.EnumValue(name, type)) {
      lengths.push_back(name.size());
    } else if (key.GetLastError() == ERROR_MORE_DATA) {
      ++tooLong;
    } else {
      break;
    }
  }
  CHECK(tooLong == 1);
  CHECK(lengths.size() == 2);
}

TEST_CASE("an empty key walks to its end at once") {
  ScratchRegistry registry;
  RegKey key;
  REQUIRE(key.CreateKey(root, path));
  CHECK(walk(key).empty());
  CHECK(key.GetLastError() == ERROR_NO_MORE_ITEMS);
}

TEST_CASE("a given key is used without one being open and is not closed") {
  ScratchRegistry registry;
  const long before = handles::liveCount();
  {
    RegKey key;
    CHECK(key.SetValueEx_SZ(L"at the root", L"text", REG_SZ, root));
    std::wstring text;
    CHECK(key.QueryValueEx_SZ(L"at the root", text, root));
    CHECK(text == L"text");
    DWORD type = 0;
    CHECK(key.EnumValue(text, type, 0, root));
    CHECK(text == L"at the root");
    CHECK(key.hKey() == nullptr);
  }
  CHECK(handles::liveCount() == before);
  CHECK(registry.string(root, L"", L"at the root") == std::wstring(L"text"));
}

TEST_CASE("a given key is preferred to the held one") {
  ScratchRegistry registry;
  registry.setString(root, L"Software\\Other", L"value", L"of the other");
  RegKey other;
  REQUIRE(other.OpenKey(root, L"Software\\Other"));
  RegKey key;
  REQUIRE(key.CreateKey(root, path));
  std::wstring text;
  CHECK(key.QueryValueEx_SZ(L"value", text, other.hKey()));
  CHECK(text == L"of the other");
}

TEST_CASE("a success clears the error of the operation before") {
  ScratchRegistry registry;
  RegKey key;
  CHECK_FALSE(key.CloseKey());
  CHECK(key.CreateKey(root, path));
  CHECK(key.GetLastError() == 0);
  CHECK(key.GetErrorDescription() == messageOf(ERROR_SUCCESS));
}

namespace {

decltype(RegQueryValueExA)* queryValue = nullptr;

// Somebody removes the value when its size has been asked for.
LSTATUS WINAPI removeMeanwhile(HKEY key, LPCSTR name, LPDWORD unused, LPDWORD type, LPBYTE data,
                               LPDWORD size) {
  if (data) RegDeleteValueA(key, name);
  return queryValue(key, name, unused, type, data, size);
}

}  // namespace

TEST_CASE("a value that goes while it is read is one that is not there") {
  const ScratchRegistry registry;
  setRaw(path, "name", REG_SZ, "text");
  RegKey key;
  REQUIRE(key.OpenKey(root, path));
  std::wstring value = L"before";
  {
    const ImportPatch patch(nullptr, "advapi32.dll", "RegQueryValueExA", removeMeanwhile);
    queryValue = patch.original<decltype(RegQueryValueExA)>();
    CHECK_FALSE(key.QueryValueEx_SZ(L"name", value));
  }
  CHECK(value == L"before");
  CHECK(key.GetErrorDescription() == messageOf(ERROR_FILE_NOT_FOUND));
}
