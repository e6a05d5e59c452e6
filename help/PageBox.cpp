#include "help/PageBox.h"

#include <commdlg.h>

#include "common/errors.h"
#include "common/forms/Form.h"
#include "common/paths.h"
#include "help/local_page.h"
#include "help/references.h"

namespace help {
namespace {

// A print job that is given up unless it comes to its end.
class PrintJob {
 public:
  PrintJob() = default;
  ~PrintJob() {
    if (printer_) AbortDoc(printer_);
  }
  PrintJob(const PrintJob&) = delete;
  PrintJob& operator=(const PrintJob&) = delete;

  // False when the user cancels a dialog of the printer's own, such as one for a file.
  bool begin(HDC printer, const std::wstring& name) {
    DOCINFOW document = {};
    document.cbSize = sizeof document;
    document.lpszDocName = name.c_str();
    if (StartDocW(printer, &document) <= 0) {
      const DWORD code = GetLastError();
      if (code == ERROR_CANCELLED || code == ERROR_PRINT_CANCELLED) return false;
      throw errors::fromSystemCode(code);
    }
    printer_ = printer;
    return true;
  }
  bool leaf(bool begins) { return (begins ? StartPage(printer_) : EndPage(printer_)) > 0; }
  void end() { EndDoc(std::exchange(printer_, nullptr)); }

 private:
  HDC printer_ = nullptr;
};

}  // namespace

PageBox::PageBox(forms::Form& form, int id)
    : Control(form, id), class_(className, windowProcedure) {
  view_.onPicture = [this](const std::wstring& address) { return pictures_.at(address); };
  view_.onLink = [this](const std::wstring& link) { followLink(link); };
}

PageBox::~PageBox() {
  if (hwnd() && IsWindow(hwnd())) SetWindowLongPtrW(hwnd(), GWLP_USERDATA, 0);
}

void PageBox::onAttached() {
  RECT client;
  GetClientRect(hwnd(), &client);
  if (!view_.create(hwnd(), client)) throw Error(errors::cannotCreateObject);
  SetWindowLongPtrW(hwnd(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

void PageBox::show(const std::wstring& file) {
  file_ = file;
  pictures_.begin(file);
  view_.show(pageOf(file));
}

std::wstring PageBox::title() const { return forms::windowText(view_.handle()); }

void PageBox::print() {
  PRINTDLGW dialog = {};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = form().hwnd();
  dialog.Flags = PD_RETURNDC | PD_NOPAGENUMS | PD_NOSELECTION | PD_USEDEVMODECOPIESANDCOLLATE;
  if (!PrintDlgW(&dialog)) {
    if (CommDlgExtendedError() == 0) return;
    throw Error(errors::deviceUnavailable, L"There is no printer to print on.");
  }
  const handles::Global mode(dialog.hDevMode);
  const handles::Global names(dialog.hDevNames);
  const handles::DeviceContext printer(dialog.hDC);
  PrintJob job;
  if (!job.begin(printer.get(), title())) return;
  bool whole = true;
  view_.print(printer.get(), [&](bool begins) { return whole = job.leaf(begins); });
  if (!whole) throw errors::fromLastError();
  job.end();
}

void PageBox::followLink(const std::wstring& link) {
  if (isOutside(link)) {  // Not run by tests: it opens a program.
    modCommon::ShellOpen(link, {});
    return;
  }
  if (const auto file = fileBeside(file_, link); file && onLink) onLink(*file);
}

LRESULT CALLBACK PageBox::windowProcedure(HWND window, UINT message, WPARAM wParam,
                                          LPARAM lParam) noexcept {
  auto* box = reinterpret_cast<PageBox*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (box && message == WM_SIZE)
    MoveWindow(box->view_.handle(), 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
  if (box && message == WM_SETFOCUS) SetFocus(box->view_.handle());
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace help
