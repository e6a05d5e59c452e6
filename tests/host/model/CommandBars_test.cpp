#include <olectl.h>

#include <algorithm>

#include "common/handles.h"
#include "host/NativeMenu.h"
#include "host/model/Host.h"
#include "tests/host/LateBound.h"
#include "tests/support/text_output.h"

using standin::Host;
using standin::HostOptions;

namespace {

const auto missing = com::Variant::missing();

LateBound menuBar(const Host& host) {
  return LateBound(host.application()).child(L"CommandBars").child(L"ActiveMenuBar");
}

LateBound templatesMenu(const Host& host) { return LateBound(host.control(31252)); }

LateBound add(const LateBound& popup, std::vector<com::Variant> arguments) {
  return LateBound(popup.child(L"Controls").call(L"Add", std::move(arguments)));
}

void putOnClipboard(HBITMAP bitmap) {
  REQUIRE(OpenClipboard(nullptr));
  EmptyClipboard();
  if (bitmap) SetClipboardData(CF_BITMAP, bitmap);
  CloseClipboard();
}

HBITMAP plainBitmap(COLORREF colour) {
  const handles::ScreenContext screen;
  const handles::DeviceContext memory(CreateCompatibleDC(screen.get()));
  const HBITMAP bitmap = CreateCompatibleBitmap(screen.get(), 16, 16);
  const HGDIOBJ old = SelectObject(memory.get(), bitmap);
  for (int i = 0; i < 256; ++i) SetPixel(memory.get(), i % 16, i / 16, colour);
  SelectObject(memory.get(), old);
  return bitmap;
}

// Hears a button's clicks.
class Listener : public IDispatch {
 public:
  int clicks = 0;
  bool cancels = false;
  ComPtr<IDispatch> button;

