#include "bench/BareWindow.h"

#include <commctrl.h>
#include <olectl.h>

#include <algorithm>

#include "bench/measure.h"
#include "catalogue/resource.h"
#include "common/ansi.h"
#include "common/visual_styles.h"

namespace bench {
namespace {

// The names that the dialog's resource has for its two places.
constexpr wchar_t pictureClass[] = L"QuilletPictureBox";
constexpr wchar_t splitterClass[] = L"QuilletSplitter";
constexpr wchar_t pageClass[] = L"QuilletWebBrowser";

void registerClass(const wchar_t* name, WNDPROC procedure) {
  WNDCLASSW description = {};
  description.lpfnWndProc = procedure;
  description.hInstance = GetModuleHandleW(nullptr);
  description.lpszClassName = name;
  if (!RegisterClassW(&description)) throw CannotRun{"a window class is taken"};
}

ComPtr<IStream> streamOver(const std::string& path) {
  const handles::File file(CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                       OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  const DWORD size = GetFileSize(file.get(), nullptr);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
  DWORD done = 0;
  ReadFile(file.get(), GlobalLock(memory), size, &done, nullptr);
  GlobalUnlock(memory);
  ComPtr<IStream> stream;
  CreateStreamOnHGlobal(memory, TRUE, stream.put());
  return stream;
}

void setScrollRange(HWND window, int bar, int length, int page) {
  SCROLLINFO info = {};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
  info.nMax = std::max(0, length - 1);
  info.nPage = static_cast<UINT>(page);
  SetScrollInfo(window, bar, &info, TRUE);
}

}  // namespace

void paintAll(HWND window) {
  RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

BareWindow::BareWindow(const std::wstring& folder) {
  registerClass(pictureClass, pictureProcedure);
  registerClass(splitterClass, DefWindowProcW);
  registerClass(pageClass, DefWindowProcW);
  make();
  fill(text::toAnsi(folder));
}

BareWindow::~BareWindow() {
  page_.reset();
  DestroyWindow(window_);
  UnregisterClassW(pictureClass, GetModuleHandleW(nullptr));
  UnregisterClassW(splitterClass, GetModuleHandleW(nullptr));
  UnregisterClassW(pageClass, GetModuleHandleW(nullptr));
}

HWND BareWindow::list() const noexcept { return GetDlgItem(window_, IDC_QUILLET_LIST); }

void BareWindow::make() {
  const VisualStyles styles;
  window_ = CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_QUILLET), nullptr,
                               dialogProcedure, reinterpret_cast<LPARAM>(this));
  if (!window_) throw CannotRun{"the bare dialog cannot be made"};
  constexpr DWORD style =
      LVS_EX_FULLROWSELECT | LVS_EX_INFOTIP | LVS_EX_LABELTIP | LVS_EX_DOUBLEBUFFER;
  ListView_SetExtendedListViewStyleEx(list(), style, style);
  wchar_t title[] = L"Title";
  LVCOLUMNW column = {};
  column.mask = LVCF_TEXT | LVCF_WIDTH;
  column.pszText = title;
  column.cx = 100;
  SendMessageW(list(), LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
  for (const wchar_t* percent : {L"50%", L"75%", L"100%"})
    SendDlgItemMessageW(window_, IDC_QUILLET_ZOOM, CB_ADDSTRING, 0,
                        reinterpret_cast<LPARAM>(percent));
  SendDlgItemMessageW(window_, IDC_QUILLET_ZOOM, CB_SETCURSEL, 2, 0);
  page_.emplace(GetDlgItem(window_, IDC_QUILLET_PAGE));
  page_->navigate(L"about:blank");
  ShowWindow(window_, SW_SHOWNORMAL);
  UpdateWindow(window_);
}

void BareWindow::fill(const std::string& folder) {
  SendMessageW(list(), WM_SETREDRAW, FALSE, 0);
  scan(folder, [this](const BareTemplate& found) { add(found); });
  SendMessageW(list(), WM_SETREDRAW, TRUE, 0);
  ListView_SetColumnWidth(list(), 0, LVSCW_AUTOSIZE);
  ListView_SetColumnWidth(list(), 0, LVSCW_AUTOSIZE_USEHEADER);
  if (!templates_.empty()) select(0);
  paintAll(window_);
}

void BareWindow::add(const BareTemplate& found) {
  templates_.push_back(found);
  std::wstring title = text::fromAnsi(found.title);
  LVITEMW item = {};
  item.mask = LVIF_TEXT;
  item.iItem = count() - 1;
  item.pszText = title.data();
  SendMessageW(list(), LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

void BareWindow::select(int row) {
  constexpr UINT state = LVIS_SELECTED | LVIS_FOCUSED;
  ListView_SetItemState(list(), row, state, state);
  show(row);
}

void BareWindow::show(int row) {
  const BareTemplate& listed = templates_[static_cast<std::size_t>(row)];
  GetFileAttributesA(listed.file.c_str());
  const BareTemplate found = describe(listed.folder, listed.file.substr(listed.folder.size()));
  SetDlgItemTextA(window_, IDC_QUILLET_DESC, found.description.c_str());
  SetDlgItemTextA(window_, IDC_QUILLET_PATH, found.folder.c_str());
  SetDlgItemTextA(window_, IDC_QUILLET_TITLE, found.title.c_str());
  loadPicture(found.preview);
  paintAll(window_);
}

void BareWindow::loadPicture(const std::string& file) {
  ComPtr<IPicture> decoded;
  OleLoadPicture(streamOver(file).get(), 0, FALSE, IID_IPicture,
                 reinterpret_cast<void**>(decoded.put()));
  OLE_HANDLE handle = 0;
  BITMAP bitmap = {};
  if (!decoded || FAILED(decoded->get_Handle(&handle)) ||
      !GetObjectW(reinterpret_cast<HGDIOBJ>(static_cast<ULONG_PTR>(handle)), sizeof bitmap,
                  &bitmap))
    throw CannotRun{"the bare window cannot show " + file};
  size_ = {bitmap.bmWidth, bitmap.bmHeight};
  const HWND place = GetDlgItem(window_, IDC_QUILLET_PICTURE);
  const handles::WindowContext context(place);
  picture_ = handles::Gdi(CreateCompatibleBitmap(context.get(), size_.cx, size_.cy));
  const handles::DeviceContext memory(CreateCompatibleDC(context.get()));
  const HGDIOBJ former = SelectObject(memory.get(), picture_.get());
  const RECT all = {0, 0, size_.cx, size_.cy};
  FillRect(memory.get(), &all, GetSysColorBrush(COLOR_WINDOW));
  OLE_XSIZE_HIMETRIC width = 0;
  OLE_YSIZE_HIMETRIC height = 0;
  decoded->get_Width(&width);
  decoded->get_Height(&height);
  decoded->Render(memory.get(), 0, 0, size_.cx, size_.cy, 0, height, width, -height, nullptr);
  SelectObject(memory.get(), former);
  RECT client;
  GetClientRect(place, &client);
  setScrollRange(place, SB_HORZ, size_.cx, client.right);
  setScrollRange(place, SB_VERT, size_.cy, client.bottom);
  InvalidateRect(place, nullptr, FALSE);
}

void BareWindow::paintPicture(HDC target) const {
  RECT client;
  GetClientRect(GetDlgItem(window_, IDC_QUILLET_PICTURE), &client);
  FillRect(target, &client, GetSysColorBrush(COLOR_WINDOW));
  const handles::DeviceContext memory(CreateCompatibleDC(target));
  const HGDIOBJ former = SelectObject(memory.get(), picture_.get());
  BitBlt(target, std::max<int>(0, (client.right - size_.cx) / 2),
         std::max<int>(0, (client.bottom - size_.cy) / 2), size_.cx, size_.cy, memory.get(), 0, 0,
         SRCCOPY);
  SelectObject(memory.get(), former);
}

INT_PTR CALLBACK BareWindow::dialogProcedure(HWND window, UINT message, WPARAM, LPARAM lParam) {
  if (message != WM_INITDIALOG) return FALSE;
  SetWindowLongPtrW(GetDlgItem(window, IDC_QUILLET_PICTURE), GWLP_USERDATA, lParam);
  return TRUE;
}

LRESULT CALLBACK BareWindow::pictureProcedure(HWND window, UINT message, WPARAM wParam,
                                              LPARAM lParam) {
  const auto* const self =
      reinterpret_cast<const BareWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message == WM_ERASEBKGND) return 1;
  if (message == WM_PRINTCLIENT && self) {
    self->paintPicture(reinterpret_cast<HDC>(wParam));
    return 0;
  }
  if (message != WM_PAINT || !self) return DefWindowProcW(window, message, wParam, lParam);
  PAINTSTRUCT painting;
  self->paintPicture(BeginPaint(window, &painting));
  EndPaint(window, &painting);
  return 0;
}

}  // namespace bench
