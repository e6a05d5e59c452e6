#include "common/forms/PictureBox.h"
#include "common/forms/Splitter.h"

#include <objidl.h>

#include "catalogue/resource.h"
#include "common/forms/WebBrowser.h"
#include "tests/support/HeldThumb.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/error_number.h"
#include "tests/support/pictures.h"
#include "tests/support/text_output.h"

namespace {

// A form with a picture box; `script` runs when it is on the screen.
class PictureForm : public forms::Form {
 public:
  explicit PictureForm(std::function<void(PictureForm&)> script)
      : Form(L"frmPicture", IDD_QUILLET),
        box(*this, IDC_QUILLET_PICTURE),
        page(*this, IDC_QUILLET_PAGE),
        splitter(*this, IDC_QUILLET_SPLITTER),
        script_(script) {
    showModal(nullptr);
  }

  forms::PictureBox box;
  forms::WebBrowser page;  // the dialog has one too
  forms::Splitter splitter;

 private:
  void Form_Activate() override {
    script_(*this);
    unload();
  }
  std::function<void(PictureForm&)> script_;
};

long loadError(forms::PictureBox& box, const std::wstring& path) {
  return numberOf([&] { box.load(path); });
}

bool hasBar(const forms::PictureBox& box, DWORD style) {
  return (GetWindowLongW(box.hwnd(), GWL_STYLE) & style) != 0;
}

COLORREF middleColour(const forms::PictureBox& box) {
  RECT client;
  GetClientRect(box.hwnd(), &client);
  const handles::ScreenContext screen;
  const handles::DeviceContext context(CreateCompatibleDC(screen.get()));
  const handles::Gdi bitmap(CreateCompatibleBitmap(screen.get(), client.right, client.bottom));
  const HGDIOBJ old = SelectObject(context.get(), bitmap.get());
  SendMessageW(box.hwnd(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(context.get()), PRF_CLIENT);
  const COLORREF colour = GetPixel(context.get(), client.right / 2, client.bottom / 2);
  SelectObject(context.get(), old);
  return colour;
}

// Neither the window's colour nor another picture's.
bool isBlue(const forms::PictureBox& box) {
  const COLORREF colour = middleColour(box);
  return GetBValue(colour) > 200 && GetRValue(colour) < 60;
}

// No bitmap can be made; and whether what begins to paint also ends it.
class NoBitmaps {
 public:
  NoBitmaps() {
    current_ = this;
    painting_ = 0;
  }
  static int painting() { return painting_; }

 private:
  static HBITMAP WINAPI refuse(HDC, int, int) { return nullptr; }
  static HDC WINAPI begin(HWND window, LPPAINTSTRUCT paint) {
    ++painting_;
    return current_->begins_.original<decltype(begin)>()(window, paint);
  }
  static BOOL WINAPI end(HWND window, const PAINTSTRUCT* paint) {
    --painting_;
    return current_->ends_.original<decltype(end)>()(window, paint);
  }

  static inline NoBitmaps* current_ = nullptr;
  static inline int painting_ = 0;
  ImportPatch bitmaps_{nullptr, "gdi32.dll", "CreateCompatibleBitmap", refuse};
  ImportPatch begins_{nullptr, "user32.dll", "BeginPaint", begin};
  ImportPatch ends_{nullptr, "user32.dll", "EndPaint", end};
};

// How often a file is made a bitmap of, and with which library.
class Decodings {
 public:
  explicit Decodings(bool hasLibrary = true) {
    current_ = this;
    count_ = loads_ = 0;
    hasLibrary_ = hasLibrary;
  }
  static int count() { return count_; }
  static int loads() { return loads_; }

 private:
  static HBITMAP WINAPI make(HDC context, const BITMAPINFO* info, UINT usage, void** bits,
                             HANDLE section, DWORD offset) {
    ++count_;
    return current_->bitmaps_.original<decltype(make)>()(context, info, usage, bits, section,
                                                         offset);
  }
  static HMODULE WINAPI load(LPCWSTR name) {
    if (std::wstring_view(name) != L"gdiplus.dll")
      return current_->libraries_.original<decltype(load)>()(name);
    ++loads_;
    return hasLibrary_ ? current_->libraries_.original<decltype(load)>()(name) : nullptr;
  }

  static inline Decodings* current_ = nullptr;
  static inline int count_ = 0;
  static inline int loads_ = 0;
  static inline bool hasLibrary_ = true;
  ImportPatch bitmaps_{nullptr, "gdi32.dll", "CreateDIBSection", make};
  ImportPatch libraries_{nullptr, "kernel32.dll", "LoadLibraryW", load};
};

// Does something in the middle of decoding: before the library has read the file, after, or while
// it makes pixels of it; there it then reads on, and does not mind when it cannot.
class Meanwhile {
 public:
  enum When { before, after, late };
  Meanwhile(When when, std::function<void()> action) : when_(when), action_(std::move(action)) {
    current_ = this;
  }
  // Whether the library could not read the file to its end.
  static bool isReadingStopped() { return result_ != 0; }
  // What it reads from.
  static IStream& stream() { return *stream_; }

 private:
  using Create = int WINAPI(IStream*, void**);
  using Lock = int WINAPI(void*, const void*, UINT, INT, void*);

  static FARPROC WINAPI find(HMODULE module, LPCSTR name) {
    const auto found = current_->functions_.original<decltype(find)>()(module, name);
    if (std::string_view(name) == "GdipCreateBitmapFromStream")
      return replace(found, create_, create);
    if (std::string_view(name) == "GdipBitmapLockBits") return replace(found, lock_, lock);
    return found;
  }
  template <class Function>
  static FARPROC replace(FARPROC found, Function*& original, Function* replacement) {
    original = reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(replacement));
  }
  static bool act(When when) {
    if (current_->when_ != when) return false;
    if (const auto action = std::exchange(current_->action_, {})) action();
    return true;
  }
  static int WINAPI create(IStream* stream, void** bitmap) {
    stream_ = stream;
    act(before);
    result_ = create_(stream, bitmap);
    act(after);
    return result_;
  }
  static int WINAPI lock(void* image, const void* area, UINT how, INT format, void* pixels) {
    BYTE more[10000];
    if (act(late)) stream_->Read(more, sizeof more, nullptr);
    return lock_(image, area, how, format, pixels);
  }

  static inline Meanwhile* current_ = nullptr;
  static inline Create* create_ = nullptr;
  static inline Lock* lock_ = nullptr;
  static inline IStream* stream_ = nullptr;
  static inline int result_ = 0;
  When when_;
  std::function<void()> action_;
  ImportPatch functions_{nullptr, "kernel32.dll", "GetProcAddress", find};
};

// How often it is asked whether input waits.
class Questions {
 public:
  Questions() {
    current_ = this;
    count_ = 0;
  }
  static int count() { return count_; }

