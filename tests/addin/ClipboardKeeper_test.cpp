// What the user has on the clipboard while the entries get their faces.
#include <shlobj.h>

#include <algorithm>
#include <functional>
#include <string>

#include "addin/ClipboardKeeper.h"
#include "common/handles.h"
#include "host/model/Host.h"
#include "tests/addin/ShippedModule.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/text_output.h"

namespace {

// A window that owns the clipboard as another program's would; it renders on demand.
class Owner {
 public:
  Owner() {
    WNDCLASSW definition = {};
    definition.lpfnWndProc = procedure;
    definition.hInstance = GetModuleHandleW(nullptr);
    definition.lpszClassName = L"Clipboard owner of the tests";
    RegisterClassW(&definition);
    window_ = CreateWindowW(definition.lpszClassName, nullptr, 0, 0, 0, 0, 0, nullptr, nullptr,
                            nullptr, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
  ~Owner() { DestroyWindow(window_); }
  Owner(const Owner&) = delete;
  Owner& operator=(const Owner&) = delete;

  void put(const std::function<void()>& data) {
    REQUIRE(OpenClipboard(window_));
    EmptyClipboard();
    data();
    CloseClipboard();
  }
  HWND window() const { return window_; }
  int rendered() const { return rendered_; }

  std::function<void(UINT)> render = [](UINT) {};

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* self = reinterpret_cast<Owner*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self && message == WM_RENDERFORMAT) {
      ++self->rendered_;
      self->render(static_cast<UINT>(wParam));
    }
    return DefWindowProcW(window, message, wParam, lParam);
  }

