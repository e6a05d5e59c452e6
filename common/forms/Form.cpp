#include "common/forms/Form.h"

#include <windowsx.h>

#include <algorithm>

#include "common/forms/controls.h"
#include "common/forms/dialog_template.h"
#include "common/forms/resource.h"
#include "common/visual_styles.h"

namespace forms {
namespace {

constexpr UINT activateMessage = WM_APP + 1;

// The forms on the screen, the one on top last; and how deep the calls of yieldToMessages are.
struct Showing {
  std::vector<Form*> forms;
  int yields = 0;
  int waits = 0;
};

Showing& showing() noexcept {
  static Showing state;
  return state;
}

void initCommonControls() {
  INITCOMMONCONTROLSEX request = {sizeof request, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
  InitCommonControlsEx(&request);
}

SIZE sizeOf(const RECT& rect) { return {rect.right - rect.left, rect.bottom - rect.top}; }

RECT workAreaOf(HWND window) noexcept {
  MONITORINFO monitor = {};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
  return monitor.rcWork;
}

// The string with that number; empty when the module has none.
std::wstring loadText(int id) {
  const wchar_t* text = nullptr;
  const int length =
      LoadStringW(module::instance(), static_cast<UINT>(id), reinterpret_cast<LPWSTR>(&text), 0);
  return {text ? text : L"", static_cast<std::size_t>(length)};
}

bool isKey(const MSG& message) noexcept {
  return message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
}

// A key that means the whole form, whichever control has the focus. Any other one goes with the
// control for which it was typed.
bool isForTheForm(const MSG& key) noexcept {
  switch (key.message) {
    case WM_SYSKEYDOWN:
    case WM_SYSKEYUP:
    case WM_SYSCHAR:
      return true;
    default:
      return key.message == WM_KEYDOWN && key.wParam == VK_ESCAPE;
  }
}

bool isWithin(HWND outer, HWND window) noexcept {
  return window && (window == outer || IsChild(outer, window));
}

}  // namespace

// While it lives, every other window of the thread is disabled, as for the system's own modal
// dialogs; the host may have more than one frame. Afterwards they are as they were.
class ModalScope {
 public:
  explicit ModalScope(Form& form) : form_(form), active_(GetActiveWindow()), focus_(GetFocus()) {
    showing().forms.push_back(&form);  // may fail, and nothing would be enabled again
    EnumThreadWindows(GetCurrentThreadId(), disable, reinterpret_cast<LPARAM>(this));
  }

  ~ModalScope() {
    release();
    std::erase(showing().forms, &form_);
  }

  ModalScope(const ModalScope&) = delete;
  ModalScope& operator=(const ModalScope&) = delete;

  // The others are enabled before the form goes, so that the system finds one to activate.
  void release() noexcept {
    for (const HWND window : disabled_) EnableWindow(window, TRUE);
    disabled_.clear();
  }

  void activateFormer() noexcept {
    if (IsWindow(active_) && IsWindowEnabled(active_)) SetForegroundWindow(active_);
    if (IsWindow(focus_) && IsWindowEnabled(GetAncestor(focus_, GA_ROOT))) SetFocus(focus_);
  }

 private:
  static BOOL CALLBACK disable(HWND window, LPARAM self) noexcept {
    try {
      if (IsWindowVisible(window) && IsWindowEnabled(window)) {
        reinterpret_cast<ModalScope*>(self)->disabled_.push_back(window);
        EnableWindow(window, FALSE);
      }
      return TRUE;
    } catch (...) {  // Not run by tests: no memory.
      return FALSE;
    }
  }

  Form& form_;
  HWND active_;
  HWND focus_;
  std::vector<HWND> disabled_;
};

// Whatever happens, no window outlives the form that it is bound to.
class WindowScope {
 public:
  explicit WindowScope(Form& form) noexcept : form_(form) {}
  ~WindowScope() {
    form_.leaveScreen();
    if (form_.window_) DestroyWindow(form_.window_);
    // A load that failed may have shown a box, which took the focus along.
    if (!form_.wasShown_) form_.modal_->activateFormer();
    form_.modal_ = nullptr;
  }
  WindowScope(const WindowScope&) = delete;
  WindowScope& operator=(const WindowScope&) = delete;