 private:
  static DWORD WINAPI ask(UINT kinds) {
    ++count_;
    return current_->patch_.original<decltype(ask)>()(kinds);
  }
  static inline Questions* current_ = nullptr;
  static inline int count_ = 0;
  ImportPatch patch_{nullptr, "user32.dll", "GetQueueStatus", ask};
};

// How often a box draws itself anew.
class Drawings {
 public:
  Drawings() {
    current_ = this;
    count_ = 0;
  }
  static int count() { return count_; }

 private:
  static HBITMAP WINAPI make(HDC like, int width, int height) {
    ++count_;
    return current_->patch_.original<decltype(make)>()(like, width, height);
  }
  static inline Drawings* current_ = nullptr;
  static inline int count_ = 0;
  ImportPatch patch_{nullptr, "gdi32.dll", "CreateCompatibleBitmap", make};
};

// How often a window is told of its scroll bars.
class BarCalls {
 public:
  BarCalls() {
    current_ = this;
    count_ = 0;
  }
  static int count() { return count_; }

 private:
  static int WINAPI set(HWND window, int bar, const SCROLLINFO* info, BOOL paint) {
    ++count_;
    return current_->patch_.original<decltype(set)>()(window, bar, info, paint);
  }
  static inline BarCalls* current_ = nullptr;
  static inline int count_ = 0;
  ImportPatch patch_{nullptr, "user32.dll", "SetScrollInfo", set};
};

// More pixels than are decoded at once.
constexpr int largeWidth = 1200;
constexpr int largeHeight = 1000;

}  // namespace

TEST_CASE("a picture box shows GIF and JPEG files at their natural size") {
  const ScratchFolder disk;
  const auto gif = disk.writeFile(L"a.gif", pictures::bytes(pictures::blueGif));
  const auto jpeg = disk.writeFile(L"a.jpg", pictures::bytes(pictures::blueJpeg));
  PictureForm([&](PictureForm& form) {
    for (const auto& path : {gif, jpeg}) {
      CAPTURE(path);
      form.box.clear();
      CHECK_FALSE(form.box.hasPicture());
      form.box.load(path);
      CHECK(form.box.hasPicture());
      CHECK(form.box.path() == path);
      CHECK(form.box.naturalSize().cx == 201);
      CHECK(form.box.naturalSize().cy == 100);
      CHECK(form.box.pictureSize().cx == 201);
      CHECK(GetBValue(middleColour(form.box)) > 200);
      CHECK(GetRValue(middleColour(form.box)) < 60);
    }
  });
}

