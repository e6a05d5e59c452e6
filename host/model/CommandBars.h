// The host's command bars: bars, pop-ups and buttons, with the buttons' click event.
#pragma once

#include <ocidl.h>

#include <string>
#include <vector>

#include "common/handles.h"
#include "host/model/AutomationObject.h"

namespace standin {

// The dispinterface of a button's events, with Click as its member 1.
inline constexpr GUID buttonEvents = {
    0x000C0351, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

enum ControlType : long {
  typeButton = 1,
  typePopup = 10,
  typeButtonPopup = 12,
  typeSplitButtonPopup = 13,
};

bool isPopupType(long type);

class CommandBar;
class CommandBarButton;
class CommandBarPopup;

// What FindControl looks for; a text of nothing and an absent number match everything.
struct ControlSearch {
  long type = 0;
  long id = 0;
  std::wstring tag;
  bool visibleOnly = false;

  static ControlSearch from(const Arguments& arguments);  // [Type], [Id], [Tag], [Visible]
};

class CommandBarControl : public AutomationObject {
 public:
  CommandBarControl(SharedSession session, long controlType, long controlId, std::wstring text);

  const long type;
  const long id;
  std::wstring tag, caption, parameter, toolTip;
  bool beginGroup = false, enabled = true, visible = true, temporary = false;
  CommandBar* bar = nullptr;  // null once it is deleted

  virtual CommandBarButton* asButton() { return nullptr; }
  virtual CommandBarPopup* asPopup() { return nullptr; }
  bool matches(const ControlSearch& search) const;

  com::Variant getType(const Arguments&) const;
  com::Variant getId(const Arguments&) const;
  com::Variant getIndex(const Arguments&);
  com::Variant getTag(const Arguments&);
  com::Variant putTag(const Arguments&);
  com::Variant getCaption(const Arguments&);
  com::Variant putCaption(const Arguments&);
  com::Variant getBeginGroup(const Arguments&);
  com::Variant putBeginGroup(const Arguments&);
  com::Variant getEnabled(const Arguments&);
  com::Variant putEnabled(const Arguments&);
  com::Variant getVisible(const Arguments&);
  com::Variant putVisible(const Arguments&);
  com::Variant getParameter(const Arguments&);
  com::Variant putParameter(const Arguments&);
  com::Variant getToolTip(const Arguments&);
  com::Variant putToolTip(const Arguments&);
  com::Variant remove(const Arguments&);

 protected:
  const MemberTable& members() const override;
  void requireAlive() const;
};

class CommandBar : public AutomationObject {
 public:
  CommandBar(SharedSession session, long barType, std::wstring barName);
  ~CommandBar() override;

  const long type;
  const std::wstring name;

  const std::vector<ComPtr<CommandBarControl>>& controls() const { return controls_; }
  // Puts it before the 0-based position; past the end appends.
  CommandBarControl* insert(ComPtr<CommandBarControl> control, std::size_t position);
  void erase(CommandBarControl* control);
  CommandBarControl* find(const ControlSearch& search, bool recursive) const;

  com::Variant getType(const Arguments&) const;
  com::Variant getControls(const Arguments&);
  com::Variant findControl(const Arguments&);

 protected:
  const MemberTable& members() const override;

 private:
  std::vector<ComPtr<CommandBarControl>> controls_;
};

class CommandBarControls : public AutomationObject {
 public:
  CommandBarControls(SharedSession session, ComPtr<CommandBar> bar);

  com::Variant getCount(const Arguments&);
  com::Variant getItem(const Arguments&);
  com::Variant add(const Arguments&);

 protected:
  const MemberTable& members() const override;

 private:
  ComPtr<CommandBar> bar_;
};

class CommandBarPopup : public CommandBarControl {
 public:
  CommandBarPopup(SharedSession session, long controlType, long controlId, std::wstring text);

  CommandBar& menu() const { return *menu_.get(); }
  CommandBarPopup* asPopup() override { return this; }

  com::Variant getControls(const Arguments&);
  com::Variant getCommandBar(const Arguments&);

 protected:
  const MemberTable& members() const override;

 private:
  ComPtr<CommandBar> menu_;
};

class CommandBarButton : public CommandBarControl, public IConnectionPointContainer {
 public:
  CommandBarButton(SharedSession session, long controlId, std::wstring text);
  ~CommandBarButton() override;

  CommandBarButton* asButton() override { return this; }
  HBITMAP face() const { return static_cast<HBITMAP>(face_.get()); }  // null when it has none
  long style() const { return style_; }
  // Tells this button's listeners; true when one of them asks to cancel the host's own action.
  bool fireClick(CommandBarButton& clicked);
  std::size_t listeners() const;

  STDMETHOD(QueryInterface)(REFIID iid, void** object) override;
  STDMETHOD_(ULONG, AddRef)() override { return AutomationObject::AddRef(); }
  STDMETHOD_(ULONG, Release)() override { return AutomationObject::Release(); }
  STDMETHOD(EnumConnectionPoints)(IEnumConnectionPoints** points) override;
  STDMETHOD(FindConnectionPoint)(REFIID iid, IConnectionPoint** point) override;

  com::Variant getStyle(const Arguments&);
  com::Variant putStyle(const Arguments&);
  com::Variant pasteFace(const Arguments&);

 protected:
  const MemberTable& members() const override;

 private:
  class ClickPoint;
  long style_ = 0;
  handles::Gdi face_;
  ComPtr<ClickPoint> clicks_;
};

class CommandBars : public AutomationObject {
 public:
  explicit CommandBars(SharedSession session);

  std::vector<ComPtr<CommandBar>> bars;
  ComPtr<CommandBar> menuBar;  // may be null

  CommandBarControl* find(const ControlSearch& search) const;
  // Every control of every bar and pop-up.
  std::vector<CommandBarControl*> allControls() const;
  // What the user's click does: buttons of equal Id and Tag share their clicks.
  bool click(CommandBarButton& button) const;

  com::Variant getActiveMenuBar(const Arguments&);
  com::Variant getCount(const Arguments&) const;
  com::Variant getItem(const Arguments&) const;
  com::Variant findControl(const Arguments&);

 protected:
  const MemberTable& members() const override;
};

// A new control of a type that Controls.Add takes, or a pop-up of any kind.
ComPtr<CommandBarControl> makeControl(const SharedSession& session, long type, long id,
                                      std::wstring caption);

// A caption as the user reads it: without accelerator marks.
std::wstring plainCaption(std::wstring_view caption);

}  // namespace standin