  STDMETHOD(QueryInterface)(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDispatch && iid != standin::buttonEvents)
      return E_NOINTERFACE;
    *object = this;
    return S_OK;
  }
  STDMETHOD_(ULONG, AddRef)() override { return 1; }
  STDMETHOD_(ULONG, Release)() override { return 1; }
  STDMETHOD(GetTypeInfoCount)(UINT*) override { return E_NOTIMPL; }
  STDMETHOD(GetTypeInfo)(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHOD(GetIDsOfNames)(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHOD(Invoke)
  (DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*, UINT*) override {
    if (id != 1 || parameters->cArgs != 2) return DISP_E_MEMBERNOTFOUND;
    if (parameters->rgvarg[1].vt != VT_DISPATCH || parameters->rgvarg[0].vt != (VT_BYREF | VT_BOOL))
      return DISP_E_TYPEMISMATCH;
    ++clicks;
    button = ComPtr<IDispatch>(parameters->rgvarg[1].pdispVal);
    if (cancels) *parameters->rgvarg[0].pboolVal = VARIANT_TRUE;
    return S_OK;
  }
};

ComPtr<IConnectionPoint> clicksOf(const LateBound& button) {
  const auto container = ComPtr<IDispatch>(button.object()).as<IConnectionPointContainer>();
  REQUIRE(container);
  ComPtr<IConnectionPoint> point;
  REQUIRE(container->FindConnectionPoint(standin::buttonEvents, point.put()) == S_OK);
  return point;
}

}  // namespace

TEST_CASE("the menu bar is of type 1 and is the first of the bars") {
  const Host host;
  const LateBound bars = LateBound(host.application()).child(L"CommandBars");
  CHECK(menuBar(host).number(L"Type") == 1);
  CHECK(bars.number(L"Count") == 2);
  CHECK(bars.item(1).object() == menuBar(host).object());
  CHECK(bars.item(L"menu bar").object() == menuBar(host).object());
  CHECK(bars.item(L"Standard").number(L"Type") == 0);
  CHECK(bars.get(L"Item", {0}).result == DISP_E_EXCEPTION);
  CHECK(bars.get(L"Item", {3}).result == DISP_E_EXCEPTION);
}

TEST_CASE("the pop-up 31252 holds the two anchors among other entries") {
  const Host host;
  const LateBound popup = templatesMenu(host);
  CHECK(popup.number(L"Type") == 10);
  std::vector<long> ids;
  const LateBound controls = popup.child(L"Controls");
  for (long i = 1; i <= controls.number(L"Count"); ++i)
    ids.push_back(controls.item(i).number(L"Id"));
  CHECK(std::count(ids.begin(), ids.end(), 7121) == 1);
  CHECK(std::count(ids.begin(), ids.end(), 7127) == 1);
  CHECK(ids.size() > 2);
}

TEST_CASE("the accelerators within each menu are unique") {
  const Host host;
  for (standin::CommandBarControl* control : host.commandBars().allControls()) {
    if (!control->asPopup()) continue;
    std::wstring letters;
    for (const auto& entry : control->asPopup()->menu().controls()) {
      std::wstring caption = entry->caption;
      for (auto pair = caption.find(L"&&"); pair != caption.npos; pair = caption.find(L"&&"))
        caption.erase(pair, 2);
      const auto mark = caption.find(L'&');
      REQUIRE(mark != caption.npos);
      letters += static_cast<wchar_t>(towlower(caption[mark + 1]));
    }
    std::sort(letters.begin(), letters.end());
    CHECK(std::adjacent_find(letters.begin(), letters.end()) == letters.end());
  }
}

TEST_CASE("a bar finds controls in its pop-ups only when asked to search them") {
  const Host host;
  const LateBound bar = menuBar(host);
  CHECK_FALSE(LateBound(bar.call(L"FindControl", {missing, 31252})));
  CHECK_FALSE(LateBound(bar.call(L"FindControl", {missing, 31252, missing, missing, false})));
  CHECK(LateBound(bar.call(L"FindControl", {missing, 31252, missing, missing, true})));
}

TEST_CASE("the collection finds controls in every pop-up and takes no fifth argument") {
  const Host host;
  const LateBound bars = LateBound(host.application()).child(L"CommandBars");
  CHECK(LateBound(bars.call(L"FindControl", {missing, 7127})).number(L"Id") == 7127);
  CHECK(bars.call(L"FindControl", {missing, 7127, missing, missing, true}).result ==
        DISP_E_BADPARAMCOUNT);
}

TEST_CASE("controls are found by type and tag and visibility") {
  const Host host;
  const LateBound bars = LateBound(host.application()).child(L"CommandBars");
  LateBound(host.control(7127)).put(L"Tag", L"mine");
  CHECK(LateBound(bars.call(L"FindControl", {1, missing, L"mine"})).number(L"Id") == 7127);
  CHECK_FALSE(LateBound(bars.call(L"FindControl", {10, missing, L"mine"})));
  LateBound(host.control(7127)).put(L"Visible", false);
  CHECK(LateBound(bars.call(L"FindControl", {missing, missing, L"mine", false})));
  CHECK_FALSE(LateBound(bars.call(L"FindControl", {missing, missing, L"mine", true})));
}

TEST_CASE("a miss of a search is nothing") {
  Host host;
  const LateBound bars = LateBound(host.application()).child(L"CommandBars");
  CHECK(bars.call(L"FindControl", {missing, 99999}).value.type() == VT_DISPATCH);
  host.options().nothingIsEmpty = true;
  CHECK(bars.call(L"FindControl", {missing, 99999}).value.type() == VT_EMPTY);
}

TEST_CASE("controls are counted from 1 and found by their caption as read") {
  const Host host;
  const LateBound controls = templatesMenu(host).child(L"Controls");
  CHECK(controls.item(1).number(L"Index") == 1);
  CHECK(controls.item(2).number(L"Index") == 2);
  CHECK(controls.item(L"update all pages").number(L"Id") == 7126);
  CHECK(controls.get(L"Item", {0}).result == DISP_E_EXCEPTION);
  CHECK(controls.get(L"Item", {99}).result == DISP_E_EXCEPTION);
}

TEST_CASE("the default member of the controls is Item") {
  const Host host;
  const LateBound controls = templatesMenu(host).child(L"Controls");
  VARIANT index = {};
  index.vt = VT_I4;
  index.lVal = 1;
  DISPPARAMS parameters = {&index, nullptr, 1, 0};
  com::Variant value;
  CHECK(controls.object()->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                  &parameters, value.put(), nullptr, nullptr) == S_OK);
  CHECK(value.object().get() == controls.item(1).object());
}