TEST_CASE("a transparent picture lets the window's background through") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::bytes(pictures::clearGif));
  PictureForm([&](PictureForm& form) {
    form.box.load(path);
    CHECK(form.box.naturalSize().cx == 40);
    CHECK(middleColour(form.box) == GetSysColor(COLOR_WINDOW));
  });
}

TEST_CASE("what is no picture leaves the picture box as it was") {
  const ScratchFolder disk;
  const auto good = disk.writeFile(L"a.gif", pictures::bytes(pictures::blueGif));
  const auto page = disk.writeFile(L"b.gif", "<html>");
  const auto empty = disk.writeFile(L"c.gif");
  const auto cut = disk.writeFile(L"d.gif", pictures::bytes(pictures::blueGif).substr(0, 13));
  PictureForm([&](PictureForm& form) {
    form.box.load(good);
    for (const auto& path : {page, empty, cut}) {
      CAPTURE(path);
      CHECK(loadError(form.box, path) == forms::PictureBox::invalidPicture);
    }
    CHECK(loadError(form.box, disk / L"missing.gif") == errors::fileNotFound);
    CHECK(form.box.path() == good);
    CHECK(form.box.hasPicture());
  });
}

namespace {

decltype(ReadFile)* readWhole = nullptr;

// As when the file is cut after its size was asked for.
BOOL WINAPI readLess(HANDLE file, void* bytes, DWORD size, DWORD* done, OVERLAPPED* overlapped) {
  return readWhole(file, bytes, size - 1, done, overlapped);
}

}  // namespace

TEST_CASE("a file that is cut while it is read is no picture") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::bytes(pictures::blueGif) + "more");
  PictureForm([&](PictureForm& form) {
    const ImportPatch patch(nullptr, "kernel32.dll", "ReadFile", readLess);
    readWhole = patch.original<decltype(ReadFile)>();
    CHECK(loadError(form.box, path) == forms::PictureBox::invalidPicture);
    CHECK_FALSE(form.box.hasPicture());
  });
}

namespace {

// As of a file that is four gigabytes longer than the one on the disk.
DWORD WINAPI sizeOfMore(HANDLE file, DWORD* high) {
  LARGE_INTEGER size = {};
  GetFileSizeEx(file, &size);
  *high = 1;
  return size.LowPart;
}

}  // namespace

TEST_CASE("a file of four gigabytes and more is no picture") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::bytes(pictures::blueGif));
  PictureForm([&](PictureForm& form) {
    const ImportPatch patch(nullptr, "kernel32.dll", "GetFileSize", sizeOfMore);
    CHECK(loadError(form.box, path) == forms::PictureBox::invalidPicture);
    CHECK_FALSE(form.box.hasPicture());
  });
}

TEST_CASE("a picture file can be deleted while it is shown") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::bytes(pictures::blueGif));
  PictureForm([&](PictureForm& form) {
    form.box.load(path);
    CHECK(DeleteFileW(path.c_str()));
    CHECK(form.box.hasPicture());
  });
}

TEST_CASE("a picture larger than its place has scroll bars and the arrow keys move it") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::bytes(pictures::blueGif));
  PictureForm([&](PictureForm& form) {
    form.box.load(path);
    CHECK_FALSE(hasBar(form.box, WS_HSCROLL));
    CHECK_FALSE(hasBar(form.box, WS_VSCROLL));
    form.box.setPictureSize({2000, 1000});
    CHECK(hasBar(form.box, WS_HSCROLL));
    CHECK(hasBar(form.box, WS_VSCROLL));

    const HWND window = form.box.hwnd();
    RECT client;
    GetClientRect(window, &client);
    CHECK((SendMessageW(window, WM_GETDLGCODE, 0, 0) & DLGC_WANTARROWS) != 0);
    SendMessageW(window, WM_KEYDOWN, VK_RIGHT, 0);
    SendMessageW(window, WM_KEYDOWN, VK_DOWN, 0);
    CHECK(GetScrollPos(window, SB_HORZ) > 0);
    CHECK(GetScrollPos(window, SB_VERT) > 0);
    SendMessageW(window, WM_KEYDOWN, VK_END, 0);
    CHECK(GetScrollPos(window, SB_HORZ) == 2000 - client.right);
    CHECK(GetScrollPos(window, SB_VERT) == 1000 - client.bottom);
    SendMessageW(window, WM_KEYDOWN, VK_RIGHT, 0);
    CHECK(GetScrollPos(window, SB_HORZ) == 2000 - client.right);
    SendMessageW(window, WM_KEYDOWN, VK_HOME, 0);
    CHECK(GetScrollPos(window, SB_HORZ) == 0);
    SendMessageW(window, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
    CHECK(GetScrollPos(window, SB_VERT) > 0);

    form.box.setPictureSize(form.box.naturalSize());
    CHECK_FALSE(hasBar(form.box, WS_HSCROLL));
    CHECK_FALSE(hasBar(form.box, WS_VSCROLL));
  });
}

