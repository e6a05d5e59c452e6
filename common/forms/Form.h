// Modal windows and dialogs, made from dialog resources.
//
// A form is bound to its window from the first message to the last. Layout, tab order, captions,
// mnemonics and tool tips live in the dialog's resources, in dialog units:
//  - dialogs are numbered in steps of 100 (1000, 1100, ...), their controls from dialog + 10 on;
//    the default and cancel buttons are IDOK and IDCANCEL;
//  - the string with a control's number is its tool tip; the tips of IDOK and IDCANCEL are the
//    strings dialog + 1 and dialog + 2.
// The font is the system's message font, whatever the resource says.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/handles.h"
#include "common/message.h"
#include "common/report.h"

namespace forms {

class Control;
class ModalScope;
class WindowScope;

// The edges of the window that a control keeps its distance to when the window is resized. Left and
// right together stretch it. A form that is split by a Splitter says which side of it a control is
// on: there the edge beside the splitter goes with it.
enum Edges : unsigned {
  left = 1,
  top = 2,
  right = 4,
  bottom = 8,
  beforeSplit = 16,
  afterSplit = 32,
};

class Form {
 public:
  // `name` is the form's name in log lines; `dialog` its dialog resource; `helpTopic` what F1
  // shows.
  Form(std::wstring name, int dialog, const wchar_t* helpTopic = nullptr);
  virtual ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  HWND hwnd() const noexcept { return window_; }
  int dialog() const noexcept { return dialog_; }
  const std::wstring& name() const noexcept { return name_; }
  std::wstring caption() const;

  // A message box over this form, titled with its caption.
  int message(std::wstring_view text, UINT style) const noexcept;

  // Keyboard handling before the dialog's own; true when the message is done with.
  virtual bool preTranslate(MSG&) { return false; }

  // How far the splitter stands to the right of its designed place, in pixels. Neither side is made
  // narrower than half of what it was designed for.
  LONG split() const noexcept;
  void setSplit(LONG wanted) noexcept;

 protected:
  // Shows a help topic over `owner`, a window of this form or of one that stands over it; false
  // leaves it to the form below.
  virtual bool openHelp(const wchar_t* /*topic*/, HWND /*owner*/) { return false; }

  // Shows the window over `owner`, with every other window of the thread disabled, and returns
  // after unload(). It opens centred on its owner; Form_Load may place it elsewhere. Raises an
  // Error (429) when the window cannot be made. A form is shown once.
  void showModal(HWND owner);

  // Closes the form: Form_Unload runs and the window disappears, at once or, inside
  // yieldToMessages, when the work that yielded has returned. Its controls live until showModal
  // returns.
  void unload() noexcept;
  bool isUnloaded() const noexcept { return unloaded_; }
  // On the screen before Form_Load has ended, for a load that takes its time.
  void showNow() noexcept;

  // What boxes stand over: this window, or its owner before this one has come and after it has
  // gone.
  HWND boxOwner() const noexcept;

  // Events, in the order of a form's life. What fails in one becomes the form's log line.
  virtual void Form_Load() {}
  virtual void Form_Activate() {}   // once, when the window is first on the screen
  virtual void Form_Resize() {}     // after the controls have followed their edges
  virtual void Form_QueryUnload();  // the close box: presses the cancel button by default
  virtual void Form_Unload() {}

  // Messages that the form itself does not know. A result other than false is the answer.
  virtual bool onMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);

  // Which edges a control keeps; the designed size is the smallest the window can be made,
  // unless the screen is smaller still.
  void keep(const Control& target, unsigned edges);

  // Runs the body of an event handler. An error inside becomes the form's log line, the handler
  // ends and the form stays.
  template <class Body>
  void handle(const wchar_t* procedure, Body&& body) noexcept {
    try {
      std::forward<Body>(body)();
    } catch (...) {
      modCommon::reportFormError(procedure, name_, errors::current());
    }
  }

 private:
  friend class Control;
  friend class ModalScope;
  friend class WindowScope;
  friend void dispatchToForms(MSG& message);
  friend void yieldToMessages();

  struct Anchor {
    const Control* control;
    unsigned edges;
    RECT designed;
  };

  static INT_PTR CALLBACK dialogProcedure(HWND, UINT, WPARAM, LPARAM) noexcept;
  INT_PTR onDialogMessage(UINT message, WPARAM wParam, LPARAM lParam);
  INT_PTR answer(LRESULT result) noexcept;
  INT_PTR onInitDialog();
  void onCommand(int id, WORD code, HWND from);
  INT_PTR onNotify(NMHDR& header);
  void measureDesign();
  void setIcons() noexcept;
  void attachControls();
  void addToolTips();
  static RECT placeOf(HWND control) noexcept;
  static RECT placeOf(const Anchor& anchor, LONG wider, LONG taller, LONG split) noexcept;
  void layOut() noexcept;
  void centreOn(HWND owner) noexcept;
  SIZE smallestSize() const noexcept;
  void fitScreen() noexcept;
  void leaveScreen() noexcept;
  void runLoop();
  bool takes(MSG& message) noexcept;
  bool takesHelpKey(const MSG& message) noexcept;
  bool reaches(HWND window) const noexcept;
  HWND nextStop(HWND from) const noexcept;
  void giveFocus(HWND control) noexcept;
  void putAway(HWND control, bool hidden) noexcept;
  INT_PTR onActivate(bool active) noexcept;
  void tellControls(UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  Control* control(int id) const noexcept;
  Control* control(HWND window) const noexcept;

  std::wstring name_;
  int dialog_;
  const wchar_t* helpTopic_;
  HWND window_ = nullptr;
  HWND toolTips_ = nullptr;
  ModalScope* modal_ = nullptr;
  SIZE designedUnits_ = {};
  SIZE designedClient_ = {};
  SIZE designedWindow_ = {};
  HWND keptFocus_ = nullptr;  // while another window is active
  bool focusMoved_ = false;
  bool activateDue_ = false;
  bool loaded_ = false;  // what has not been loaded is not unloaded either
  bool wasShown_ = false;
  bool unloaded_ = false;
  std::vector<Control*> controls_;
  std::vector<Anchor> anchors_;
  LONG split_ = 0;  // as wanted; a small window may have no room for it
  LONG splitRoomBefore_ = 0;
  LONG splitRoomAfter_ = 0;
};

// The text of a window or control.
std::wstring windowText(HWND window);

// Handles what is in the thread's queue now, and returns: window events of long runs. Keyboard
// navigation of the form on top works as in its own loop.
void yieldToMessages();

// The form on top and what stands over it, to the front of the screen; false when none is shown.
bool bringToFront() noexcept;

// The wait cursor while it lives, also when the mouse moves meanwhile. Scopes nest.
class WaitCursor {
 public:
  WaitCursor() noexcept;
  ~WaitCursor();
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
};

}  // namespace forms
