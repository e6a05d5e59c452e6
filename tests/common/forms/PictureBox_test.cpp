#include "common/forms/PictureBox.h"

#include "catalogue/resource.h"
#include "common/forms/WebBrowser.h"
#include "tests/support/ImportPatch.h"
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
        script_(script) {
    showModal(nullptr);
  }

  forms::PictureBox box;
  forms::WebBrowser page;  // the dialog has one too

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
