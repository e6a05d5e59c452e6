#include "tests/journey/Journey.h"

#include <commctrl.h>

#include "catalogue/resource.h"
#include "tests/support/text_output.h"

namespace {

constexpr wchar_t browserCaption[] = L"Dynamic Web Template Browser";
constexpr wchar_t ownSettings[] = L"Software\\VB and VBA Program Settings\\Quillet Viewer\\";

void makeTemplates(const ScratchFolder& disk) {
  const char page[] = "<html><head><title>A page</title></head><body>text</body></html>";
  disk.writeFile(L"templates\\Harbour\\harbour.dwt", page);
  disk.writeFile(L"templates\\Harbour\\quillet.ini", "[harbour]\r\nTitle=Harbour Light\r\n");

  disk.writeFile(L"templates\\Night Ferry\\ferry.dwt", page);
  disk.writeFile(L"templates\\Night Ferry\\quillet.ini",
                 "[ferry]\r\nTitle=Night Ferry\r\nTheme=nightferry 1111\r\n");
  disk.writeFile(L"templates\\Night Ferry\\css\\ferry.css", "body { color: navy }");
  disk.writeFile(L"templates\\Night Ferry\\images\\deck plan.gif", "GIF89a");
  disk.writeFile(L"templates\\Night Ferry\\_vti_cnf\\ferry.dwt", "the host's own");

  disk.writeFile(L"themes\\nightferry\\nightferry.inf", "[info]\r\ntitle=Night Ferry\r\n");
  disk.writeFile(L"themes\\nightferry\\nightferry.elm", "elements");
}

std::wstring rowText(HWND list, int row) {
  wchar_t text[512] = {};
  LVITEMW item = {};
  item.pszText = text;
  item.cchTextMax = 512;
  SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  return text;
}

Journey* waiting = nullptr;

}  // namespace

Journey::Journey(standin::HostOptions options)
    : web(disk.makeFolder(L"webs\\my site")),
      host(std::move(options), web, disk.makeFolder(L"themes")) {
  makeTemplates(disk);
  registry.setString(HKEY_CURRENT_USER, std::wstring(ownSettings) + L"DWT Folders",
                     disk / L"templates", disk / L"templates");
  registry.setString(HKEY_CURRENT_USER, std::wstring(ownSettings) + L"Settings", L"Logging", L"1");
}

Journey::~Journey() {
  addIn.reset();
  CoFreeUnusedLibraries();
}

void Journey::start() {
  REQUIRE(registered_.outcome() == S_OK);
  CLSID classId = {};
  REQUIRE(CLSIDFromProgID(L"DWT.DWTemplate", &classId) == S_OK);
  REQUIRE(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IDTExtensibility2,
                           reinterpret_cast<void**>(addIn.put())) == S_OK);
  CHECK(addIn->OnConnection(host.application(), atStartup, nullptr, nullptr) == S_OK);
  CHECK(addIn->OnStartupComplete(nullptr) == S_OK);
}

void Journey::finish(RemoveMode mode) {
  CHECK(addIn->OnBeginShutdown(nullptr) == S_OK);
  CHECK(addIn->OnDisconnection(mode, nullptr) == S_OK);
  addIn.reset();
}

void Journey::visit(std::function<void(HWND)> script) {
  script_ = std::move(script);
  modal.onDialog(browserCaption, [this](HWND browser) {
    browser_ = browser;
    waiting = this;
    SetTimer(nullptr, 0, 10, onTimer);
  });
  REQUIRE(host.click(copyToWeb));
}

void Journey::copy(const std::wstring& title) {
  visit([this, title](HWND browser) { copyIn(browser, title); });
}

// The listing lets messages through: to wait for its end in one of them would stop it.
void CALLBACK Journey::onTimer(HWND, UINT, UINT_PTR timer, DWORD) {
  const HWND browser = waiting->browser_;
  if (!isEnabled(browser, IDC_QUILLET_SELECT) || !IsWindowEnabled(browser)) return;
  KillTimer(nullptr, timer);
  waiting->script_(browser);
}

void Journey::copyIn(HWND browser, const std::wstring& title) {
  const HWND list = GetDlgItem(browser, IDC_QUILLET_LIST);
  titles_.clear();
  for (int row = 0; row < ListView_GetItemCount(list); ++row) {
    titles_.push_back(rowText(list, row));
    if (titles_.back() == title)
      ListView_SetItemState(list, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  }
  modal.answer(IDYES);
  press(browser, IDOK);
  // A copy that went wrong leaves the window open, and the test must go on.
  leftOpen_ = IsWindow(browser) && IsWindowVisible(browser);
  if (leftOpen_) press(browser, IDCANCEL);
}