  HWND window_ = nullptr;
  int rendered_ = 0;
};

void putBytes(UINT format, const std::string& bytes) {
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
  // A block without bytes has no place for them either.
  if (!bytes.empty()) memcpy(GlobalLock(memory), bytes.data(), bytes.size());
  GlobalUnlock(memory);
  SetClipboardData(format, memory);
}

void putText(const std::wstring& text) {
  putBytes(CF_UNICODETEXT, std::string(reinterpret_cast<const char*>(text.c_str()),
                                       (text.size() + 1) * sizeof(wchar_t)));
}

class OpenedClipboard {
 public:
  OpenedClipboard() { REQUIRE(OpenClipboard(nullptr)); }
  ~OpenedClipboard() { CloseClipboard(); }
};

// The first `length` bytes; empty when the format is not there.
std::string bytes(UINT format, std::size_t length) {
  const OpenedClipboard open;
  const HANDLE memory = GetClipboardData(format);
  if (!memory) return {};
  std::string result(static_cast<const char*>(GlobalLock(memory)), length);
  GlobalUnlock(memory);
  return result;
}

std::wstring unicodeText() {
  const OpenedClipboard open;
  const HANDLE memory = GetClipboardData(CF_UNICODETEXT);
  if (!memory) return {};
  std::wstring result = static_cast<const wchar_t*>(GlobalLock(memory));
  GlobalUnlock(memory);
  return result;
}

std::vector<UINT> formats() {
  const OpenedClipboard open;
  std::vector<UINT> result;
  for (UINT format = EnumClipboardFormats(0); format; format = EnumClipboardFormats(format))
    result.push_back(format);
  return result;
}

// The numbers under which a host's own run-time knows the two that follow.
constexpr UINT hostRichText = 0xBF01;
constexpr UINT hostLinkText = 0xBF00;

UINT richText() { return RegisterClipboardFormatW(L"Rich Text Format"); }
UINT linkText() { return RegisterClipboardFormatW(L"Link"); }

// Two pixels, red and blue.
HBITMAP twoPixels() {
  const handles::ScreenContext screen;
  const HBITMAP bitmap = CreateCompatibleBitmap(screen.get(), 2, 1);
  const handles::DeviceContext context(CreateCompatibleDC(nullptr));
  const HGDIOBJ before = SelectObject(context.get(), bitmap);
  SetPixel(context.get(), 0, 0, RGB(255, 0, 0));
  SetPixel(context.get(), 1, 0, RGB(0, 0, 255));
  SelectObject(context.get(), before);
  return bitmap;
}

// The entries are created and removed again by the shipped module; true when both got their faces.
bool createEntries(const std::function<void(standin::Host&)>& prepare = {}) {
  ScratchRegistry registry;
  ModalDriver modal;
  standin::Host host;
  if (prepare) prepare(host);
  ShippedModule module;
  const auto addIn = module.connection();
  addIn->OnConnection(host.application(), atStartup, nullptr, nullptr);
  bool faces = true;
  int entries = 0;
  for (const wchar_t* text :
       {L"Browse/Copy Dynamic Web Template to Web...", L"Dynamic Web Templates Online..."}) {
    const standin::CommandBarButton* button = host.button(text);
    if (button) ++entries;
    faces = faces && button && button->face();
  }
  CHECK(entries == 2);
  addIn->OnDisconnection(userClosed, nullptr);
  return faces;
}

// Another thread that stands in for another program.
struct HoldEvents {
  HANDLE held, done;
};
DWORD WINAPI holdClipboard(void* parameter) {
  const auto* events = static_cast<HoldEvents*>(parameter);
  // With a window of its own: without one it would be let in beside others without one.
  const HWND window =
      CreateWindowW(L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  OpenClipboard(window);
  SetEvent(events->held);
  WaitForSingleObject(events->done, 30000);
  CloseClipboard();
  DestroyWindow(window);
  return 0;
}

// Holds the clipboard from `take` to `letGo`.
class Holder {
 public:
  ~Holder() { letGo(); }
  void take() {
    thread_.reset(CreateThread(nullptr, 0, holdClipboard, &events_, 0, nullptr));
    WaitForSingleObject(held_.get(), 30000);
  }
  void letGo() {
    if (!thread_) return;
    SetEvent(done_.get());
    WaitForSingleObject(thread_.get(), 30000);
    thread_.reset();
  }

 private:
  handles::Kernel held_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  handles::Kernel done_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  HoldEvents events_{held_.get(), done_.get()};
  handles::Kernel thread_;
};

constexpr SIZE_T muchText = 200000;  // bytes

HGLOBAL WINAPI allocateLittle(UINT flags, SIZE_T size) {
  if (size < muchText) return GlobalAlloc(flags, size);
  SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return nullptr;
}
HANDLE WINAPI copyNoImage(HANDLE, UINT, int, int, UINT) { return nullptr; }
HPALETTE WINAPI createNoPalette(const LOGPALETTE*) { return nullptr; }
HMETAFILE WINAPI copyNoMetafile(HMETAFILE, LPCWSTR) { return nullptr; }
HENHMETAFILE WINAPI copyNoEnhancedMetafile(HENHMETAFILE, LPCWSTR) { return nullptr; }

// How often the module did so since the counts were set back.
int readings = 0, emptyings = 0;
HANDLE WINAPI countReading(UINT format) {
  if (format == CF_UNICODETEXT) ++readings;
  return GetClipboardData(format);
}
BOOL WINAPI countEmptying() {
  ++emptyings;
  return EmptyClipboard();
}

// Formats in the order in which the module sets them.
std::vector<UINT> formatsSet;
HANDLE WINAPI recordSetting(UINT format, HANDLE data) {
  formatsSet.push_back(format);
  return SetClipboardData(format, data);
}

// So many attempts to open the clipboard fail.
int failingAttempts = 0;
BOOL WINAPI openAfterAWhile(HWND owner) {
  if (failingAttempts > 0) {
    --failingAttempts;
    return FALSE;
  }
  return OpenClipboard(owner);
}
void WINAPI doNotSleep(DWORD) {}

HANDLE WINAPI setNoBitmap(UINT format, HANDLE data) {
  return format == CF_BITMAP ? nullptr : SetClipboardData(format, data);
}

// One picture that every kind of program would put there.
HPALETTE onePalette() {
  LOGPALETTE palette = {};
  palette.palVersion = 0x300;
  palette.palNumEntries = 1;
  return CreatePalette(&palette);
}
HENHMETAFILE oneEnhancedMetafile() {
  const HDC context = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
  Rectangle(context, 1, 2, 3, 4);
  return CloseEnhMetaFile(context);
}
void putMetafilePicture() {
  const HDC context = CreateMetaFileW(nullptr);
  Rectangle(context, 1, 2, 3, 4);
  const METAFILEPICT picture = {MM_ANISOTROPIC, 1234, 567, CloseMetaFile(context)};
  putBytes(CF_METAFILEPICT, std::string(reinterpret_cast<const char*>(&picture), sizeof picture));
}

// Metafiles that were freed since the count was set back.
int metafilesFreed = 0;
const ImportPatch* freeing = nullptr;
const ImportPatch* freeingEnhanced = nullptr;
BOOL WINAPI countMetafile(HMETAFILE metafile) {
  ++metafilesFreed;
  return freeing->original<decltype(DeleteMetaFile)>()(metafile);
}
BOOL WINAPI countEnhancedMetafile(HENHMETAFILE metafile) {
  ++metafilesFreed;
  return freeingEnhanced->original<decltype(DeleteEnhMetaFile)>()(metafile);
}

// The clipboard is as it was, and no entry has a face.
void checkLeftAlone(const std::function<void()>& data) {
  Owner owner;
  owner.put([&] {
    putText(L"kept");
    data();
  });
  const DWORD sequence = GetClipboardSequenceNumber();
  CHECK_FALSE(createEntries());
  CHECK(GetClipboardSequenceNumber() == sequence);
  CHECK(GetClipboardOwner() == owner.window());
  CHECK(unicodeText() == L"kept");
}

UINT faceFormat() { return RegisterClipboardFormatW(L"Toolbar Button Face"); }
UINT maskFormat() { return RegisterClipboardFormatW(L"Toolbar Button Mask"); }

// A device-independent bitmap on the clipboard: its pixels from the top, as 0xRRGGBB.
struct Picture {
  LONG width = 0, height = 0;
  std::vector<DWORD> pixels;
  DWORD at(LONG x, LONG y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
};
Picture pictureOf(UINT format) {
  Picture result;
  const OpenedClipboard open;
  const HANDLE memory = GetClipboardData(format);
  if (!memory) return result;
  const auto* info = static_cast<const BITMAPINFO*>(GlobalLock(memory));
  BITMAPINFO wanted = {};
  wanted.bmiHeader = info->bmiHeader;
  result.width = info->bmiHeader.biWidth;
  result.height = info->bmiHeader.biHeight;
  REQUIRE(info->bmiHeader.biCompression == BI_RGB);
  REQUIRE(info->bmiHeader.biBitCount == 24);
  REQUIRE(result.height > 0);  // the rows stand upside down
  const auto* rows = reinterpret_cast<const BYTE*>(info) + info->bmiHeader.biSize;
  const LONG stride = (result.width * 3 + 3) / 4 * 4;
  REQUIRE(GlobalSize(memory) >=
          info->bmiHeader.biSize + static_cast<SIZE_T>(stride * result.height));
  for (LONG y = result.height - 1; y >= 0; --y)
    for (LONG x = 0; x < result.width; ++x) {
      const BYTE* pixel = rows + y * stride + x * 3;
      result.pixels.push_back(static_cast<DWORD>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]));
    }
  GlobalUnlock(memory);
  return result;
}

}  // namespace