 private:
  Form& form_;
};

// One message of the queue, by way of the form on top: its own keys, the dialog's keys, the window.
void dispatchToForms(MSG& message) {
  Form* const top = showing().forms.empty() ? nullptr : showing().forms.back();
  const HWND form = top ? top->hwnd() : nullptr;
  if (form && (message.hwnd == form || IsChild(form, message.hwnd))) {
    // The system's search for a mnemonic begins at the key's window, passes over what is hidden or
    // disabled, and ends only when it is back: such a window it would never find again.
    bool reached = top->reaches(message.hwnd);
    if (!reached && isKey(message)) {
      if (!isForTheForm(message)) return;
      message.hwnd = form;
      reached = true;
    }
    if (reached &&
        (top->takesHelpKey(message) || top->takes(message) || IsDialogMessageW(form, &message)))
      return;
  }
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

void yieldToMessages() {
  struct Depth {
    Depth() noexcept { ++showing().yields; }
    ~Depth() { --showing().yields; }
  } const depth;
  Form* const top = showing().forms.empty() ? nullptr : showing().forms.back();
  // Far cheaper than to look for a message of each kind in turn. Windows 2000 does not know of raw
  // input, and would answer the question for it with nothing.
  if (HIWORD(GetQueueStatus(QS_ALLINPUT & ~QS_RAWINPUT)) == 0) return;
  const DWORD began = GetTickCount();
  MSG message;
  while (!(top && top->unloaded_) && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      if (top) top->unload();
      return;
    }
    dispatchToForms(message);
    // What arrives meanwhile waits for the next time: the work must not starve.
    if (static_cast<LONG>(message.time - began) > 0) return;
  }
}

bool bringToFront() noexcept {
  if (showing().forms.empty()) return false;
  const HWND window = showing().forms.back()->hwnd();
  if (IsWindowVisible(window)) {
    if (IsIconic(window)) ShowWindow(window, SW_RESTORE);
    SetForegroundWindow(GetLastActivePopup(window));
  }
  return true;
}

WaitCursor::WaitCursor() noexcept {
  ++showing().waits;
  SetCursor(LoadCursorW(nullptr, IDC_WAIT));
}

WaitCursor::~WaitCursor() {
  if (--showing().waits == 0) SetCursor(LoadCursorW(nullptr, IDC_ARROW));
}

std::wstring windowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(
      static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

Form::Form(std::wstring name, int dialog, const wchar_t* helpTopic)
    : name_(std::move(name)), dialog_(dialog), helpTopic_(helpTopic) {}

Form::~Form() = default;

std::wstring Form::caption() const { return windowText(window_); }

int Form::message(std::wstring_view text, UINT style) const noexcept {
  std::wstring title;
  try {
    title = caption();
  } catch (...) {  // Not run by tests: no memory.
  }
  return showMessage(boxOwner(), text, style, title);
}

HWND Form::boxOwner() const noexcept {
  return IsWindowVisible(window_) && !unloaded_ ? window_ : GetWindow(window_, GW_OWNER);
}

void Form::showModal(HWND owner) {
  const VisualStyles styles;
  initCommonControls();
  const std::vector<BYTE> resource = loadDialogTemplate(module::instance(), dialog_, messageFont());
  designedUnits_ = dialogUnitsOf(resource);

  ModalScope modal(*this);
  modal_ = &modal;
  const WindowScope window(*this);
  const HWND frame = owner ? GetAncestor(owner, GA_ROOT) : nullptr;
  CreateDialogIndirectParamW(module::instance(),
                             reinterpret_cast<const DLGTEMPLATE*>(resource.data()), frame,
                             dialogProcedure, reinterpret_cast<LPARAM>(this));
  if (!window_) throw Error(errors::cannotCreateObject);
  runLoop();
}

bool Form::takes(MSG& message) noexcept {
  bool taken = false;
  handle(L"Form_KeyDown", [&] { taken = preTranslate(message); });
  return taken;
}

// Before any control, since a page would show the help of the browser. One press, one window: a key
// that is held down repeats itself.
bool Form::takesHelpKey(const MSG& message) noexcept {
  if (!helpTopic_ || message.message != WM_KEYDOWN || message.wParam != VK_F1) return false;
  const std::vector<Form*>& forms = showing().forms;
  handle(L"Form_KeyDown", [&] {
    if (HIWORD(message.lParam) & KF_REPEAT) return;
    auto form = forms.rbegin();
    while (form != forms.rend() && !(*form)->openHelp(helpTopic_, window_)) ++form;
  });
  return true;
}

// Whether the user can get at that part of the form.
bool Form::reaches(HWND window) const noexcept {
  if (!IsWindowVisible(window)) return false;
  for (; window != window_; window = GetAncestor(window, GA_PARENT))
    if (!IsWindowEnabled(window)) return false;
  return IsWindowEnabled(window_) != FALSE;
}

// Where the focus goes from a control that may not keep it; null when there is no other.
HWND Form::nextStop(HWND from) const noexcept {
  const HWND next = GetNextDlgTabItem(window_, from, FALSE);
  return next == from || isWithin(from, next) ? nullptr : next;
}

// By the dialog's own message, so that the default button follows.
void Form::giveFocus(HWND control) noexcept {
  if (control)
    SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
  else
    SetFocus(window_);
}

// What is hidden or disabled would swallow every key. The focus goes to the next control first, or,
// where there is no other, to the form itself afterwards: the dialog would hand it back before.
void Form::putAway(HWND control, bool hidden) noexcept {
  const HWND next = nextStop(control);
  const bool hasFocus = isWithin(control, GetFocus());
  if (hasFocus && next) giveFocus(next);
  if (isWithin(control, keptFocus_)) {
    keptFocus_ = next;
    focusMoved_ = true;
  }
  if (hidden)
    ShowWindow(control, SW_HIDE);
  else
    EnableWindow(control, FALSE);
  if (hasFocus && !next) giveFocus(nullptr);
}

// The dialog gives the focus back to the control that had it, usable or not.
INT_PTR Form::onActivate(bool active) noexcept {
  if (!active) {
    keptFocus_ = isWithin(window_, GetFocus()) ? GetFocus() : nullptr;
    focusMoved_ = false;
    return FALSE;
  }
  const HWND kept = std::exchange(keptFocus_, nullptr);
  if (!std::exchange(focusMoved_, false)) return FALSE;
  giveFocus(kept);
  return answer(0);
}

// The system tells such changes to top-level windows only.
void Form::tellControls(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  for (HWND each = GetWindow(window_, GW_CHILD); each; each = GetWindow(each, GW_HWNDNEXT))
    SendMessageW(each, message, wParam, lParam);
  if (message != WM_SETTINGCHANGE)
    RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void Form::runLoop() {
  if (unloaded_) return;
  showNow();
  PostMessageW(window_, activateMessage, 0, 0);
  MSG message;
  while (!unloaded_) {
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got <= 0) {
      // The host is leaving: its own loop must see the message too.
      PostQuitMessage(got == 0 ? static_cast<int>(message.wParam) : 0);
      unload();
      return;
    }
    dispatchToForms(message);
    if (!std::exchange(activateDue_, false) || unloaded_) continue;
    handle(L"Form_Activate", [this] { Form_Activate(); });
  }
}

void Form::showNow() noexcept {
  if (unloaded_ || IsWindowVisible(window_)) return;
  fitScreen();
  wasShown_ = true;
  ShowWindow(window_, SW_SHOWNORMAL);
  UpdateWindow(window_);
}

void Form::unload() noexcept {
  if (unloaded_) return;
  unloaded_ = true;
  if (loaded_) handle(L"Form_Unload", [this] { Form_Unload(); });
  // A run that yielded is still on the stack: nobody may start another one before it has returned.
  if (showing().yields == 0) leaveScreen();
  PostMessageW(nullptr, WM_NULL, 0, 0);
}

void Form::leaveScreen() noexcept {
  if (!modal_) return;
  modal_->release();
  if (!window_ || !IsWindowVisible(window_)) return;
  const bool wasActive = GetActiveWindow() == window_;
  ShowWindow(window_, SW_HIDE);
  if (wasActive) modal_->activateFormer();
}

void Form::Form_QueryUnload() {
  if (Control* cancel = control(IDCANCEL); cancel && cancel->enabled())
    cancel->onCommand(BN_CLICKED);
  else if (!cancel)
    unload();
}

bool Form::onMessage(UINT, WPARAM, LPARAM, LRESULT&) { return false; }

INT_PTR CALLBACK Form::dialogProcedure(HWND window, UINT message, WPARAM wParam,
                                       LPARAM lParam) noexcept {
  auto* form = reinterpret_cast<Form*>(GetWindowLongPtrW(window, DWLP_USER));
  if (message == WM_INITDIALOG) {
    form = reinterpret_cast<Form*>(lParam);
    form->window_ = window;
    SetWindowLongPtrW(window, DWLP_USER, lParam);
  }
  if (!form) return FALSE;
  try {
    return form->onDialogMessage(message, wParam, lParam);
  } catch (...) {
    modCommon::reportFormError(L"Form_Message", form->name_, errors::current());
    // A window without all of its controls is none.
    if (message == WM_INITDIALOG) DestroyWindow(window);
    return FALSE;
  }
}

INT_PTR Form::answer(LRESULT result) noexcept {
  SetWindowLongPtrW(window_, DWLP_MSGRESULT, result);
  return TRUE;
}

INT_PTR Form::onDialogMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  LRESULT result = 0;
  if (message != WM_INITDIALOG && onMessage(message, wParam, lParam, result)) return answer(result);
  switch (message) {
    case WM_INITDIALOG:
      return onInitDialog();
    case activateMessage:
      // A box that is open over the form may be what dispatches this: the event waits for its end.
      activateDue_ = true;
      return TRUE;
    case WM_COMMAND:
      onCommand(LOWORD(wParam), lParam ? HIWORD(wParam) : static_cast<WORD>(BN_CLICKED),
                reinterpret_cast<HWND>(lParam));
      return TRUE;
    case WM_NOTIFY:
      return onNotify(*reinterpret_cast<NMHDR*>(lParam));
    case WM_DRAWITEM: {
      const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
      Control* const target = wParam ? control(item.hwndItem) : nullptr;  // 0: a menu
      if (!target) return FALSE;
      target->onDraw(item.hDC, item.rcItem);
      return TRUE;
    }
    case WM_ACTIVATE:
      return onActivate(LOWORD(wParam) != WA_INACTIVE);
    case WM_SYSCOLORCHANGE:
    case WM_SETTINGCHANGE:
    case WM_THEMECHANGED:
      tellControls(message, wParam, lParam);
      return FALSE;
    case WM_CLOSE:
      if (!unloaded_) Form_QueryUnload();
      return TRUE;
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) {
        layOut();
        Form_Resize();
      }
      return TRUE;
    case WM_DESTROY:
      // Its owner went and took it along; after an ordinary end there is nothing left to do.
      unload();
      return FALSE;
    case WM_NCDESTROY:
      window_ = nullptr;
      return FALSE;
    case WM_GETMINMAXINFO: {
      auto& limits = *reinterpret_cast<MINMAXINFO*>(lParam);
      const SIZE smallest = smallestSize();
      limits.ptMinTrackSize = {smallest.cx, smallest.cy};
      return answer(0);
    }
    case WM_SETCURSOR:
      if (showing().waits == 0) return FALSE;
      SetCursor(LoadCursorW(nullptr, IDC_WAIT));
      return answer(TRUE);
    default:
      return FALSE;
  }
}

INT_PTR Form::onInitDialog() {
  measureDesign();
  setIcons();
  attachControls();
  addToolTips();
  centreOn(GetWindow(window_, GW_OWNER));
  loaded_ = true;
  handle(L"Form_Load", [this] { Form_Load(); });
  // The dialog chooses the first control unless the form has put the focus somewhere itself.
  return IsChild(window_, GetFocus()) ? FALSE : TRUE;
}

void Form::measureDesign() {
  // Not what the window has got: the system cuts one down that is larger than the screen.
  RECT rect = {0, 0, designedUnits_.cx, designedUnits_.cy};
  MapDialogRect(window_, &rect);
  designedClient_ = sizeOf(rect);
  const LONG_PTR style = GetWindowLongPtrW(window_, GWL_STYLE);
  AdjustWindowRectEx(&rect, static_cast<DWORD>(style), FALSE,
                     static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_EXSTYLE)));
  designedWindow_ = sizeOf(rect);
  // Children are not painted over while the window is sized.
  if (style & WS_THICKFRAME) SetWindowLongPtrW(window_, GWL_STYLE, style | WS_CLIPCHILDREN);
}

