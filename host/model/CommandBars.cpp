#include "host/model/CommandBars.h"

#include <olectl.h>

#include <algorithm>

#include "host/model/ClickPoint.h"
#include "host/model/faces.h"

namespace standin {
namespace {

const std::vector<Parameter> findOnBars = {{L"Type", Takes::number, true},
                                           {L"Id", Takes::number, true},
                                           {L"Tag", Takes::text, true},
                                           {L"Visible", Takes::boolean, true}};

std::vector<Parameter> findOnBar() {
  auto parameters = findOnBars;
  parameters.push_back({L"Recursive", Takes::boolean, true});
  return parameters;
}

const MemberTable controlMembers(
    L"CommandBarControl",
    {{L"Type", Kind::get, {}, call<&CommandBarControl::getType>},
     {L"Id", Kind::get, {}, call<&CommandBarControl::getId>},
     {L"Index", Kind::get, {}, call<&CommandBarControl::getIndex>},
     {L"Tag", Kind::get, {}, call<&CommandBarControl::getTag>},
     {L"Tag", Kind::put, {{L"Value", Takes::text}}, call<&CommandBarControl::putTag>},
     {L"Caption", Kind::get, {}, call<&CommandBarControl::getCaption>},
     {L"Caption", Kind::put, {{L"Value", Takes::text}}, call<&CommandBarControl::putCaption>},
     {L"BeginGroup", Kind::get, {}, call<&CommandBarControl::getBeginGroup>},
     {L"BeginGroup",
      Kind::put,
      {{L"Value", Takes::boolean}},
      call<&CommandBarControl::putBeginGroup>},
     {L"Enabled", Kind::get, {}, call<&CommandBarControl::getEnabled>},
     {L"Enabled", Kind::put, {{L"Value", Takes::boolean}}, call<&CommandBarControl::putEnabled>},
     {L"Visible", Kind::get, {}, call<&CommandBarControl::getVisible>},
     {L"Visible", Kind::put, {{L"Value", Takes::boolean}}, call<&CommandBarControl::putVisible>},
     {L"Parameter", Kind::get, {}, call<&CommandBarControl::getParameter>},
     {L"Parameter", Kind::put, {{L"Value", Takes::text}}, call<&CommandBarControl::putParameter>},
     {L"TooltipText", Kind::get, {}, call<&CommandBarControl::getToolTip>},
     {L"TooltipText", Kind::put, {{L"Value", Takes::text}}, call<&CommandBarControl::putToolTip>},
     {L"Delete",
      Kind::method,
      {{L"Temporary", Takes::boolean, true}},
      call<&CommandBarControl::remove>}});

const MemberTable popupMembers(
    L"CommandBarPopup",
    {{L"Controls", Kind::get, {}, call<&CommandBarPopup::getControls>},
     {L"CommandBar", Kind::get, {}, call<&CommandBarPopup::getCommandBar>}},
    &controlMembers);

const MemberTable buttonMembers(
    L"CommandBarButton",
    {{L"Style", Kind::get, {}, call<&CommandBarButton::getStyle>},
     {L"Style", Kind::put, {{L"Value", Takes::number}}, call<&CommandBarButton::putStyle>},
     {L"PasteFace", Kind::method, {}, call<&CommandBarButton::pasteFace>}},
    &controlMembers);

const MemberTable barMembers(L"CommandBar",
                             {{L"Type", Kind::get, {}, call<&CommandBar::getType>},
                              {L"Controls", Kind::get, {}, call<&CommandBar::getControls>},
                              {L"FindControl", Kind::method, findOnBar(),
                               call<&CommandBar::findControl>}});

const MemberTable controlsMembers(
    L"CommandBarControls",
    {{L"Count", Kind::get, {}, call<&CommandBarControls::getCount>},
     {L"Item", Kind::get, {{L"Index", Takes::numberOrText}}, call<&CommandBarControls::getItem>},
     {L"Add",
      Kind::method,
      {{L"Type", Takes::number, true},
       {L"Id", Takes::number, true},
       {L"Parameter", Takes::text, true},
       {L"Before", Takes::number, true},
       {L"Temporary", Takes::boolean, true}},
      call<&CommandBarControls::add>}});

const MemberTable barsMembers(
    L"CommandBars",
    {{L"ActiveMenuBar", Kind::get, {}, call<&CommandBars::getActiveMenuBar>},
     {L"Count", Kind::get, {}, call<&CommandBars::getCount>},
     {L"Item", Kind::get, {{L"Index", Takes::numberOrText}}, call<&CommandBars::getItem>},
     {L"FindControl", Kind::method, findOnBars, call<&CommandBars::findControl>}});

// The control or bar that an index from 1 or a name means.
template <class T, class NameOf>
com::Variant itemOf(const std::vector<ComPtr<T>>& items, const Arguments& arguments,
                    NameOf nameOf) {
  if (arguments.isText(0)) {
    for (const auto& item : items)
      if (sameName(nameOf(*item.get()), arguments.text(0))) return objectValue(item);
  } else {
    const long index = arguments.number(0);
    if (index >= 1 && static_cast<std::size_t>(index) <= items.size())
      return objectValue(items[static_cast<std::size_t>(index) - 1]);
  }
  throw Refusal{DISP_E_BADINDEX, L"There is no item of that index or name."};
}

}  // namespace

bool isPopupType(long type) {
  return type == typePopup || type == typeButtonPopup || type == typeSplitButtonPopup;
}

std::wstring plainCaption(std::wstring_view caption) {
  std::wstring plain;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == L'&' && ++i == caption.size()) break;
    plain += caption[i];
  }
  return plain;
}