TEST_CASE("a new control stands before the given one") {
  const Host host;
  const LateBound popup = templatesMenu(host);
  const LateBound button = add(popup, {1, missing, L"parameter", 2, true});
  CHECK(button.number(L"Index") == 2);
  CHECK(button.number(L"Id") == 1);
  CHECK(button.number(L"Type") == 1);
  CHECK(button.text(L"Parameter") == L"parameter");
  CHECK(popup.child(L"Controls").item(3).number(L"Id") == 7122);
}

TEST_CASE("without a position a new control is appended") {
  const Host host;
  const LateBound popup = templatesMenu(host);
  const long count = popup.child(L"Controls").number(L"Count");
  CHECK(add(popup, {}).number(L"Index") == count + 1);
}

TEST_CASE("a position past the last control appends or refuses") {
  Host host;
  const LateBound popup = templatesMenu(host);
  const long count = popup.child(L"Controls").number(L"Count");
  CHECK(add(popup, {1, missing, missing, count + 1}).number(L"Index") == count + 1);
  host.options().beforePastEndRefused = true;
  const LateBound controls = popup.child(L"Controls");
  CHECK(controls.call(L"Add", {1, missing, missing, count + 2}).result == DISP_E_EXCEPTION);
  CHECK(controls.call(L"Add", {1, missing, missing, 0}).result == DISP_E_EXCEPTION);
}

TEST_CASE("controls of the types 1 2 3 4 and 10 can be added and no others") {
  const Host host;
  const LateBound controls = templatesMenu(host).child(L"Controls");
  for (const long type : {1, 2, 3, 4, 10}) {
    const LateBound added(controls.call(L"Add", {type}));
    REQUIRE(added);
    CHECK(added.number(L"Type") == type);
  }
  for (const long type : {0, 5, 12, 13})
    CHECK(controls.call(L"Add", {type}).result == DISP_E_EXCEPTION);
}

TEST_CASE("a control keeps what is put into it") {
  const Host host;
  const LateBound button = add(templatesMenu(host), {});
  for (const wchar_t* name : {L"Tag", L"Caption", L"Parameter", L"TooltipText"}) {
    CHECK(button.put(name, L"&text").result == S_OK);
    CHECK(button.text(name) == L"&text");
  }
  for (const wchar_t* name : {L"BeginGroup", L"Enabled", L"Visible"}) {
    CHECK(button.put(name, false).result == S_OK);
    CHECK_FALSE(button.flag(name));
    CHECK(button.put(name, true).result == S_OK);
    CHECK(button.flag(name));
  }
  CHECK(button.put(L"Style", 3).result == S_OK);
  CHECK(button.number(L"Style") == 3);
  CHECK(button.put(L"Style", 4).result == DISP_E_EXCEPTION);
}

TEST_CASE("identifier type and index of a control cannot be set") {
  const Host host;
  const LateBound button = add(templatesMenu(host), {});
  for (const wchar_t* name : {L"Id", L"Type", L"Index"})
    CHECK(button.put(name, 5).result == DISP_E_MEMBERNOTFOUND);
}

TEST_CASE("a deleted control is out of its menu and refuses everything but its type and id") {
  const Host host;
  const LateBound button = add(templatesMenu(host), {});
  const long count = templatesMenu(host).child(L"Controls").number(L"Count");
  CHECK(button.call(L"Delete", {true}).result == S_OK);
  CHECK(templatesMenu(host).child(L"Controls").number(L"Count") == count - 1);
  CHECK(button.get(L"Caption").result == DISP_E_EXCEPTION);
  CHECK(button.call(L"Delete").result == DISP_E_EXCEPTION);
  CHECK(button.number(L"Id") == 1);
}

TEST_CASE("a button has no pop-up members and a pop-up no button members") {
  const Host host;
  CHECK(add(templatesMenu(host), {}).get(L"Controls").result == DISP_E_UNKNOWNNAME);
  CHECK(templatesMenu(host).get(L"Style").result == DISP_E_UNKNOWNNAME);
  CHECK(templatesMenu(host).child(L"CommandBar").number(L"Type") == 2);
}

