// What the user has on the clipboard while the entries get their faces.
#include <shlobj.h>

#include <functional>
#include <string>

#include "addin/ClipboardKeeper.h"
#include "common/handles.h"
#include "host/model/Host.h"
#include "tests/addin/ShippedModule.h"
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

  std::function<void(UINT)> render = [](UINT) {};

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* self = reinterpret_cast<Owner*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self && message == WM_RENDERFORMAT) self->render(static_cast<UINT>(wParam));
    return DefWindowProcW(window, message, wParam, lParam);
  }

  HWND window_ = nullptr;
};

void putBytes(UINT format, const std::string& bytes) {
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
  memcpy(GlobalLock(memory), bytes.data(), bytes.size());
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
bool createEntries() {
  ScratchRegistry registry;
  ModalDriver modal;
  standin::Host host;
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
  OpenClipboard(nullptr);
  SetEvent(events->held);
  WaitForSingleObject(events->done, 30000);
  CloseClipboard();
  return 0;
}

}  // namespace

TEST_SUITE("clipboard") {
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
    owner.put([] {
      const HDC context = CreateMetaFileW(nullptr);
      Rectangle(context, 1, 2, 3, 4);
      const METAFILEPICT picture = {MM_ANISOTROPIC, 1234, 567, CloseMetaFile(context)};
      putBytes(CF_METAFILEPICT,
               std::string(reinterpret_cast<const char*>(&picture), sizeof picture));
    });
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
    owner.put([] {
      const HDC context = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
      Rectangle(context, 1, 2, 3, 4);
      SetClipboardData(CF_ENHMETAFILE, CloseEnhMetaFile(context));
    });
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
    DROPFILES files = {};
    files.pFiles = sizeof files;
    const std::string dropped = std::string(reinterpret_cast<const char*>(&files), sizeof files) +
                                std::string("C:\\a.txt\0\0", 10);
    owner.put([&] {
      putBytes(html, "Version:0.9");
      putBytes(CF_HDROP, dropped);
    });
    CHECK(createEntries());
    CHECK(bytes(html, 11) == "Version:0.9");
    CHECK(bytes(CF_HDROP, dropped.size()) == dropped);
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
    int rendered = 0;
    owner.render = [&](UINT format) {
      ++rendered;
      putBytes(format, std::string("rendered\0", 9));
    };
    owner.put([] { SetClipboardData(richText(), nullptr); });
    CHECK(createEntries());
    CHECK(rendered == 1);
    CHECK(bytes(richText(), 9) == std::string("rendered\0", 9));
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

  TEST_CASE(
      "A clipboard held by another program leaves the entries without faces and is untouched") {
    Owner owner;
    owner.put([] { putText(L"mine"); });
    const handles::Kernel held(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const handles::Kernel done(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    HoldEvents events = {held.get(), done.get()};
    const handles::Kernel holder(CreateThread(nullptr, 0, holdClipboard, &events, 0, nullptr));
    WaitForSingleObject(held.get(), 30000);
    const DWORD sequence = GetClipboardSequenceNumber();
    CHECK_FALSE(createEntries());
    CHECK(GetClipboardSequenceNumber() == sequence);
    SetEvent(done.get());
    WaitForSingleObject(holder.get(), 30000);
    CHECK(unicodeText() == L"mine");
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

  TEST_CASE("While it is borrowed the clipboard holds the picture and nothing else") {
    Owner owner;
    owner.put([] { putText(L"kept"); });
    const handles::Gdi picture(twoPixels());
    {
      ClipboardKeeper keeper;
      REQUIRE(keeper.save());
      REQUIRE(keeper.offer(static_cast<HBITMAP>(picture.get())));
      CHECK(IsClipboardFormatAvailable(CF_BITMAP));
      CHECK_FALSE(IsClipboardFormatAvailable(CF_TEXT));
    }
    CHECK(unicodeText() == L"kept");
    CHECK_FALSE(IsClipboardFormatAvailable(CF_BITMAP));
  }

  TEST_CASE("Saving alone changes nothing") {
    Owner owner;
    owner.put([] { putText(L"kept"); });
    const DWORD sequence = GetClipboardSequenceNumber();
    {
      ClipboardKeeper keeper;
      REQUIRE(keeper.save());
    }
    CHECK(GetClipboardSequenceNumber() == sequence);
    CHECK(GetClipboardOwner() == owner.window());
  }

  TEST_CASE("Saved pictures come first and then plain rich and link text") {
    Owner owner;
    owner.put([] {
      putBytes(linkText(), std::string("link\0", 5));
      putBytes(richText(), std::string("rich\0", 5));
      putBytes(CF_TEXT, std::string("text\0", 5));
      SetClipboardData(CF_BITMAP, twoPixels());
    });
    CHECK(createEntries());
    std::vector<UINT> order;
    for (const UINT format : formats())
      if (format == CF_BITMAP || format == CF_TEXT || format == richText() || format == linkText())
        order.push_back(format);
    CHECK(order == std::vector<UINT>{CF_BITMAP, CF_TEXT, richText(), linkText()});
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
      REQUIRE(keeper.save());
      CHECK(handles::liveCount() > before);
    }
    CHECK(handles::liveCount() == before);
  }
}