TEST_CASE("the keys and the scroll bars move a picture by lines, by pages and to a place") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::bytes(pictures::blueGif));
  PictureForm([&](PictureForm& form) {
    form.box.load(path);
    form.box.setPictureSize({4000, 3000});
    const HWND window = form.box.hwnd();
    RECT client;
    GetClientRect(window, &client);
    const auto standsAfter = [&](UINT message, WPARAM what, LONG x, LONG y) {
      CAPTURE(what);
      SendMessageW(window, message, what, 0);
      CHECK(GetScrollPos(window, SB_HORZ) == x);
      CHECK(GetScrollPos(window, SB_VERT) == y);
    };
    standsAfter(WM_HSCROLL, SB_PAGERIGHT, client.right, 0);
    standsAfter(WM_HSCROLL, SB_LINERIGHT, client.right + 16, 0);
    standsAfter(WM_HSCROLL, SB_PAGELEFT, 16, 0);
    standsAfter(WM_HSCROLL, SB_ENDSCROLL, 16, 0);
    standsAfter(WM_KEYDOWN, VK_LEFT, 0, 0);
    standsAfter(WM_KEYDOWN, VK_NEXT, 0, client.bottom);
    standsAfter(WM_VSCROLL, SB_LINEDOWN, 0, client.bottom + 16);
    standsAfter(WM_KEYDOWN, VK_PRIOR, 0, 16);
    standsAfter(WM_KEYDOWN, 'A', 0, 16);
    // Not what comes along with the message: that has room for half of the number.
    {
      const HeldThumb thumb(700);
      standsAfter(WM_VSCROLL, MAKEWPARAM(SB_THUMBTRACK, 16), 0, 700);
      standsAfter(WM_HSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 16), 700, 700);
    }
  });
}

TEST_CASE("the mouse drags a picture that is larger than its place as far as it goes") {
  PictureForm([&](PictureForm& form) {
    ScratchFolder scratch;
    form.box.load(scratch.writeFile(L"a.gif", pictures::bytes(pictures::blueGif)));
    const HWND window = form.box.hwnd();
    const auto mouse = [&](UINT message, int x, int y) {
      SendMessageW(window, message, 0, MAKELPARAM(x, y));
    };
    const auto stands = [&](int x, int y) {
      CHECK(GetScrollPos(window, SB_HORZ) == x);
      CHECK(GetScrollPos(window, SB_VERT) == y);
    };
    mouse(WM_LBUTTONDOWN, 100, 100);
    CHECK(GetCapture() != window);  // there is nothing to drag
    form.box.setPictureSize({2010, 1000});
    mouse(WM_MOUSEMOVE, 10, 10);
    stands(0, 0);
    mouse(WM_LBUTTONDOWN, 100, 100);
    CHECK(GetCapture() == window);
    mouse(WM_MOUSEMOVE, 70, 90);
    stands(30, 10);
    mouse(WM_MOUSEMOVE, -20, 95);
    stands(120, 5);
    mouse(WM_MOUSEMOVE, 300, 300);
    stands(0, 0);
    mouse(WM_LBUTTONUP, 300, 300);
    CHECK(GetCapture() != window);
    mouse(WM_MOUSEMOVE, 10, 10);
    stands(0, 0);
    // Taken up again where it was left.
    for (const int times : {1, 2}) {
      mouse(WM_LBUTTONDOWN, 100, 100);
      mouse(WM_MOUSEMOVE, 70, 90);
      mouse(WM_LBUTTONUP, 70, 90);
      stands(30 * times, 10 * times);
    }
  });
}