// The system keeps these icons for as long as the module is loaded.
void Form::setIcons() noexcept {
  const auto icon = [](int width, int height) {
    return reinterpret_cast<LPARAM>(LoadImageW(module::instance(), MAKEINTRESOURCEW(IDI_QUILLET),
                                               IMAGE_ICON, width, height, LR_SHARED));
  };
  SendMessageW(window_, WM_SETICON, ICON_SMALL,
               icon(GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON)));
  SendMessageW(window_, WM_SETICON, ICON_BIG,
               icon(GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON)));
}

void Form::attachControls() {
  for (Control* each : controls_) {
    each->window_ = GetDlgItem(window_, each->id());
    if (!each->window_) throw Error(errors::cannotCreateObject);
    const int tip =
        each->id() == IDOK || each->id() == IDCANCEL ? dialog_ + each->id() : each->id();
    each->toolTip_ = loadText(tip);
    each->onAttached();
  }
}

void Form::addToolTips() {
  toolTips_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                              WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0, 0, window_, nullptr,
                              module::instance(), nullptr);
  SendMessageW(toolTips_, TTM_SETMAXTIPWIDTH, 0, designedClient_.cx);
  for (const Control* each : controls_) {
    TTTOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = window_;
    tool.uId = reinterpret_cast<UINT_PTR>(each->window_);
    tool.lpszText = LPSTR_TEXTCALLBACKW;
    SendMessageW(toolTips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  }
}

