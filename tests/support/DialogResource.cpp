#include "tests/support/DialogResource.h"

#include <cstring>

namespace {

class Reader {
 public:
  explicit Reader(const BYTE* bytes) : start_(bytes), at_(bytes) {}

  template <class Value>
  Value take() {
    Value value;
    std::memcpy(&value, at_, sizeof value);
    at_ += sizeof value;
    return value;
  }

  std::wstring text() {
    std::wstring value;
    while (const auto next = take<wchar_t>()) value += next;
    return value;
  }

  // A name, or the number behind 0xFFFF as "#n".
  std::wstring nameOrNumber() {
    const auto first = take<wchar_t>();
    if (first == 0xFFFF) return L"#" + std::to_wstring(take<WORD>());
    if (first == 0) return {};
    return first + text();
  }

  void align() { at_ = start_ + ((at_ - start_ + 3) & ~3); }
  void skip(std::size_t count) { at_ += count; }

 private:
  const BYTE* start_;
  const BYTE* at_;
};

std::wstring className(const std::wstring& name) {
  const std::pair<const wchar_t*, const wchar_t*> known[] = {
      {L"#128", L"Button"},  {L"#129", L"Edit"},      {L"#130", L"Static"},
      {L"#131", L"ListBox"}, {L"#132", L"ScrollBar"}, {L"#133", L"ComboBox"}};
  for (const auto& [number, text] : known)
    if (name == number) return text;
  return name;
}

RECT readPlace(Reader& reader) {
  const LONG x = reader.take<short>();
  const LONG y = reader.take<short>();
  const LONG width = reader.take<short>();
  const LONG height = reader.take<short>();
  return {x, y, x + width, y + height};
}

DialogItem readItem(Reader& reader) {
  DialogItem item;
  reader.align();
  reader.skip(4);  // help identifier
  item.extendedStyle = reader.take<DWORD>();
  item.style = reader.take<DWORD>();
  item.place = readPlace(reader);
  item.id = static_cast<int>(reader.take<DWORD>());
  item.className = className(reader.nameOrNumber());
  item.caption = reader.nameOrNumber();
  reader.skip(reader.take<WORD>());  // creation data
  return item;
}

DialogResource readDialog(int id) {
  const HRSRC found = FindResourceW(nullptr, MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(5));
  Reader reader(static_cast<const BYTE*>(LockResource(LoadResource(nullptr, found))));
  DialogResource dialog;
  dialog.id = id;
  reader.skip(12);  // version, signature, help identifier, extended style
  dialog.style = reader.take<DWORD>();
  const int count = reader.take<WORD>();
  const RECT place = readPlace(reader);
  dialog.size = {place.right - place.left, place.bottom - place.top};
  reader.nameOrNumber();  // menu
  reader.nameOrNumber();  // class
  dialog.caption = reader.text();
  reader.skip(6);  // point size, weight, italic, character set
  reader.text();   // type face
  for (int i = 0; i < count; ++i) dialog.items.push_back(readItem(reader));
  return dialog;
}

BOOL CALLBACK addDialog(HMODULE, LPCWSTR, LPWSTR name, LONG_PTR list) {
  reinterpret_cast<std::vector<DialogResource>*>(list)->push_back(
      readDialog(static_cast<int>(reinterpret_cast<ULONG_PTR>(name))));
  return TRUE;
}

}  // namespace

wchar_t DialogItem::mnemonic() const {
  for (std::size_t i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != L'&') continue;
    if (caption[i + 1] != L'&')
      return static_cast<wchar_t>(
          reinterpret_cast<ULONG_PTR>(CharLowerW(MAKEINTRESOURCEW(caption[i + 1]))));
    ++i;
  }
  return 0;
}

std::vector<DialogResource> dialogResources() {
  std::vector<DialogResource> result;
  EnumResourceNamesW(nullptr, MAKEINTRESOURCEW(5), addDialog, reinterpret_cast<LONG_PTR>(&result));
  return result;
}