TEST_CASE("a hand over a picture tells that it can be dragged") {
  PictureForm([&](PictureForm& form) {
    ScratchFolder scratch;
    form.box.load(scratch.writeFile(L"a.gif", pictures::bytes(pictures::blueGif)));
    const auto cursor = [&] {
      SendMessageW(form.box.hwnd(), WM_SETCURSOR, reinterpret_cast<WPARAM>(form.box.hwnd()),
                   MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
      return GetCursor();
    };
    CHECK(cursor() == LoadCursorW(nullptr, IDC_ARROW));
    form.box.setPictureSize({2010, 50});
    CHECK(cursor() == LoadCursorW(nullptr, IDC_HAND));
    const forms::WaitCursor wait;
    CHECK(cursor() == LoadCursorW(nullptr, IDC_WAIT));
  });
}

TEST_CASE("a wheel scrolls a picture sideways with the Shift key or by being tilted") {
  constexpr UINT tilted = 0x020E;
  PictureForm([&](PictureForm& form) {
    ScratchFolder scratch;
    form.box.load(scratch.writeFile(L"a.gif", pictures::bytes(pictures::blueGif)));
    form.box.setPictureSize({2010, 1000});
    const auto turn = [&](UINT message, WORD keys, int delta) {
      SendMessageW(form.box.hwnd(), message, MAKEWPARAM(keys, static_cast<WORD>(delta)), 0);
      return GetScrollPos(form.box.hwnd(), SB_HORZ);
    };
    const int once = turn(WM_MOUSEWHEEL, MK_SHIFT, -WHEEL_DELTA);
    CHECK(once > 0);
    CHECK(turn(tilted, 0, WHEEL_DELTA) == 2 * once);
    CHECK(turn(tilted, 0, -WHEEL_DELTA) == once);
    CHECK(GetScrollPos(form.box.hwnd(), SB_VERT) == 0);
  });
}

TEST_CASE("a picture box that cannot be painted ends its painting") {
  PictureForm([&](PictureForm& form) {
    const NoBitmaps noBitmaps;
    InvalidateRect(form.box.hwnd(), nullptr, FALSE);
    UpdateWindow(form.box.hwnd());
    CHECK(noBitmaps.painting() == 0);
    CHECK_FALSE(GetUpdateRect(form.box.hwnd(), nullptr, FALSE));
  });
}

TEST_CASE("a picture that is shrunk to nothing shows nothing") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::bytes(pictures::blueGif));
  PictureForm([&](PictureForm& form) {
    form.box.load(path);
    form.box.setPictureSize({100, 0});
    CHECK(form.box.pictureSize().cx == 0);
    CHECK(middleColour(form.box) == GetSysColor(COLOR_WINDOW));
    form.box.setPictureSize({201, 100});
    CHECK(GetBValue(middleColour(form.box)) > 200);
  });
}

TEST_CASE("a picture box leaves no window class and no handle behind") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::bytes(pictures::blueGif));
  const long before = handles::liveCount();
  PictureForm([&](PictureForm& form) {
    form.box.load(path);
    form.box.setPictureSize({100, 50});
  });
  CHECK(handles::liveCount() == before);
  WNDCLASSW known = {};
  CHECK_FALSE(GetClassInfoW(GetModuleHandleW(nullptr), forms::PictureBox::className, &known));
}

TEST_CASE("a picture of absurd size is refused before anything is decoded") {
  const ScratchFolder disk;
  std::string gif = pictures::bytes(pictures::blueGif);
  gif[7] = gif[9] = '\x7F';  // 32,713 by 32,612
  std::string frame = pictures::bytes(pictures::blueGif);
  const std::size_t place = frame.find(',');
  frame[place + 6] = frame[place + 8] = '\x7F';  // the frame instead of the screen
  std::string jpeg = pictures::bytes(pictures::blueJpeg);
  const std::size_t start = jpeg.find("\xFF\xC0");
  REQUIRE(start != jpeg.npos);
  jpeg[start + 5] = jpeg[start + 7] = '\xFF';
  std::string thin = pictures::bytes(pictures::blueJpeg);
  thin[start + 7] = '\x80';  // 32,969 by 100
  std::string wide = pictures::bytes(pictures::blueGif);
  wide[6] = wide[8] = '\x70';  // 6,000 by 6,000
  wide[7] = wide[9] = '\x17';
  const std::vector<std::wstring> paths = {
      disk.writeFile(L"a.gif", gif), disk.writeFile(L"b.gif", frame),
      disk.writeFile(L"c.jpg", jpeg), disk.writeFile(L"d.jpg", thin),
      disk.writeFile(L"e.gif", wide)};
  PictureForm([&](PictureForm& form) {
    const Decodings decodings;
    for (const auto& path : paths) {
      CAPTURE(path);
      CHECK(loadError(form.box, path) == forms::PictureBox::invalidPicture);
      CHECK_FALSE(form.box.hasPicture());
    }
    CHECK(decodings.loads() == 0);
    CHECK(decodings.count() == 0);
  });
}

TEST_CASE("a large picture has its size at once and is decoded when it is painted") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::blueGifOf(largeWidth, largeHeight));
  PictureForm([&](PictureForm& form) {
    const Decodings decodings;
    form.box.load(path);
    CHECK(form.box.naturalSize().cx == largeWidth);
    CHECK(form.box.naturalSize().cy == largeHeight);
    CHECK(hasBar(form.box, WS_HSCROLL));
    CHECK(decodings.count() == 0);
    UpdateWindow(form.box.hwnd());
    CHECK(decodings.count() == 1);
    CHECK(GetBValue(middleColour(form.box)) > 200);
    CHECK(GetRValue(middleColour(form.box)) < 60);
    CHECK(decodings.count() == 1);
  });
}