void Form::onCommand(int id, WORD code, HWND from) {
  Control* const target = from ? control(from) : control(id);
  if (target && target->id() != id) {
    target->onChildCommand(id);
    return;
  }
  if (target && target->enabled())
    target->onCommand(code);
  else if (!target && id == IDCANCEL)
    Form_QueryUnload();
}

INT_PTR Form::onNotify(NMHDR& header) {
  if (header.hwndFrom == toolTips_ && header.code == TTN_GETDISPINFOW) {
    // The tool tip control keeps a copy of a text that fits in 80 characters only, so the text
    // lives here until the next one is asked for.
    static std::wstring shown;
    const Control* const target = control(reinterpret_cast<HWND>(header.idFrom));
    shown = target ? target->toolTip() : std::wstring();
    reinterpret_cast<NMTTDISPINFOW&>(header).lpszText = shown.data();
    return TRUE;
  }
  Control* const target = control(static_cast<int>(header.idFrom));
  return target && target->window_ == header.hwndFrom ? answer(target->onNotify(header)) : FALSE;
}

void Form::keep(const Control& target, unsigned edges) {
  anchors_.push_back({&target, edges, placeOf(target.window_)});
  const LONG half = sizeOf(anchors_.back().designed).cx / 2;
  if (edges & beforeSplit) splitRoomBefore_ = half;
  if ((edges & afterSplit) && (edges & left) && (edges & right)) splitRoomAfter_ = half;
}