TEST_CASE("a button keeps the picture that it is given by the clipboard") {
  const Host host;
  const LateBound button = add(templatesMenu(host), {});
  button.put(L"Tag", L"mine");
  putOnClipboard(plainBitmap(RGB(10, 20, 30)));
  CHECK(button.call(L"PasteFace").result == S_OK);
  putOnClipboard(nullptr);
  const HBITMAP face = host.button(L"mine")->face();
  REQUIRE(face);
  const handles::ScreenContext screen;
  const handles::DeviceContext memory(CreateCompatibleDC(screen.get()));
  const HGDIOBJ old = SelectObject(memory.get(), face);
  CHECK(GetPixel(memory.get(), 3, 3) == RGB(10, 20, 30));
  SelectObject(memory.get(), old);
}

TEST_CASE("pasting a face without a picture on the clipboard fails") {
  const Host host;
  const LateBound button = add(templatesMenu(host), {});
  putOnClipboard(nullptr);
  const Answer answer = button.call(L"PasteFace");
  CHECK(answer.result == DISP_E_EXCEPTION);
  CHECK(answer.description == L"The clipboard holds no picture.");
}

TEST_CASE("a click reaches the listener with the button and a cancel flag") {
  Host host;
  const LateBound button(host.control(7126));
  Listener listener;
  DWORD cookie = 0;
  REQUIRE(clicksOf(button)->Advise(&listener, &cookie) == S_OK);
  bool cancelled = true;
  CHECK(host.click(L"Update All Pages", &cancelled));
  CHECK(listener.clicks == 1);
  CHECK(listener.button.get() == button.object());
  CHECK_FALSE(cancelled);
  listener.cancels = true;
  host.click(L"Update All Pages", &cancelled);
  CHECK(cancelled);
  CHECK(clicksOf(button)->Unadvise(cookie) == S_OK);
  host.click(L"Update All Pages");
  CHECK(listener.clicks == 2);
  listener.button.reset();
}

TEST_CASE("buttons of equal id and tag share their clicks") {
  Host host;
  const LateBound first = add(templatesMenu(host), {});
  const LateBound second = add(templatesMenu(host), {});
  first.put(L"Tag", L"same");
  second.put(L"Tag", L"same");
  Listener listener;
  DWORD cookie = 0;
  clicksOf(second)->Advise(&listener, &cookie);
  host.click(L"same");
  CHECK(listener.clicks == 1);
  CHECK(listener.button.get() == first.object());
  second.put(L"Tag", L"other");
  host.click(L"same");
  CHECK(listener.clicks == 1);
  listener.button.reset();
}

TEST_CASE("only the buttons' event interface has a connection point") {
  const Host host;
  const auto container = ComPtr<IDispatch>(host.control(7126)).as<IConnectionPointContainer>();
  ComPtr<IConnectionPoint> point;
  CHECK(container->FindConnectionPoint(IID_IDispatch, point.put()) == CONNECT_E_NOCONNECTION);
  CHECK_FALSE(ComPtr<IDispatch>(host.control(31252)).as<IConnectionPointContainer>());
}

TEST_CASE("an unknown cookie cannot be unadvised") {
  const Host host;
  CHECK(clicksOf(LateBound(host.control(7126)))->Unadvise(99) == CONNECT_E_NOCONNECTION);
}

TEST_CASE("a listener without the event interface is not taken") {
  const Host host;
  DWORD cookie = 0;
  CHECK(clicksOf(LateBound(host.control(7126)))->Advise(host.application(), &cookie) ==
        CONNECT_E_CANNOTCONNECT);
}

TEST_CASE("the menus' shape can be switched") {
  HostOptions options;
  options.menuBarType = 0;
  CHECK(menuBar(Host(options)).number(L"Type") == 0);
  options = {};
  options.menuBar = false;
  CHECK_FALSE(menuBar(Host(options)));
  options = {};
  options.templatesMenu = false;
  CHECK(Host(options).control(31252) == nullptr);
  options = {};
  options.templatesMenuType = 1;
  CHECK(Host(options).control(31252)->asPopup() == nullptr);
  options.templatesMenuType = 13;
  CHECK(Host(options).control(31252)->asPopup() != nullptr);
  options = {};
  options.copyAnchor = false;
  CHECK(Host(options).control(7121) == nullptr);
  CHECK(Host(options).control(7127) != nullptr);
  options = {};
  options.onlineAnchor = false;
  CHECK(Host(options).control(7127) == nullptr);
}