TEST_CASE("a large picture that is left before its turn is never decoded") {
  const ScratchFolder disk;
  const auto large = disk.writeFile(L"a.gif", pictures::blueGifOf(largeWidth, largeHeight));
  const auto other = disk.writeFile(L"b.gif", pictures::blueGifOf(largeWidth, largeHeight + 1));
  PictureForm([&](PictureForm& form) {
    const Decodings decodings;
    form.box.load(large);
    form.box.load(other);
    form.box.load(large);
    forms::yieldToMessages();
    UpdateWindow(form.box.hwnd());
    CHECK(decodings.count() == 1);
    CHECK(form.box.path() == large);
    form.box.load(other);
    form.box.clear();
    UpdateWindow(form.box.hwnd());
    CHECK(decodings.count() == 1);
  });
}

TEST_CASE("a large picture waits for a key or a click that is there before it") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::blueGifOf(largeWidth, largeHeight));
  for (const UINT input : {WM_KEYDOWN, WM_LBUTTONDOWN, WM_MOUSEWHEEL}) {
    CAPTURE(input);
    PictureForm([&](PictureForm& form) {
      const Decodings decodings;
      form.box.load(path);
      PostMessageW(form.box.hwnd(), input, VK_UP, 0);
      const Drawings drawings;
      UpdateWindow(form.box.hwnd());
      CHECK(drawings.count() == 0);
      CHECK(decodings.count() == 0);
      CHECK(form.box.naturalSize().cx == largeWidth);
      CHECK(pumpUntil([&] { return decodings.count() > 0; }));
      CHECK(isBlue(form.box));
      CHECK(decodings.count() == 1);
    });
  }
}

TEST_CASE("a key or a click that comes while a large picture is decoded has its turn first") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::blueGifOf(largeWidth, largeHeight));
  for (const auto when : {Meanwhile::before, Meanwhile::after})
    for (const UINT input : {WM_KEYDOWN, WM_LBUTTONDOWN}) {
      CAPTURE(static_cast<int>(when));
      CAPTURE(input);
      PictureForm([&](PictureForm& form) {
        const Decodings decodings;
        const Meanwhile meanwhile(when, [&] { PostMessageW(form.box.hwnd(), input, VK_UP, 0); });
        form.box.load(path);
        UpdateWindow(form.box.hwnd());
        CHECK(Meanwhile::isReadingStopped() == (when == Meanwhile::before));
        CHECK(decodings.count() == 0);
        CHECK(pumpUntil([&] { return decodings.count() > 0; }));
        CHECK(isBlue(form.box));
        CHECK(decodings.count() == 1);
      });
    }
}

TEST_CASE("a decoder that reads a few bytes at a time is not asked at each of them") {
  const ScratchFolder disk;
  const auto file = pictures::blueGifOf(largeWidth, largeHeight);
  const auto path = disk.writeFile(L"a.gif", file);
  PictureForm([&](PictureForm& form) {
    form.box.load(path);
    const Questions questions;
    UpdateWindow(form.box.hwnd());
    CHECK(questions.count() > 10);
    CHECK(questions.count() <= static_cast<int>(file.size() / 4096) + 10);
  });
}