TEST_CASE("Plain text survives the creation of the entries") {
  Owner owner;
  owner.put([] { putBytes(CF_TEXT, std::string("some text", 10)); });
  CHECK(createEntries());
  CHECK(bytes(CF_TEXT, 10) == std::string("some text", 10));
}

TEST_CASE("Text outside the code page survives") {
  Owner owner;
  const std::wstring text = L"\u00dcber \u4f60\u597d \u0416";
  owner.put([&] { putText(text); });
  CHECK(createEntries());
  CHECK(unicodeText() == text);
}

TEST_CASE("The locale of a text survives") {
  Owner owner;
  const std::string russian("\x19\x04\x00\x00", 4);
  owner.put([&] {
    putBytes(CF_TEXT, std::string("text", 5));
    putBytes(CF_LOCALE, russian);
  });
  CHECK(createEntries());
  CHECK(bytes(CF_LOCALE, 4) == russian);
}

TEST_CASE("Rich text survives beside its plain text") {
  Owner owner;
  owner.put([] {
    putBytes(richText(), std::string("{\\rtf1 \\b bold}", 16));
    putBytes(CF_TEXT, std::string("bold", 5));
  });
  CHECK(createEntries());
  CHECK(bytes(richText(), 16) == std::string("{\\rtf1 \\b bold}", 16));
  CHECK(bytes(CF_TEXT, 5) == std::string("bold", 5));
}

TEST_CASE("Link text survives with the NUL characters inside it") {
  Owner owner;
  const std::string link("Excel\0book.xls\0R1C1\0\0", 22);
  owner.put([&] { putBytes(linkText(), link); });
  CHECK(createEntries());
  CHECK(bytes(linkText(), link.size()) == link);
}