TEST_CASE("changes of the menu are told to whoever shows it") {
  Host host;
  int changes = 0;
  host.session().menuChanged = [&] { ++changes; };
  const LateBound button = add(templatesMenu(host), {});
  button.put(L"Caption", L"New");
  button.call(L"Delete");
  CHECK(changes == 3);
}

TEST_CASE("captions are read without their accelerator marks") {
  CHECK(standin::plainCaption(L"Find && &Replace&") == L"Find & Replace");
}

namespace {

// A device-independent bitmap for the clipboard: the lower half in one colour, the upper one black.
HGLOBAL packedPicture(LONG width, WORD bits, BYTE colour) {
  BITMAPINFOHEADER header = {};
  header.biSize = sizeof header;
  header.biWidth = width;
  header.biHeight = 16;
  header.biPlanes = 1;
  header.biBitCount = bits;
  const auto rows = static_cast<SIZE_T>((width * bits + 31) / 32 * 4 * header.biHeight);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, sizeof header + rows);
  auto* to = static_cast<BYTE*>(GlobalLock(memory));
  memcpy(to, &header, sizeof header);
  memset(to + sizeof header, colour, rows / 2);
  memset(to + sizeof header + rows / 2, 0, rows / 2);
  GlobalUnlock(memory);
  return memory;
}

void putFaceOnClipboard(HGLOBAL face, HGLOBAL mask) {
  REQUIRE(OpenClipboard(nullptr));
  EmptyClipboard();
  SetClipboardData(CF_BITMAP, plainBitmap(RGB(10, 20, 30)));
  SetClipboardData(RegisterClipboardFormatW(L"Toolbar Button Face"), face);
  if (mask) SetClipboardData(RegisterClipboardFormatW(L"Toolbar Button Mask"), mask);
  CloseClipboard();
}

// The first pixel of the lowest row in a menu, as 0xAARRGGBB.
DWORD colourInMenu(HBITMAP drawn) {
  const handles::Gdi face = standin::menuFace(drawn);
  REQUIRE(face);
  DIBSECTION section = {};
  REQUIRE(GetObjectW(face.get(), sizeof section, &section));
  return *static_cast<const DWORD*>(section.dsBm.bmBits);
}

DWORD pastedInMenu(bool masked, HGLOBAL face, HGLOBAL mask) {
  HostOptions options;
  options.maskedFaces = masked;
  const Host host(options);
  const LateBound button = add(templatesMenu(host), {});
  button.put(L"Tag", L"mine");
  putFaceOnClipboard(face, mask);
  REQUIRE(button.call(L"PasteFace").result == S_OK);
  putOnClipboard(nullptr);
  return colourInMenu(host.button(L"mine")->face());
}

}  // namespace

TEST_CASE("a face with a mask is see-through where the mask is white and opaque elsewhere") {
  const COLORREF menu = GetSysColor(COLOR_MENU);
  const DWORD under = 0xFF000000 | static_cast<DWORD>(GetRValue(menu)) << 16 |
                      static_cast<DWORD>(GetGValue(menu)) << 8 | GetBValue(menu);
  CHECK(pastedInMenu(true, packedPicture(16, 24, 0x40), packedPicture(16, 24, 0xFF)) == under);
  CHECK(pastedInMenu(true, packedPicture(16, 32, 0x40), packedPicture(16, 24, 0)) == 0xFF404040);
}

TEST_CASE("a host without masked faces takes the bitmap and so does one without the mask") {
  CHECK(pastedInMenu(false, packedPicture(16, 24, 0x40), packedPicture(16, 24, 0xFF)) ==
        0xFF0A141E);
  CHECK(pastedInMenu(true, packedPicture(16, 24, 0x40), nullptr) == 0xFF0A141E);
}

TEST_CASE("a face and a mask that do not fit together are refused") {
  HostOptions options;
  options.maskedFaces = true;
  const Host host(options);
  const LateBound button = add(templatesMenu(host), {});
  for (const auto& [width, bits] : {std::pair<LONG, WORD>{15, 24}, {16, 8}}) {
    putFaceOnClipboard(packedPicture(16, 24, 0), packedPicture(width, bits, 0));
    const Answer answer = button.call(L"PasteFace");
    CHECK(answer.result == DISP_E_EXCEPTION);
    CHECK(answer.description == L"The face and its mask do not fit together.");
  }
  putOnClipboard(nullptr);
}