TEST_CASE("a decoder may do with a picture's bytes what it may do with every stream") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::blueGifOf(largeWidth, largeHeight));
  PictureForm([&](PictureForm& form) {
    bool asked = false;
    const Meanwhile meanwhile(Meanwhile::before, [&] {
      asked = true;
      IStream& stream = Meanwhile::stream();
      ComPtr<IUnknown> found;
      for (const IID& id : {IID_IUnknown, IID_ISequentialStream, IID_IStream})
        CHECK(stream.QueryInterface(id, reinterpret_cast<void**>(found.put())) == S_OK);
      CHECK(stream.QueryInterface(IID_IStorage, reinterpret_cast<void**>(found.put())) ==
            E_NOINTERFACE);
      CHECK_FALSE(found);
      ComPtr<IStream> clone;
      CHECK(stream.Clone(clone.put()) == S_OK);
      char begin[3] = {};
      CHECK(clone->Read(begin, sizeof begin, nullptr) == S_OK);
      CHECK(std::string(begin, sizeof begin) == "GIF");
      ComPtr<IStream> copy;
      CreateStreamOnHGlobal(nullptr, TRUE, copy.put());
      ULARGE_INTEGER size = {};
      size.QuadPart = 3;
      CHECK(stream.CopyTo(copy.get(), size, nullptr, nullptr) == S_OK);
      for (const char* written : {"FIG", "GIF"}) {
        CHECK(stream.Seek({}, STREAM_SEEK_SET, nullptr) == S_OK);
        CHECK(stream.Write(written, 3, nullptr) == S_OK);
        CHECK(stream.Seek({}, STREAM_SEEK_SET, nullptr) == S_OK);
        CHECK(stream.Read(begin, sizeof begin, nullptr) == S_OK);
        CHECK(std::string(begin, sizeof begin) == written);
      }
      CHECK(stream.Seek({}, STREAM_SEEK_SET, nullptr) == S_OK);
      const auto sizeOf = [](IStream& each) {
        STATSTG state = {};
        CHECK(each.Stat(&state, STATFLAG_NONAME) == S_OK);
        return state.cbSize;
      };
      CHECK(sizeOf(*copy.get()).QuadPart == 3);
      ULARGE_INTEGER larger = sizeOf(stream);
      ++larger.QuadPart;
      CHECK(stream.SetSize(larger) == S_OK);
      CHECK(sizeOf(stream).QuadPart == larger.QuadPart);
      CHECK(stream.Commit(STGC_DEFAULT) == S_OK);
      CHECK(stream.Revert() == S_OK);
      CHECK(stream.LockRegion({}, size, LOCK_WRITE) == copy->LockRegion({}, size, LOCK_WRITE));
      CHECK(stream.UnlockRegion({}, size, LOCK_WRITE) == copy->UnlockRegion({}, size, LOCK_WRITE));
    });
    form.box.load(path);
    UpdateWindow(form.box.hwnd());
    CHECK(asked);
    CHECK(isBlue(form.box));
  });
}

TEST_CASE("what a decoder makes of a large picture that it could not read on is not shown") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::blueGifOf(largeWidth, largeHeight));
  PictureForm([&](PictureForm& form) {
    const Decodings decodings;
    const Meanwhile meanwhile(Meanwhile::late,
                              [&] { PostMessageW(form.box.hwnd(), WM_KEYDOWN, VK_UP, 0); });
    form.box.load(path);
    const Drawings drawings;
    UpdateWindow(form.box.hwnd());
    CHECK(decodings.count() == 1);
    CHECK(drawings.count() == 0);
    CHECK(pumpUntil([&] { return decodings.count() == 2; }));
    CHECK(isBlue(form.box));
  });
}

TEST_CASE("a large picture is decoded while the mouse moves and other messages wait") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::blueGifOf(largeWidth, largeHeight));
  PictureForm([&](PictureForm& form) {
    const Decodings decodings;
    const Meanwhile meanwhile(Meanwhile::before, [&] {
      for (const UINT message : {WM_MOUSEMOVE, WM_APP, WM_TIMER})
        PostMessageW(form.box.hwnd(), message, 0, 0);
    });
    form.box.load(path);
    UpdateWindow(form.box.hwnd());
    CHECK(decodings.count() == 1);
  });
}

TEST_CASE("what prints a picture box waits for its large picture") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::blueGifOf(largeWidth, largeHeight));
  PictureForm([&](PictureForm& form) {
    form.box.load(path);
    PostMessageW(form.box.hwnd(), WM_KEYDOWN, VK_UP, 0);
    CHECK(isBlue(form.box));
  });
}

TEST_CASE("a picture that comes while another one is decoded takes its place") {
  const ScratchFolder disk;
  const auto large = disk.writeFile(L"a.gif", pictures::blueGifOf(largeWidth, largeHeight));
  const auto other = disk.writeFile(L"b.gif", pictures::blueGifOf(largeHeight, largeWidth));
  const auto broken =
      disk.writeFile(L"c.gif", pictures::blueGifOf(largeWidth, largeHeight).substr(0, 2000));
  const auto small = disk.writeFile(L"d.gif", pictures::bytes(pictures::blueGif));
  for (const auto& first : {large, broken})
    for (const auto& second : {other, small}) {
      CAPTURE(first);
      CAPTURE(second);
      PictureForm([&](PictureForm& form) {
        form.box.onFailed = [](const Error&) { FAIL("it is no longer shown"); };
        const Meanwhile meanwhile(Meanwhile::before, [&] { form.box.load(second); });
        form.box.load(first);
        UpdateWindow(form.box.hwnd());
        const Decodings decodings;
        if (second == other) CHECK(pumpUntil([&] { return decodings.count() > 0; }));
        forms::yieldToMessages();
        CHECK(form.box.path() == second);
        CHECK(isBlue(form.box));
        CHECK(decodings.count() == (second == other ? 1 : 0));
      });
    }
}