TEST_CASE("A bitmap survives pixel by pixel") {
  Owner owner;
  owner.put([] { SetClipboardData(CF_BITMAP, twoPixels()); });
  CHECK(createEntries());
  const OpenedClipboard open;
  const auto bitmap = static_cast<HBITMAP>(GetClipboardData(CF_BITMAP));
  REQUIRE(bitmap);
  BITMAP size = {};
  GetObjectW(bitmap, sizeof size, &size);
  CHECK(size.bmWidth == 2);
  CHECK(size.bmHeight == 1);
  const handles::DeviceContext context(CreateCompatibleDC(nullptr));
  const HGDIOBJ before = SelectObject(context.get(), bitmap);
  CHECK(GetPixel(context.get(), 0, 0) == RGB(255, 0, 0));
  CHECK(GetPixel(context.get(), 1, 0) == RGB(0, 0, 255));
  SelectObject(context.get(), before);
}

TEST_CASE("A device-independent bitmap survives byte by byte") {
  Owner owner;
  BITMAPINFOHEADER header = {};
  header.biSize = sizeof header;
  header.biWidth = 1;
  header.biHeight = 1;
  header.biPlanes = 1;
  header.biBitCount = 24;
  const std::string picture = std::string(reinterpret_cast<const char*>(&header), sizeof header) +
                              std::string("\x10\x20\x30\x00", 4);
  owner.put([&] { putBytes(CF_DIB, picture); });
  CHECK(createEntries());
  CHECK(bytes(CF_DIB, picture.size()) == picture);
}

TEST_CASE("A palette survives") {
  Owner owner;
  owner.put([] {
    BYTE memory[sizeof(LOGPALETTE) + sizeof(PALETTEENTRY)] = {};
    auto* palette = reinterpret_cast<LOGPALETTE*>(memory);
    palette->palVersion = 0x300;
    palette->palNumEntries = 2;
    palette->palPalEntry[0].peRed = 17;
    SetClipboardData(CF_PALETTE, CreatePalette(palette));
  });
  CHECK(createEntries());
  const OpenedClipboard open;
  const auto palette = static_cast<HPALETTE>(GetClipboardData(CF_PALETTE));
  REQUIRE(palette);
  PALETTEENTRY entries[2] = {};
  CHECK(GetPaletteEntries(palette, 0, 2, entries) == 2);
  CHECK(static_cast<int>(entries[0].peRed) == 17);
}

TEST_CASE("A metafile picture survives with its size") {
  Owner owner;
  owner.put(putMetafilePicture);
  CHECK(createEntries());
  const OpenedClipboard open;
  const HANDLE memory = GetClipboardData(CF_METAFILEPICT);
  REQUIRE(memory);
  const auto* picture = static_cast<const METAFILEPICT*>(GlobalLock(memory));
  CHECK(picture->mm == MM_ANISOTROPIC);
  CHECK(picture->xExt == 1234);
  CHECK(picture->yExt == 567);
  CHECK(GetMetaFileBitsEx(picture->hMF, 0, nullptr) > sizeof(METAHEADER));
  GlobalUnlock(memory);
}

TEST_CASE("An enhanced metafile survives") {
  Owner owner;
  owner.put([] { SetClipboardData(CF_ENHMETAFILE, oneEnhancedMetafile()); });
  CHECK(createEntries());
  const OpenedClipboard open;
  const auto picture = static_cast<HENHMETAFILE>(GetClipboardData(CF_ENHMETAFILE));
  REQUIRE(picture);
  ENHMETAHEADER header = {};
  CHECK(GetEnhMetaFileHeader(picture, sizeof header, &header) > 0);
  CHECK(header.nRecords >= 3);
}

TEST_CASE("Formats of other programs that are plain memory survive") {
  Owner owner;
  const UINT html = RegisterClipboardFormatW(L"HTML Format");
  const UINT one = RegisterClipboardFormatW(L"One byte of another program");
  DROPFILES files = {};
  files.pFiles = sizeof files;
  const std::string dropped = std::string(reinterpret_cast<const char*>(&files), sizeof files) +
                              std::string("C:\\a.txt\0\0", 10);
  owner.put([&] {
    putBytes(html, "Version:0.9");
    putBytes(CF_HDROP, dropped);
    putBytes(one, "x");
  });
  CHECK(createEntries());
  CHECK(bytes(html, 11) == "Version:0.9");
  CHECK(bytes(CF_HDROP, dropped.size()) == dropped);
  CHECK(bytes(one, 1) == "x");
}

