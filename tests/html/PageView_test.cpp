#include "html/PageView.h"

#include <stdexcept>

#include "common/handles.h"
#include "tests/support/Frame.h"
#include "tests/support/HeldKeys.h"
#include "tests/support/HeldThumb.h"
#include "tests/support/pictures.h"
#include "tests/support/text_output.h"

using namespace html;

namespace {

using Texts = std::vector<std::wstring>;

struct BluePictures final : PictureSizes {
  SIZE sizeOf(const std::wstring&) override { return {201, 100}; }
};

// A page in a window of 300 x 200 pixels, whose pictures are blue.
struct View {
  explicit View(const std::wstring& html) : page(parsePage(html)) {
    view.onPicture = [](const std::wstring&) {
      return std::make_shared<Picture>(pictures::bytes(pictures::blueGif));
    };
    view.onLink = [this](const std::wstring& link) { followed.push_back(link); };
    REQUIRE(view.create(frame.get(), {0, 0, 300, 200}));
    view.show(page);
  }

  LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageW(view.handle(), message, wParam, lParam);
  }
  void press(WPARAM key) const { send(WM_KEYDOWN, key); }
  // Whether the key is the page's own and not the dialog's.
  bool wants(WPARAM key) const {
    MSG message = {view.handle(), WM_KEYDOWN, key, 0, 0, {}};
    return (send(WM_GETDLGCODE, key, reinterpret_cast<LPARAM>(&message)) & DLGC_WANTMESSAGE) != 0;
  }
  SCROLLINFO bar() const {
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    GetScrollInfo(view.handle(), SB_VERT, &info);
    return info;
  }
  int position() const { return bar().nPos; }
  int height() const {
    RECT client;
    GetClientRect(view.handle(), &client);
    Fonts fonts;
    BluePictures sizes;
    return layOut(page, client.right, fonts, sizes).height;
  }
  POINT placeOf(const std::wstring& link) const {
    POINT place = {-1, -1};
    REQUIRE(linkPlace(view.handle(), link, place));
    return place;
  }
  // The upper part of the page as it is painted.
  std::vector<COLORREF> painted() const {
    RedrawWindow(view.handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    const handles::WindowContext context(view.handle());
    std::vector<COLORREF> result;
    for (int y = 0; y < 40; ++y)
      for (int x = 0; x < 100; ++x) result.push_back(GetPixel(context.get(), x, y));
    return result;
  }
  void click(POINT place) const {
    send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(place.x, place.y));
    send(WM_LBUTTONUP, 0, MAKELPARAM(place.x, place.y));
  }

  Texts followed;
  Frame frame;
  PageView view;
  Page page;
};

constexpr wchar_t highPage[] = L"<img src=a width=40 height=1000>";
constexpr wchar_t links[] =
    L"<a href=one.htm>one</a> and <a href=two.htm>two</a><p><img src=a width=40 height=500>"
    L"<p><a href=three.htm>three</a>";

// A leaf of paper, white before each use.
struct Paper {
  Paper() : former(SelectObject(memory.get(), bitmap.get())) {}
  ~Paper() { SelectObject(memory.get(), former); }
  Paper(const Paper&) = delete;
  Paper& operator=(const Paper&) = delete;
  void clear() const { PatBlt(memory.get(), 0, 0, width, height, WHITENESS); }
  // In parts of a thousand of the leaf's width and height.
  COLORREF at(int across, int down) const {
    return GetPixel(memory.get(), MulDiv(width, across, 1000), MulDiv(height, down, 1000));
  }

  handles::ScreenContext screen;
  int width = GetDeviceCaps(screen.get(), HORZRES);
  int height = GetDeviceCaps(screen.get(), VERTRES);
  handles::DeviceContext memory{CreateCompatibleDC(screen.get())};
  handles::Gdi bitmap{CreateCompatibleBitmap(screen.get(), width, height)};
  HGDIOBJ former;
};

// Of the page's own pixels, 700 of which make a leaf's width.
int leafHeight(const Paper& paper) { return MulDiv(700, paper.height, paper.width); }

std::wstring picture(int height) {
  return L"<img src=a width=600 height=" + std::to_wstring(height) + L">";
}

constexpr COLORREF blue = RGB(0, 0, 255);
constexpr COLORREF white = RGB(255, 255, 255);

}  // namespace

TEST_CASE("the scroll bar tells how high a page is and how much of it is seen") {
  const View view(highPage);
  CHECK(view.bar().nMin == 0);
  CHECK(view.bar().nMax == view.height() - 1);
  CHECK(view.bar().nPage == 200);
  CHECK(view.position() == 0);
}

TEST_CASE("the arrows and the shaft of the scroll bar move the page within its bounds") {
  const View view(highPage);
  view.send(WM_VSCROLL, SB_LINEUP);
  CHECK(view.position() == 0);
  view.send(WM_VSCROLL, SB_LINEDOWN);
  CHECK(view.position() == 40);
  view.send(WM_VSCROLL, SB_PAGEDOWN);
  CHECK(view.position() == 240);
  view.send(WM_VSCROLL, SB_LINEUP);
  CHECK(view.position() == 200);
  view.send(WM_VSCROLL, SB_PAGEUP);
  CHECK(view.position() == 0);
}