TEST_CASE("a large file that turns out to be no picture empties its box and says so") {
  const ScratchFolder disk;
  const auto whole = pictures::blueGifOf(largeWidth, largeHeight);
  const auto cut = disk.writeFile(L"a.gif", whole.substr(0, 2000));
  const auto good = disk.writeFile(L"b.gif", pictures::bytes(pictures::blueGif));
  PictureForm([&](PictureForm& form) {
    std::vector<long> failures;
    form.box.onFailed = [&](const Error& error) { failures.push_back(error.number()); };
    form.box.load(cut);
    UpdateWindow(form.box.hwnd());
    CHECK(failures.empty());
    CHECK(pumpUntil([&] { return !failures.empty(); }));
    CHECK(failures == std::vector<long>{forms::PictureBox::invalidPicture});
    CHECK_FALSE(form.box.hasPicture());

    form.box.load(cut);
    UpdateWindow(form.box.hwnd());
    form.box.load(good);  // before the news is there
    forms::yieldToMessages();
    CHECK(failures.size() == 1);
    CHECK(form.box.path() == good);
  });
}

TEST_CASE("a small picture is kept and decoded again when its file has changed") {
  const ScratchFolder disk;
  const auto one = disk.writeFile(L"a.gif", pictures::bytes(pictures::blueGif));
  const auto other = disk.writeFile(L"b.jpg", pictures::bytes(pictures::blueJpeg));
  PictureForm([&](PictureForm& form) {
    const Decodings decodings;
    form.box.load(one);
    form.box.load(one);
    CHECK(decodings.count() == 1);
    form.box.load(other);
    form.box.load(one);
    form.box.clear();
    form.box.load(other);
    CHECK(decodings.count() == 2);
    CHECK(GetBValue(middleColour(form.box)) > 200);
    disk.writeFile(L"b.jpg", pictures::blueGifOf(30, 20));
    form.box.load(other);
    CHECK(decodings.count() == 3);
    CHECK(form.box.naturalSize().cx == 30);
  });
}

TEST_CASE("of many small pictures only the last few are kept") {
  const ScratchFolder disk;
  PictureForm([&](PictureForm& form) {
    const long before = handles::liveCount();
    for (int i = 0; i < 100; ++i)
      form.box.load(
          disk.writeFile(std::to_wstring(i) + L".gif", pictures::bytes(pictures::blueGif)));
    CHECK(handles::liveCount() - before < 40);
  });
}

TEST_CASE("pictures show without the graphics library too") {
  const ScratchFolder disk;
  const auto gif = disk.writeFile(L"a.gif", pictures::bytes(pictures::blueGif));
  const auto jpeg = disk.writeFile(L"a.jpg", pictures::bytes(pictures::blueJpeg));
  const auto clear = disk.writeFile(L"b.gif", pictures::bytes(pictures::clearGif));
  const auto cut = disk.writeFile(L"d.gif", pictures::bytes(pictures::blueGif).substr(0, 60));
  PictureForm([&](PictureForm& form) {
    const Decodings decodings(false);
    for (const auto& path : {gif, jpeg}) {
      form.box.load(path);
      CHECK(form.box.naturalSize().cx == 201);
      CHECK(GetBValue(middleColour(form.box)) > 200);
      CHECK(GetRValue(middleColour(form.box)) < 60);
    }
    form.box.load(clear);
    CHECK(middleColour(form.box) == GetSysColor(COLOR_WINDOW));
    CHECK(loadError(form.box, cut) == forms::PictureBox::invalidPicture);
    CHECK(decodings.loads() == 1);
  });
}

TEST_CASE("showing one small picture after another leaves the scroll bars alone") {
  const ScratchFolder disk;
  const auto one = disk.writeFile(L"a.gif", pictures::bytes(pictures::blueGif));
  const auto other = disk.writeFile(L"b.gif", pictures::blueGifOf(30, 20));
  PictureForm([&](PictureForm& form) {
    form.box.load(one);
    const BarCalls calls;
    form.box.load(other);
    form.box.clear();
    form.box.load(one, [](SIZE natural) { return SIZE{natural.cx / 2, natural.cy / 2}; });
    CHECK(form.box.pictureSize().cx == 100);
    CHECK(calls.count() == 0);
  });
}

TEST_CASE("a transparent picture follows the window's background") {
  const ScratchFolder disk;
  const auto path = disk.writeFile(L"a.gif", pictures::bytes(pictures::clearGif));
  PictureForm([&](PictureForm& form) {
    form.box.load(path);
    const Decodings decodings;
    SendMessageW(form.hwnd(), WM_SYSCOLORCHANGE, 0, 0);
    CHECK(decodings.count() == 1);
    CHECK(form.box.path() == path);
    DeleteFileW(path.c_str());
    SendMessageW(form.hwnd(), WM_SYSCOLORCHANGE, 0, 0);
    CHECK(form.box.hasPicture());
  });
}