TEST_CASE("An empty clipboard is empty afterwards") {
  Owner owner;
  owner.put([] {});
  CHECK(createEntries());
  CHECK(formats().empty());
}

TEST_CASE("A clipboard whose owner has gone survives") {
  {
    Owner owner;
    owner.put([] { putText(L"left behind"); });
  }
  CHECK(GetClipboardOwner() == nullptr);
  CHECK(createEntries());
  CHECK(unicodeText() == L"left behind");
  CHECK(GetClipboardOwner() == nullptr);
}

TEST_CASE("Data that its owner renders on demand is rendered and survives") {
  Owner owner;
  owner.render = [&](UINT format) { putBytes(format, std::string("rendered\0", 9)); };
  owner.put([] { SetClipboardData(richText(), nullptr); });
  CHECK(createEntries());
  CHECK(owner.rendered() == 1);
  CHECK(bytes(richText(), 9) == std::string("rendered\0", 9));
}

TEST_CASE("What only its owner can use is not asked for and does not come back") {
  const UINT behind[] = {CF_OWNERDISPLAY,
                         CF_DSPTEXT,
                         CF_DSPBITMAP,
                         CF_DSPMETAFILEPICT,
                         CF_DSPENHMETAFILE,
                         CF_PRIVATEFIRST,
                         CF_PRIVATELAST,
                         CF_GDIOBJFIRST,
                         CF_GDIOBJLAST,
                         RegisterClipboardFormatW(L"DataObject"),
                         RegisterClipboardFormatW(L"Ole Private Data")};
  for (const UINT format : behind) {
    CAPTURE(format);
    Owner owner;
    owner.put([&] {
      SetClipboardData(format, nullptr);
      putText(L"kept");
    });
    CHECK(createEntries());
    CHECK(owner.rendered() == 0);
    CHECK_FALSE(IsClipboardFormatAvailable(format));
    CHECK(unicodeText() == L"kept");
  }
}

TEST_CASE("The text that the system makes of another is left for it to make") {
  Owner owner;
  owner.put([] { putText(L"kept"); });
  const ShippedModule module;
  const ImportPatch setting(module.handle(), "user32.dll", "SetClipboardData", recordSetting);
  formatsSet.clear();
  CHECK(createEntries());
  CHECK(std::count(formatsSet.begin(), formatsSet.end(), CF_OEMTEXT) == 0);
}

TEST_CASE("A format with nothing in it is no reason to go without faces") {
  Owner owner;
  owner.put([] {
    putBytes(RegisterClipboardFormatW(L"Mark of another program"), {});
    putText(L"kept");
  });
  CHECK(createEntries());
  CHECK(unicodeText() == L"kept");
}

TEST_CASE("An owner that fails to render loses that format only") {
  Owner owner;
  owner.put([] {
    SetClipboardData(richText(), nullptr);
    putText(L"the text");
  });
  CHECK(createEntries());
  CHECK(unicodeText() == L"the text");
  CHECK(bytes(richText(), 1).empty());
}

TEST_CASE("A clipboard held by another program leaves the entries without faces and is untouched") {
  Owner owner;
  owner.put([] { putText(L"mine"); });
  Holder holder;
  holder.take();
  const DWORD sequence = GetClipboardSequenceNumber();
  CHECK_FALSE(createEntries());
  CHECK(GetClipboardSequenceNumber() == sequence);
  holder.letGo();
  CHECK(unicodeText() == L"mine");
}

TEST_CASE("Without memory for a copy the clipboard is left alone and the entries have no faces") {
  const ShippedModule module;
  const std::string much(muchText, 'x');
  const std::pair<std::function<void()>, std::function<ImportPatch()>> shortages[] = {
      {[&] { putBytes(CF_TEXT, much); },
       [&] { return ImportPatch(module.handle(), "kernel32.dll", "GlobalAlloc", allocateLittle); }},
      {[] { SetClipboardData(CF_BITMAP, twoPixels()); },
       [&] { return ImportPatch(module.handle(), "user32.dll", "CopyImage", copyNoImage); }},
      {[] { SetClipboardData(CF_PALETTE, onePalette()); },
       [&] { return ImportPatch(module.handle(), "gdi32.dll", "CreatePalette", createNoPalette); }},
      {putMetafilePicture,
       [&] { return ImportPatch(module.handle(), "gdi32.dll", "CopyMetaFileW", copyNoMetafile); }},
      {[] { SetClipboardData(CF_ENHMETAFILE, oneEnhancedMetafile()); },
       [&] {
         return ImportPatch(module.handle(), "gdi32.dll", "CopyEnhMetaFileW",
                            copyNoEnhancedMetafile);
       }},
  };
  for (const auto& [data, shortage] : shortages) {
    const ImportPatch patch = shortage();
    checkLeftAlone(data);
  }
}