ControlSearch ControlSearch::from(const Arguments& arguments) {
  return {arguments.number(0), arguments.number(1), arguments.text(2), arguments.boolean(3)};
}

// --- CommandBarControl

CommandBarControl::CommandBarControl(SharedSession session, long controlType, long controlId,
                                     std::wstring text)
    : AutomationObject(std::move(session)),
      type(controlType),
      id(controlId),
      caption(std::move(text)) {}

const MemberTable& CommandBarControl::members() const { return controlMembers; }

bool CommandBarControl::matches(const ControlSearch& search) const {
  return (search.type == 0 || search.type == type) && (search.id == 0 || search.id == id) &&
         (search.tag.empty() || search.tag == tag) && (!search.visibleOnly || visible);
}

void CommandBarControl::requireAlive() const {
  if (!bar) throw Refusal{E_FAIL, L"The control has been deleted."};
}

com::Variant CommandBarControl::getType(const Arguments&) const { return type; }
com::Variant CommandBarControl::getId(const Arguments&) const { return id; }

com::Variant CommandBarControl::getIndex(const Arguments&) {
  requireAlive();
  const auto& all = bar->controls();
  const auto here =
      std::find_if(all.begin(), all.end(), [&](const auto& one) { return one.get() == this; });
  return static_cast<long>(here - all.begin()) + 1;
}

com::Variant CommandBarControl::getTag(const Arguments&) {
  requireAlive();
  return tag;
}
com::Variant CommandBarControl::putTag(const Arguments& arguments) {
  requireAlive();
  tag = arguments.text(0);
  return {};
}
com::Variant CommandBarControl::getCaption(const Arguments&) {
  requireAlive();
  return caption;
}
com::Variant CommandBarControl::putCaption(const Arguments& arguments) {
  requireAlive();
  caption = arguments.text(0);
  session()->menuChanged();
  return {};
}
com::Variant CommandBarControl::getBeginGroup(const Arguments&) {
  requireAlive();
  return beginGroup;
}
com::Variant CommandBarControl::putBeginGroup(const Arguments& arguments) {
  requireAlive();
  beginGroup = arguments.boolean(0);
  session()->menuChanged();
  return {};
}
com::Variant CommandBarControl::getEnabled(const Arguments&) {
  requireAlive();
  return enabled;
}
com::Variant CommandBarControl::putEnabled(const Arguments& arguments) {
  requireAlive();
  enabled = arguments.boolean(0);
  session()->menuChanged();
  return {};
}
com::Variant CommandBarControl::getVisible(const Arguments&) {
  requireAlive();
  return visible;
}
com::Variant CommandBarControl::putVisible(const Arguments& arguments) {
  requireAlive();
  visible = arguments.boolean(0);
  session()->menuChanged();
  return {};
}
com::Variant CommandBarControl::getParameter(const Arguments&) {
  requireAlive();
  return parameter;
}
com::Variant CommandBarControl::putParameter(const Arguments& arguments) {
  requireAlive();
  parameter = arguments.text(0);
  return {};
}
com::Variant CommandBarControl::getToolTip(const Arguments&) {
  requireAlive();
  return toolTip;
}
com::Variant CommandBarControl::putToolTip(const Arguments& arguments) {
  requireAlive();
  toolTip = arguments.text(0);
  return {};
}

