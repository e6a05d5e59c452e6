#include "tests/runner/ClipboardText.h"

#include <windows.h>

#include "tests/support/text_output.h"

namespace {

void empty() {
  REQUIRE(OpenClipboard(nullptr));
  EmptyClipboard();
  CloseClipboard();
}

void put(const std::wstring& text) {
  REQUIRE(OpenClipboard(nullptr));
  EmptyClipboard();
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
  auto* const letters = static_cast<wchar_t*>(GlobalLock(memory));
  letters[text.copy(letters, text.size())] = L'\0';
  GlobalUnlock(memory);
  SetClipboardData(CF_UNICODETEXT, memory);
  CloseClipboard();
}

std::wstring text() {
  REQUIRE(OpenClipboard(nullptr));
  const HANDLE memory = GetClipboardData(CF_UNICODETEXT);
  const std::wstring result = memory ? static_cast<const wchar_t*>(GlobalLock(memory)) : L"";
  if (memory) GlobalUnlock(memory);
  CloseClipboard();
  return result;
}

}  // namespace

TEST_CASE("the user's text is on the clipboard again at the end") {
  put(L"gr\xFC\xDF\x65");
  {
    const ClipboardText kept;
    put(L"of a test");
  }
  CHECK(text() == L"gr\xFC\xDF\x65");
}

TEST_CASE("nothing of the tests stays on a clipboard that held no text") {
  empty();
  {
    const ClipboardText kept;
    put(L"of a test");
  }
  CHECK(text() == L"");
  CHECK(CountClipboardFormats() == 0);
}