// In the client area of its parent.
RECT Form::placeOf(HWND control) noexcept {
  RECT place;
  GetWindowRect(control, &place);
  MapWindowPoints(nullptr, GetParent(control), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

// The place of a control in a form that is so much wider and taller than designed.
RECT Form::placeOf(const Anchor& anchor, LONG wider, LONG taller, LONG split) noexcept {
  RECT place = anchor.designed;
  if (anchor.edges & afterSplit) place.left += split;
  if ((anchor.edges & beforeSplit) || ((anchor.edges & afterSplit) && !(anchor.edges & right)))
    place.right += split;
  if (anchor.edges & right) place.right += wider;
  if ((anchor.edges & right) && !(anchor.edges & left)) place.left += wider;
  if (anchor.edges & bottom) place.bottom += taller;
  if ((anchor.edges & bottom) && !(anchor.edges & top)) place.top += taller;
  return place;
}

void Form::layOut() noexcept {
  if (anchors_.empty()) return;
  RECT client;
  GetClientRect(window_, &client);
  const LONG wider = client.right - designedClient_.cx;
  const LONG taller = client.bottom - designedClient_.cy;
  const LONG between = split();
  HDWP batch = BeginDeferWindowPos(static_cast<int>(anchors_.size()));
  for (const Anchor& anchor : anchors_) {
    const HWND window = anchor.control->window_;
    const RECT former = placeOf(window);
    const RECT place = placeOf(anchor, wider, taller, between);
    if (EqualRect(&place, &former)) continue;
    // Nothing is painted anew that need not be: that would flicker.
    const UINT painting = anchor.control->repaintsWhenSized() ? SWP_NOCOPYBITS : 0;
    const SIZE size = sizeOf(place);
    if (batch)
      batch = DeferWindowPos(batch, window, nullptr, place.left, place.top, size.cx, size.cy,
                             SWP_NOZORDER | SWP_NOACTIVATE | painting);
  }
  if (batch) EndDeferWindowPos(batch);
}

LONG Form::split() const noexcept {
  RECT client;
  GetClientRect(window_, &client);
  const LONG most = splitRoomAfter_ + client.right - designedClient_.cx;
  return std::max(-splitRoomBefore_, std::min(split_, most));
}

void Form::setSplit(LONG wanted) noexcept {
  split_ = wanted;
  split_ = split();
  layOut();
  Form_Resize();
}

// The designed size, or what the screen has room for where large letters make that less.
SIZE Form::smallestSize() const noexcept {
  const RECT work = workAreaOf(window_);
  return {std::min(designedWindow_.cx, work.right - work.left),
          std::min(designedWindow_.cy, work.bottom - work.top)};
}

// A window that can be sized gives way to the edges of a small screen instead of reaching over
// them.
void Form::fitScreen() noexcept {
  if (!(GetWindowLongPtrW(window_, GWL_STYLE) & WS_THICKFRAME)) return;
  RECT window;
  GetWindowRect(window_, &window);
  const SIZE size = sizeOf(window);
  const RECT work = workAreaOf(window_);
  const SIZE room = sizeOf(work);
  const SIZE fitting = {std::min(size.cx, room.cx), std::min(size.cy, room.cy)};
  if (fitting.cx < size.cx || fitting.cy < size.cy)
    SetWindowPos(window_, nullptr,
                 std::max(work.left, std::min(window.left, work.right - fitting.cx)),
                 std::max(work.top, std::min(window.top, work.bottom - fitting.cy)), fitting.cx,
                 fitting.cy, SWP_NOZORDER | SWP_NOACTIVATE);
  layOut();  // the system may have cut the window down when it was made
}

void Form::centreOn(HWND owner) noexcept {
  RECT window;
  GetWindowRect(window_, &window);
  const SIZE size = sizeOf(window);
  const bool usable = owner && IsWindowVisible(owner) && !IsIconic(owner);
  const RECT work = workAreaOf(usable ? owner : window_);
  RECT frame = work;
  if (usable) GetWindowRect(owner, &frame);
  const LONG x = (frame.left + frame.right - size.cx) / 2;
  const LONG y = (frame.top + frame.bottom - size.cy) / 2;
  SetWindowPos(window_, nullptr, std::max(work.left, std::min(x, work.right - size.cx)),
               std::max(work.top, std::min(y, work.bottom - size.cy)), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

Control* Form::control(int id) const noexcept {
  for (Control* each : controls_)
    if (each->id() == id) return each;
  return nullptr;
}

Control* Form::control(HWND window) const noexcept {
  for (Control* each : controls_)
    if (each->window_ == window) return each;
  return nullptr;
}

}  // namespace forms