com::Variant CommandBarControl::remove(const Arguments&) {
  requireAlive();
  bar->erase(this);
  session()->menuChanged();
  return {};
}

// --- CommandBar

CommandBar::CommandBar(SharedSession session, long barType, std::wstring barName)
    : AutomationObject(std::move(session)), type(barType), name(std::move(barName)) {}

CommandBar::~CommandBar() {
  for (const auto& control : controls_) control->bar = nullptr;
}

const MemberTable& CommandBar::members() const { return barMembers; }

CommandBarControl* CommandBar::insert(ComPtr<CommandBarControl> control, std::size_t position) {
  control->bar = this;
  const auto place = static_cast<std::ptrdiff_t>(std::min(position, controls_.size()));
  return controls_.insert(controls_.begin() + place, std::move(control))->get();
}

void CommandBar::erase(CommandBarControl* control) {
  control->bar = nullptr;
  std::erase_if(controls_, [&](const auto& one) { return one.get() == control; });
}

CommandBarControl* CommandBar::find(const ControlSearch& search, bool recursive) const {
  for (const auto& control : controls_) {
    if (control->matches(search)) return control.get();
    CommandBarPopup* popup = recursive ? control->asPopup() : nullptr;
    if (popup)
      if (CommandBarControl* hit = popup->menu().find(search, true)) return hit;
  }
  return nullptr;
}

com::Variant CommandBar::getType(const Arguments&) const { return type; }

com::Variant CommandBar::getControls(const Arguments&) {
  return objectValue(make<CommandBarControls>(session(), ComPtr<CommandBar>(this)));
}

com::Variant CommandBar::findControl(const Arguments& arguments) {
  CommandBarControl* hit = find(ControlSearch::from(arguments), arguments.boolean(4));
  return hit ? com::Variant(static_cast<IDispatch*>(hit)) : session()->nothing();
}

// --- CommandBarControls

CommandBarControls::CommandBarControls(SharedSession session, ComPtr<CommandBar> bar)
    : AutomationObject(std::move(session)), bar_(std::move(bar)) {}

const MemberTable& CommandBarControls::members() const { return controlsMembers; }

com::Variant CommandBarControls::getCount(const Arguments&) {
  return static_cast<long>(bar_->controls().size());
}

com::Variant CommandBarControls::getItem(const Arguments& arguments) {
  return itemOf(bar_->controls(), arguments,
                [](const CommandBarControl& control) { return plainCaption(control.caption); });
}

com::Variant CommandBarControls::add(const Arguments& arguments) {
  const long type = arguments.number(0, typeButton);
  if (type != typePopup && (type < 1 || type > 4))
    throw Refusal{E_INVALIDARG, L"A control of that type cannot be added."};
  const auto count = static_cast<long>(bar_->controls().size());
  const long before = arguments.number(3, count + 1);
  const bool pastEnd = before == count + 1 && arguments.has(3);
  if (before < 1 || before > count + 1 || (pastEnd && session()->options.beforePastEndRefused))
    throw Refusal{E_INVALIDARG, L"There is no control to put it before."};
  auto control = makeControl(session(), type, arguments.number(1, 1), L"");
  control->parameter = arguments.text(2);
  control->temporary = arguments.boolean(4);
  bar_->insert(control, static_cast<std::size_t>(before) - 1);
  session()->menuChanged();
  return objectValue(control);
}

ComPtr<CommandBarControl> makeControl(const SharedSession& session, long type, long id,
                                      std::wstring caption) {
  if (type == typeButton)
    return ComPtr<CommandBarControl>(new CommandBarButton(session, id, std::move(caption)));
  if (isPopupType(type))
    return ComPtr<CommandBarControl>(new CommandBarPopup(session, type, id, std::move(caption)));
  return ComPtr<CommandBarControl>(new CommandBarControl(session, type, id, std::move(caption)));
}

// --- CommandBarPopup

CommandBarPopup::CommandBarPopup(SharedSession session, long controlType, long controlId,
                                 std::wstring text)
    : CommandBarControl(std::move(session), controlType, controlId, std::move(text)),
      menu_(make<CommandBar>(AutomationObject::session(), 2L, plainCaption(caption))) {}

const MemberTable& CommandBarPopup::members() const { return popupMembers; }

com::Variant CommandBarPopup::getControls(const Arguments&) {
  requireAlive();
  return objectValue(make<CommandBarControls>(session(), menu_));
}