TEST_CASE("An owner is asked to render once also when there is no memory for a copy") {
  Owner owner;
  owner.put([] {
    SetClipboardData(richText(), nullptr);
    putBytes(CF_TEXT, std::string(muchText, 'x'));
  });
  const ShippedModule module;
  const ImportPatch patch(module.handle(), "kernel32.dll", "GlobalAlloc", allocateLittle);
  CHECK_FALSE(createEntries());
  CHECK(owner.rendered() == 1);
}

TEST_CASE("The user's data is taken aside once and put back once for both faces") {
  Owner owner;
  owner.put([] { putText(L"kept"); });
  const ShippedModule module;
  const ImportPatch reading(module.handle(), "user32.dll", "GetClipboardData", countReading);
  const ImportPatch emptying(module.handle(), "user32.dll", "EmptyClipboard", countEmptying);
  readings = emptyings = 0;
  CHECK(createEntries());
  CHECK(readings == 1);
  CHECK(emptyings == 3);  // for each face, and before the user's data comes back
  CHECK(unicodeText() == L"kept");
}

TEST_CASE("A clipboard that another program opens for a moment is waited for") {
  Owner owner;
  owner.put([] { putText(L"kept"); });
  const ShippedModule module;
  const ImportPatch opening(module.handle(), "user32.dll", "OpenClipboard", openAfterAWhile);
  const ImportPatch sleeping(module.handle(), "kernel32.dll", "Sleep", doNotSleep);
  failingAttempts = 19;
  CHECK(createEntries());
  CHECK(failingAttempts == 0);
  CHECK(unicodeText() == L"kept");
}

TEST_CASE("The user's data comes back however long another program holds the clipboard") {
  Owner owner;
  owner.put([] { putText(L"kept"); });
  const ShippedModule module;
  const ImportPatch opening(module.handle(), "user32.dll", "OpenClipboard", openAfterAWhile);
  const ImportPatch sleeping(module.handle(), "kernel32.dll", "Sleep", doNotSleep);
  int pasted = 0;
  failingAttempts = 0;
  createEntries([&](standin::Host& host) {
    host.faults().before(L"CommandBarButton.PasteFace", [&] {
      if (++pasted == 2) failingAttempts = 199;
    });
  });
  CHECK(failingAttempts == 0);
  CHECK(unicodeText() == L"kept");
}

TEST_CASE("A picture of the user's is not taken for a face while the clipboard cannot be had") {
  Owner owner;
  owner.put([] { SetClipboardData(CF_BITMAP, twoPixels()); });
  const ShippedModule module;
  const ImportPatch opening(module.handle(), "user32.dll", "OpenClipboard", openAfterAWhile);
  const ImportPatch sleeping(module.handle(), "kernel32.dll", "Sleep", doNotSleep);
  failingAttempts = 40;  // the host's own attempts would not fail
  int calls = 0;
  CHECK_FALSE(createEntries([&](standin::Host& host) {
    host.faults().before(L"CommandBarButton.PasteFace", [&] { ++calls; });
  }));
  CHECK(calls == 0);
  CHECK(failingAttempts == 0);
}

TEST_CASE("A face that cannot be offered in all its formats is not pasted") {
  Owner owner;
  owner.put([] { putText(L"kept"); });
  const ShippedModule module;
  const ImportPatch setting(module.handle(), "user32.dll", "SetClipboardData", setNoBitmap);
  int calls = 0;
  CHECK_FALSE(createEntries([&](standin::Host& host) {
    host.faults().before(L"CommandBarButton.PasteFace", [&] { ++calls; });
  }));
  CHECK(calls == 0);
  CHECK(unicodeText() == L"kept");
}