TEST_CASE("the page goes along with the thumb of the scroll bar") {
  const View view(highPage);
  {
    const HeldThumb thumb(300);
    // Not what comes along with the message: that has room for half of the number.
    view.send(WM_VSCROLL, MAKEWPARAM(SB_THUMBTRACK, 16));
  }
  CHECK(view.position() == 300);
}

TEST_CASE("the keys move the page") {
  const View view(highPage);
  view.press(VK_DOWN);
  CHECK(view.position() == 40);
  view.press(VK_NEXT);
  CHECK(view.position() == 240);
  view.press(VK_UP);
  CHECK(view.position() == 200);
  view.press(VK_END);
  CHECK(view.position() == view.height() - 200);
  view.press(VK_DOWN);
  CHECK(view.position() == view.height() - 200);
  view.press(VK_PRIOR);
  CHECK(view.position() == view.height() - 400);
  view.press(VK_HOME);
  CHECK(view.position() == 0);
  view.press(VK_SPACE);
  CHECK(view.position() == 0);
}

TEST_CASE("one turn of the wheel moves the page by forty pixels") {
  const View view(highPage);
  view.send(WM_MOUSEWHEEL, MAKEWPARAM(0, -3 * WHEEL_DELTA));
  CHECK(view.position() == 120);
  view.send(WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA));
  CHECK(view.position() == 80);
}

TEST_CASE("another page begins at its top") {
  View view(highPage);
  view.press(VK_END);
  view.view.show(parsePage(highPage));
  CHECK(view.position() == 0);
}

TEST_CASE("a click follows the link that is there and no other") {
  const View view(links);
  const POINT two = view.placeOf(L"two");
  view.click({two.x, two.y + 40});
  CHECK(view.followed.empty());
  view.click(two);
  CHECK(view.followed == Texts{L"two.htm"});
  CHECK(GetFocus() == view.view.handle());
  view.click(view.placeOf(L"one"));
  CHECK(view.followed == Texts{L"two.htm", L"one.htm"});
}

TEST_CASE("a link that is asked for is scrolled to and found where it is then") {
  const View view(links);
  const POINT three = view.placeOf(L"three");
  CHECK(view.position() > 300);
  CHECK(three.y > 0);
  CHECK(three.y < 200);
  view.click(three);
  CHECK(view.followed == Texts{L"three.htm"});
}

TEST_CASE("a link that is not there and a window without a page have no place") {
  const View view(links);
  POINT place = {};
  CHECK_FALSE(linkPlace(view.view.handle(), L"four", place));
  CHECK_FALSE(linkPlace(view.frame.get(), L"one", place));
}