com::Variant CommandBarPopup::getCommandBar(const Arguments&) {
  requireAlive();
  return objectValue(menu_);
}

// --- CommandBarButton

CommandBarButton::CommandBarButton(SharedSession session, long controlId, std::wstring text)
    : CommandBarControl(std::move(session), typeButton, controlId, std::move(text)),
      clicks_(new ClickPoint(this)) {}

CommandBarButton::~CommandBarButton() { clicks_->forgetButton(); }

const MemberTable& CommandBarButton::members() const { return buttonMembers; }

bool CommandBarButton::fireClick(CommandBarButton& clicked) {
  const ComPtr<ClickPoint> alive = clicks_;
  return alive->fire(clicked);
}

std::size_t CommandBarButton::listeners() const { return clicks_->count(); }

STDMETHODIMP CommandBarButton::QueryInterface(REFIID iid, void** object) {
  if (!object || iid != IID_IConnectionPointContainer)
    return AutomationObject::QueryInterface(iid, object);
  *object = static_cast<IConnectionPointContainer*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP CommandBarButton::EnumConnectionPoints(IEnumConnectionPoints** points) {
  if (points) *points = nullptr;
  return E_NOTIMPL;
}

STDMETHODIMP CommandBarButton::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
  if (!point) return E_POINTER;
  *point = nullptr;
  if (iid != buttonEvents) return CONNECT_E_NOCONNECTION;
  const HRESULT watched = session()->faults.watchedBare(L"events FindConnectionPoint");
  if (FAILED(watched)) return watched;
  *point = clicks_.get();
  clicks_->AddRef();
  return S_OK;
}

com::Variant CommandBarButton::getStyle(const Arguments&) {
  requireAlive();
  return style_;
}

com::Variant CommandBarButton::putStyle(const Arguments& arguments) {
  requireAlive();
  const long style = arguments.number(0);
  if (style < 0 || style > 3) throw Refusal{E_INVALIDARG, L"There is no such button style."};
  style_ = style;
  session()->menuChanged();
  return {};
}

com::Variant CommandBarButton::pasteFace(const Arguments&) {
  requireAlive();
  handles::Gdi face = clipboardFace(session()->options.maskedFaces);
  if (!face) throw Refusal{E_FAIL, L"The clipboard holds no picture."};
  face_ = std::move(face);
  session()->menuChanged();
  return {};
}

// --- CommandBars

CommandBars::CommandBars(SharedSession session) : AutomationObject(std::move(session)) {}

const MemberTable& CommandBars::members() const { return barsMembers; }

CommandBarControl* CommandBars::find(const ControlSearch& search) const {
  for (const auto& bar : bars)
    if (CommandBarControl* hit = bar->find(search, true)) return hit;
  return nullptr;
}

std::vector<CommandBarControl*> CommandBars::allControls() const {
  std::vector<CommandBarControl*> result;
  std::vector<const CommandBar*> waiting;
  for (const auto& bar : bars) waiting.push_back(bar.get());
  for (std::size_t i = 0; i < waiting.size(); ++i)
    for (const auto& control : waiting[i]->controls()) {
      result.push_back(control.get());
      if (const CommandBarPopup* popup = control->asPopup()) waiting.push_back(&popup->menu());
    }
  return result;
}

bool CommandBars::click(CommandBarButton& button) const {
  std::vector<ComPtr<CommandBarButton>> sharing;
  for (CommandBarControl* control : allControls())
    if (control->asButton() && control->id == button.id && control->tag == button.tag)
      sharing.emplace_back(control->asButton());
  bool cancel = false;
  for (const auto& one : sharing) cancel = one->fireClick(button) || cancel;
  return cancel;
}

com::Variant CommandBars::getActiveMenuBar(const Arguments&) {
  return menuBar ? objectValue(menuBar) : session()->nothing();
}

com::Variant CommandBars::getCount(const Arguments&) const {
  return static_cast<long>(bars.size());
}

com::Variant CommandBars::getItem(const Arguments& arguments) const {
  return itemOf(bars, arguments, [](const CommandBar& bar) { return bar.name; });
}

com::Variant CommandBars::findControl(const Arguments& arguments) {
  CommandBarControl* hit = find(ControlSearch::from(arguments));
  return hit ? com::Variant(static_cast<IDispatch*>(hit)) : session()->nothing();
}

}  // namespace standin