TEST_CASE("A connection that makes no entries does not open the clipboard") {
  const ShippedModule module;
  const ImportPatch opening(module.handle(), "user32.dll", "OpenClipboard", openAfterAWhile);
  failingAttempts = 1;
  ScratchRegistry registry;
  ModalDriver modal;
  standin::HostOptions options;
  options.menuBar = false;
  standin::Host host(options);
  const auto addIn = module.connection();
  addIn->OnConnection(host.application(), atStartup, nullptr, nullptr);
  CHECK(failingAttempts == 1);
  failingAttempts = 0;
}

TEST_CASE("A face is pasted again when another program took the clipboard from the host") {
  Owner owner;
  owner.put([] { putText(L"kept"); });
  Holder holder;
  int calls = 0;
  CHECK(createEntries([&](standin::Host& host) {
    host.faults().before(L"CommandBarButton.PasteFace", [&] {
      if (++calls == 1) holder.take();
      if (calls == 3) holder.letGo();
    });
  }));
  CHECK(calls == 4);  // the second face at once
  CHECK(unicodeText() == L"kept");
}

TEST_CASE("A host that never takes the face is asked a few times and no more") {
  const ShippedModule module;
  const ImportPatch sleeping(module.handle(), "kernel32.dll", "Sleep", doNotSleep);
  int calls = 0;
  CHECK_FALSE(createEntries([&](standin::Host& host) {
    host.faults().refuse(L"CommandBarButton.PasteFace", L"No.");
    host.faults().before(L"CommandBarButton.PasteFace", [&] { ++calls; });
  }));
  CHECK(calls == 20);
}

TEST_CASE("What another program puts there after the faces stays there as that program's") {
  Owner owner;
  owner.put([] { putText(L"old"); });
  {
    ClipboardKeeper keeper;
    REQUIRE(keeper.offer({}));
    owner.put([] { putText(L"new"); });
    CHECK_FALSE(keeper.holdsOffer());
  }
  CHECK(unicodeText() == L"new");
  CHECK(GetClipboardOwner() == owner.window());
}

TEST_CASE("What another program puts there while a face is pasted is what comes back") {
  Owner owner;
  owner.put([] { putText(L"old"); });
  int pasted = 0;
  CHECK(createEntries([&](standin::Host& host) {
    host.faults().before(L"CommandBarButton.PasteFace", [&] {
      if (++pasted == 1) owner.put([] { putText(L"new"); });
    });
  }));
  CHECK(pasted == 3);
  CHECK(unicodeText() == L"new");
}

TEST_CASE("What another program puts there between the two faces is what comes back") {
  Owner owner;
  owner.put([] {
    putText(L"old");
    putBytes(richText(), std::string("old\0", 4));
  });
  CHECK(createEntries([&](standin::Host& host) {
    bool done = false;
    host.faults().before(L"CommandBarButton.Style", [&, done]() mutable {
      if (host.button(L"Browse/Copy Dynamic Web Template to Web...")->face() && !done) {
        owner.put([] { putText(L"new"); });
        done = true;
      }
    });
  }));
  CHECK(unicodeText() == L"new");
  CHECK_FALSE(IsClipboardFormatAvailable(richText()));
}

TEST_CASE("A face is offered as a bitmap and as the pair of face and mask") {
  std::vector<Picture> faces, masks;
  std::vector<bool> bitmaps;
  CHECK(createEntries([&](standin::Host& host) {
    host.faults().before(L"CommandBarButton.PasteFace", [&] {
      bitmaps.push_back(IsClipboardFormatAvailable(CF_BITMAP) != FALSE);
      faces.push_back(pictureOf(faceFormat()));
      masks.push_back(pictureOf(maskFormat()));
    });
  }));
  CHECK(bitmaps == std::vector<bool>{true, true});
  REQUIRE(faces.size() == 2);
  for (std::size_t i = 0; i < 2; ++i) {
    REQUIRE(faces[i].pixels.size() == 256);
    REQUIRE(masks[i].pixels.size() == 256);
    CHECK(faces[i].width == 16);
    CHECK(masks[i].width == 16);
    // The corners are see-through, a picture's frame is not.
    for (const LONG x : {0L, 15L}) {
      CHECK(masks[i].at(x, 0) == 0xFFFFFF);
      CHECK(faces[i].at(x, 0) == 0);
    }
    CHECK(masks[i].at(8, 7) == 0);
    CHECK(faces[i].at(8, 7) != 0);
  }
  // The first one's page stands at the left from the second row on, the second one's globe not.
  CHECK(masks[0].at(1, 1) == 0);
  CHECK(faces[0].at(1, 1) == 0x606070);
  CHECK(masks[1].at(1, 1) == 0xFFFFFF);
  CHECK(faces[1].at(4, 1) == 0x143C8C);
}