TEST_CASE("the pointer is a hand over a link and no other thing") {
  const View view(links);
  const auto pointerAt = [&](POINT place) {
    ClientToScreen(view.view.handle(), &place);
    SetCursorPos(place.x, place.y);
    SetCursor(LoadCursorW(nullptr, IDC_ARROW));
    view.send(WM_SETCURSOR, reinterpret_cast<WPARAM>(view.view.handle()),
              MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    return GetCursor();
  };
  const POINT one = view.placeOf(L"one");
  CHECK(pointerAt(one) == LoadCursorW(nullptr, IDC_HAND));
  CHECK(pointerAt({one.x, one.y + 40}) != LoadCursorW(nullptr, IDC_HAND));
}

TEST_CASE("the tab key marks one link after the other and Enter follows the marked one") {
  const View view(links);
  view.press(VK_RETURN);
  CHECK(view.followed.empty());
  view.press(VK_TAB);
  view.press(VK_RETURN);
  view.press(VK_TAB);
  view.press(VK_RETURN);
  CHECK(view.followed == Texts{L"one.htm", L"two.htm"});
  CHECK(view.position() == 0);
  view.press(VK_TAB);
  view.press(VK_RETURN);
  CHECK(view.followed.back() == L"three.htm");
  CHECK(view.position() > 300);
}

TEST_CASE("the tab key with the shift key goes from the last link to the first") {
  const View view(links);
  const HeldKeys shift({VK_SHIFT});
  view.press(VK_TAB);
  view.press(VK_RETURN);
  view.press(VK_TAB);
  view.press(VK_RETURN);
  CHECK(view.followed == Texts{L"three.htm", L"two.htm"});
}

TEST_CASE("behind the last link of a page the tab key is the dialog's") {
  const View view(links);
  CHECK(view.wants(VK_TAB));
  view.press(VK_TAB);
  view.press(VK_TAB);
  CHECK(view.wants(VK_TAB));
  view.press(VK_TAB);
  CHECK_FALSE(view.wants(VK_TAB));
  view.press(VK_TAB);
  view.press(VK_RETURN);
  CHECK(view.followed.empty());
}

TEST_CASE("the marked link has a frame as long as the page has the focus") {
  const View view(links);
  SetFocus(view.view.handle());
  const auto unmarked = view.painted();
  view.press(VK_TAB);
  CHECK(view.painted() != unmarked);
  SetFocus(view.frame.get());
  CHECK(view.painted() == unmarked);
}

TEST_CASE("a failure behind a link leaves the page as it is") {
  View view(links);
  view.view.onLink = [](const std::wstring&) { throw std::runtime_error("lost"); };
  view.click(view.placeOf(L"three"));
  CHECK(view.position() > 300);
}

TEST_CASE("what is asked for later comes with the window's messages") {
  View view(links);
  int came = 0;
  view.view.onLater = [&] { ++came; };
  view.view.askLater();
  CHECK(came == 0);
  MSG message = {};
  while (PeekMessageW(&message, view.view.handle(), 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  CHECK(came == 1);
}

TEST_CASE("what is no picture takes no room of its own and nothing is drawn of it") {
  for (const auto& none :
       {std::shared_ptr<const Picture>(), std::make_shared<const Picture>("no picture")}) {
    View view(L"<img src=a>");
    view.view.onPicture = [&](const std::wstring&) { return none; };
    view.view.show(view.page);
    CHECK(view.bar().nMax == 19);  // the page's margins
    const auto empty = view.painted();
    view.view.show(parsePage(L"<img src=a width=50 height=20>"));
    CHECK(view.bar().nMax == 39);
    CHECK(view.painted() == empty);
  }
}

TEST_CASE("a picture is asked for once for each address of a page") {
  View view(L"");
  Texts asked;
  view.view.onPicture = [&](const std::wstring& address) {
    asked.push_back(address);
    return nullptr;
  };
  view.view.show(parsePage(L"<img src=a><img src=b><img src=a>"));
  view.painted();
  CHECK(asked == Texts{L"a", L"b"});
  view.view.show(parsePage(L"<img src=a>"));
  CHECK(asked == Texts{L"a", L"b", L"a"});
}

TEST_CASE("an entry of a list has a square before the middle of its first line") {
  Fonts fonts;
  BluePictures sizes;
  const Layout list =
      layOut(parsePage(L"<ul><li><font color=#ff0000>one<br>two</ul>"), 300, fonts, sizes);
  REQUIRE(list.items.size() == 3);
  const Item& square = list.items[0];
  const RECT one = list.items[1].place;
  CHECK(square.kind == Item::Kind::fill);
  CHECK(square.colour == RGB(255, 0, 0));
  CHECK(square.place.left == one.left - 15);
  CHECK(square.place.right == one.left - 10);
  CHECK(square.place.top == one.top + (one.bottom - one.top - 5) / 2);
  CHECK(square.place.bottom == square.place.top + 5);
}

TEST_CASE("Enter is the dialog's where no link is marked") {
  const View view(links);
  CHECK_FALSE(view.wants(VK_RETURN));
  view.press(VK_TAB);
  CHECK(view.wants(VK_RETURN));
  CHECK_FALSE(view.wants(VK_F1));
  CHECK_FALSE(View(L"<p>text").wants(VK_TAB));
  CHECK(view.send(WM_GETDLGCODE) == DLGC_WANTARROWS);
}

TEST_CASE("what does not end on a leaf of paper begins the next one") {
  Paper paper;
  View view(picture(leafHeight(paper) * 2 / 3) + L"<p>" + picture(leafHeight(paper) * 2 / 3));
  std::vector<std::vector<COLORREF>> leaves;
  std::vector<bool> calls;
  view.view.print(paper.memory.get(), [&](bool begins) {
    calls.push_back(begins);
    if (begins)
      paper.clear();
    else
      leaves.push_back({paper.at(300, 100), paper.at(300, 600), paper.at(300, 900)});
    return true;
  });
  CHECK(calls == std::vector{true, false, true, false});
  const std::vector<COLORREF> expected = {blue, blue, white};
  REQUIRE(leaves.size() == 2);
  CHECK(leaves[0] == expected);
  CHECK(leaves[1] == expected);
}

TEST_CASE("what is higher than a leaf of paper goes on on the next one") {
  Paper paper;
  View view(picture(leafHeight(paper) * 3 / 2));
  std::vector<std::vector<COLORREF>> leaves;
  view.view.print(paper.memory.get(), [&](bool begins) {
    if (begins)
      paper.clear();
    else
      leaves.push_back({paper.at(300, 100), paper.at(300, 400), paper.at(300, 900)});
    return true;
  });
  REQUIRE(leaves.size() == 2);
  CHECK(leaves[0] == std::vector<COLORREF>{blue, blue, blue});
  CHECK(leaves[1] == std::vector<COLORREF>{blue, blue, white});
}

TEST_CASE("printing ends where it is told to and leaves the page as it was") {
  Paper paper;
  View view(picture(leafHeight(paper) * 3));
  view.press(VK_DOWN);
  int calls = 0;
  view.view.print(paper.memory.get(), [&](bool) { return ++calls < 2; });
  CHECK(calls == 2);
  calls = 0;
  view.view.print(paper.memory.get(), [&](bool) { return ++calls < 1; });
  CHECK(calls == 1);
  CHECK(view.position() == 40);
  CHECK(view.bar().nMax == view.height() - 1);
}