TEST_CASE("The clipboard survives a host that refuses the face") {
  Owner owner;
  owner.put([] { putText(L"kept"); });
  ScratchRegistry registry;
  ModalDriver modal;
  standin::Host host;
  host.faults().refuse(L"CommandBarButton.PasteFace", L"No.");
  ShippedModule module;
  const auto addIn = module.connection();
  addIn->OnConnection(host.application(), atStartup, nullptr, nullptr);
  CHECK(unicodeText() == L"kept");
  addIn->OnDisconnection(userClosed, nullptr);
}

TEST_CASE("While it is borrowed the clipboard holds what is offered and nothing else") {
  Owner owner;
  owner.put([] { putText(L"kept"); });
  {
    ClipboardKeeper keeper;
    CHECK_FALSE(keeper.holdsOffer());
    clipboard::Contents picture;
    picture.push_back({CF_BITMAP, handles::Gdi(twoPixels())});
    REQUIRE(keeper.offer(std::move(picture)));
    CHECK(keeper.holdsOffer());
    CHECK(IsClipboardFormatAvailable(CF_BITMAP));
    CHECK_FALSE(IsClipboardFormatAvailable(CF_TEXT));
  }
  CHECK(unicodeText() == L"kept");
  CHECK_FALSE(IsClipboardFormatAvailable(CF_BITMAP));
}

TEST_CASE("What was saved is put back in the order of the published formats") {
  const UINT html = RegisterClipboardFormatW(L"HTML Format");
  Owner owner;
  owner.put([&] {
    putBytes(html, "Version:0.9");
    putBytes(hostLinkText, std::string("LINK\0", 5));
    putBytes(hostRichText, std::string("RICH\0", 5));
    putBytes(linkText(), std::string("link\0", 5));
    putBytes(richText(), std::string("rich\0", 5));
    putBytes(CF_TEXT, std::string("text\0", 5));
    putMetafilePicture();
    SetClipboardData(CF_BITMAP, twoPixels());
    putBytes(CF_DIB, std::string(sizeof(BITMAPINFOHEADER), '\0'));
    SetClipboardData(CF_PALETTE, onePalette());
  });
  const ShippedModule module;
  const ImportPatch setting(module.handle(), "user32.dll", "SetClipboardData", recordSetting);
  int pasted = 0;
  CHECK(createEntries([&](standin::Host& host) {
    host.faults().before(L"CommandBarButton.PasteFace", [&] {
      if (++pasted == 2) formatsSet.clear();
    });
  }));
  REQUIRE(formatsSet.size() >= 10);
  formatsSet.resize(10);
  CHECK(formatsSet == std::vector<UINT>{CF_PALETTE, CF_DIB, CF_BITMAP, CF_METAFILEPICT, CF_TEXT,
                                        hostRichText, richText(), hostLinkText, linkText(), html});
}

TEST_CASE("No handle of what was saved is left open") {
  Owner owner;
  owner.put([] {
    putText(L"text");
    SetClipboardData(CF_BITMAP, twoPixels());
  });
  const long before = handles::liveCount();
  {
    ClipboardKeeper keeper;
    REQUIRE(keeper.offer({}));
    CHECK(handles::liveCount() > before);
  }
  CHECK(handles::liveCount() == before);
}

TEST_CASE("Metafiles that were saved in vain are freed") {
  Owner owner;
  owner.put([] {
    putMetafilePicture();
    SetClipboardData(CF_ENHMETAFILE, oneEnhancedMetafile());
  });
  const ImportPatch plain(nullptr, "gdi32.dll", "DeleteMetaFile", countMetafile);
  const ImportPatch enhanced(nullptr, "gdi32.dll", "DeleteEnhMetaFile", countEnhancedMetafile);
  freeing = &plain;
  freeingEnhanced = &enhanced;
  metafilesFreed = 0;
  {
    ClipboardKeeper keeper;
    REQUIRE(keeper.offer({}));
    owner.put([] { putText(L"new"); });
  }
  CHECK(metafilesFreed == 2);
  CHECK(unicodeText() == L"new");
}
