#include "addin/DWTemplate.h"

#include <vector>

#include "addin/ClipboardKeeper.h"
#include "addin/accelerator.h"
#include "addin/button_face.h"
#include "addin/commands.h"
#include "addin/owner.h"
#include "addin/resource.h"
#include "common/handles.h"
#include "common/letter_case.h"
#include "common/message.h"
#include "common/module.h"
#include "common/report.h"

namespace {

constexpr long menuBarType = 1;
constexpr long menuOfEntries = 31252;
constexpr long anchorOfCopyToWeb = 7121;
constexpr long anchorOfDWTOnline = 7127;
constexpr wchar_t copyToWeb[] = L"Browse/Copy Dynamic Web Template to Web...";
constexpr wchar_t dwtOnline[] = L"Dynamic Web Templates Online...";

constexpr long plainButton = static_cast<long>(HostControlType::button);
constexpr long iconAndCaption = 3;
constexpr long hostShutsDown = 0;

constexpr int attemptsToPaste = 10;
constexpr DWORD pauseBetween = 10;  // milliseconds

// The host application is let go with the last connection: later, when the module is unloaded, it
// would be too late to release it.
LONG connections = 0;

// The local handler of the class's procedures.
template <class Body>
void quietly(std::wstring_view procedure, Body&& body) noexcept {
  try {
    body();
  } catch (...) {
    modCommon::reportModuleError(procedure, errors::current(), L"DWTemplate");
  }
}

// Marks that the host is asked, for as long as it lives.
class Asking {
 public:
  explicit Asking(bool& flag) noexcept : flag_(flag) { flag_ = true; }
  ~Asking() { flag_ = false; }
  Asking(const Asking&) = delete;
  Asking& operator=(const Asking&) = delete;

 private:
  bool& flag_;
};

// Its grey is the button face's, for a host that takes nothing but the bitmap.
handles::Gdi loadFace(int resource) {
  return handles::Gdi(LoadImageW(module::instance(), MAKEINTRESOURCEW(resource), IMAGE_BITMAP, 0, 0,
                                 LR_LOADMAP3DCOLORS | LR_CREATEDIBSECTION));
}

ControlKey keyOf(const com::Variant& value, bool isIdentifier) {
  return isIdentifier ? ControlKey::ofId(value.number()) : ControlKey::ofTag(value.text());
}

bool matches(const HostControl& control, const ControlKey& key) {
  return key.id ? control.id() == *key.id : control.tag() == key.tag;
}

bool opensMenu(const HostControl& control) {
  const long type = control.type();
  return type == static_cast<long>(HostControlType::popup) ||
         type == static_cast<long>(HostControlType::buttonPopup) ||
         type == static_cast<long>(HostControlType::splitButtonPopup);
}

// The 1-based place behind the anchor, or at the end; nothing when there is no anchor and the end
// will not do.
std::optional<long> positionBehind(const HostControl& parent, const ControlKey& anchor,
                                   bool append) {
  std::optional<long> behind;
  long count = 0;
  parent.visitControls([&](const HostControl& control) {
    ++count;
    if (matches(control, anchor)) behind = control.index() + 1;
    return !behind;
  });
  if (!behind && append) behind = count + 1;
  return behind;
}

void tellNoWebIsOpen() {
  std::wstring title = module::title;
  quietly(L"tellNoWebIsOpen", [&] { title = hostApplication().name(); });
  showMessage(ownerOfWindows(), L"No web is currently open.", MB_ICONINFORMATION, title);
}

// The host takes the face from the clipboard at once or not at all, and programs that watch the
// clipboard open it as soon as there is something new.
void pasteFace(const HostControl& button, HBITMAP picture, ClipboardKeeper& clipboard) {
  if (!clipboard.offer(buttonFace(picture))) return;
  for (int attempt = 1;; ++attempt) {
    try {
      button.pasteFace();
      return;
    } catch (const Error&) {
      if (attempt == attemptsToPaste) throw;
    }
    Sleep(pauseBetween);
    if (!clipboard.holdsOffer() && !clipboard.offer(buttonFace(picture))) return;
  }
}

}  // namespace

DWTemplate::DWTemplate() noexcept { InterlockedIncrement(&connections); }

DWTemplate::~DWTemplate() {
  if (InterlockedDecrement(&connections) == 0) hostApplication() = HostApplication();
}

ComPtr<DWTemplate> DWTemplate::make() { return ComPtr<DWTemplate>::adopt(new DWTemplate); }

HRESULT DWTemplate::OnConnection(IDispatch* Application, long, IDispatch*, SAFEARRAY**) noexcept {
  const ComPtr<DWTemplate> self(this);
  IDTExtensibility2_OnConnection(Application);
  return S_OK;
}

HRESULT DWTemplate::OnDisconnection(long RemoveMode, SAFEARRAY**) noexcept {
  const ComPtr<DWTemplate> self(this);
  IDTExtensibility2_OnDisconnection(RemoveMode);
  return S_OK;
}

HRESULT DWTemplate::OnAddInsUpdate(SAFEARRAY**) noexcept {
  IDTExtensibility2_OnAddInsUpdate();
  return S_OK;
}

HRESULT DWTemplate::OnStartupComplete(SAFEARRAY**) noexcept {
  IDTExtensibility2_OnStartupComplete();
  return S_OK;
}

HRESULT DWTemplate::OnBeginShutdown(SAFEARRAY**) noexcept {
  IDTExtensibility2_OnBeginShutdown();
  return S_OK;
}

void DWTemplate::IDTExtensibility2_OnConnection(IDispatch* Application) noexcept {
  // The user's data is taken aside and put back once for both faces.
  ClipboardKeeper keeper;
  ClipboardKeeper* const former = std::exchange(clipboard_, clipboard_ ? clipboard_ : &keeper);
  quietly(L"IDTExtensibility2_OnConnection", [&] {
    hostApplication() = HostApplication(com::Dispatch(ComPtr<IDispatch>(Application)));
    m_btnCopyToWeb = {};
    m_btnDWTOnline = {};

    const auto bar = hostApplication().commandBars().activeMenuBar();
    if (!bar || bar->type() != menuBarType) return;
    m_btnCopyToWeb = menuButton(bar, anchorOfCopyToWeb, copyToWeb, IDB_COPYTOWEB,
                                &DWTemplate::m_btnCopyToWeb_Click);
    // One entry without the other would promise what cannot be finished.
    if (!m_btnCopyToWeb.control) return;
    m_btnDWTOnline = menuButton(bar, anchorOfDWTOnline, dwtOnline, IDB_DWTONLINE,
                                &DWTemplate::m_btnDWTOnline_Click);
  });
  clipboard_ = former;
}

MenuButton DWTemplate::menuButton(const std::optional<HostCommandBar>& bar, long anchor,
                                  const std::wstring& caption, int picture, Click click) {
  const handles::Gdi face = loadFace(picture);
  MenuButton button;
  button.control = CreateFPMenuItem(bar, menuOfEntries, true, anchor, true, caption, caption,
                                    static_cast<HBITMAP>(face.get()), true, plainButton, false);
  if (!button.control) return button;
  button.events = ButtonEvents(button.control->object().get(),
                               [this, click](IDispatch* control, VARIANT_BOOL* cancelDefault) {
                                 // The window behind the click may outlast the connection.
                                 const ComPtr<DWTemplate> self(this);
                                 (this->*click)(control, cancelDefault);
                               });
  return button;
}

void DWTemplate::IDTExtensibility2_OnDisconnection(long RemoveMode) noexcept {
  const MenuButton copyButton = std::move(m_btnCopyToWeb);
  const MenuButton onlineButton = std::move(m_btnDWTOnline);
  m_btnCopyToWeb = {};
  m_btnDWTOnline = {};
  // An entry that cannot even tell its tag must not keep the other one in the menu.
  for (const MenuButton* button : {&copyButton, &onlineButton}) {
    quietly(L"IDTExtensibility2_OnDisconnection", [&] {
      if (!button->control) throw Error(errors::objectNotSet);
      const std::wstring tag = button->control->tag();
      const bool handled = RemoveAddInCommandBarButton(RemoveMode, tag);
      if (handled && tag.empty()) button->control->remove();
    });
    if (!button->control) return;  // without the first entry there is no second
  }
}

std::optional<HostControl> DWTemplate::CreateFPMenuItem(
    const std::optional<HostCommandBar>& cbar, const com::Variant& cbpval, bool bcbpid,
    const com::Variant& cbcval, bool bcbcid, const std::wstring& sTag, const std::wstring& sCaption,
    HBITMAP pic, bool bAppend, long nType, bool bGroup) noexcept {
  std::optional<HostControl> item;
  quietly(L"CreateFPMenuItem", [&] {
    if (!cbar) return;
    item = cbar->find(ControlKey::ofTag(sTag));
    if (item) return;

    const auto parent = cbar->find(keyOf(cbpval, bcbpid));
    if (!parent) {
      showMessage(ownerOfWindows(),
                  L"The menu item could not be created. The Quillet will not be available.",
                  MB_ICONINFORMATION, L"Dynamic Web Template Browser");
      return;
    }
    if (!opensMenu(*parent)) return;

    const auto position = positionBehind(*parent, keyOf(cbcval, bcbcid), bAppend);
    if (!position) return;
    item = newMenuItem(*parent, *position, sTag, sCaption, pic, nType, bGroup);
  });
  return item;
}

std::optional<HostControl> DWTemplate::newMenuItem(const HostControl& parent, long position,
                                                   const std::wstring& sTag,
                                                   const std::wstring& sCaption, HBITMAP pic,
                                                   long nType, bool bGroup) {
  const auto item = parent.add(nType, sTag, position);
  if (!item) return std::nullopt;
  try {
    item->setTag(sTag);
    item->setCaption(AddAcceleratorKey(parent, sCaption));
    item->setBeginGroup(bGroup);
    if (pic && nType == plainButton) {
      item->setStyle(iconAndCaption);
      SetButtonFace(*item, pic);
    }
  } catch (...) {
    // A half-made entry that nobody answers must not stay in the menu.
    quietly(L"newMenuItem", [&] { item->remove(); });
    throw;
  }
  return item;
}

std::wstring DWTemplate::AddAcceleratorKey(const HostControl& bar, const std::wstring& caption) {
  std::wstring result = caption;
  quietly(L"AddAcceleratorKey", [&] {
    std::vector<std::wstring> captions;
    bar.visitControls([&](const HostControl& control) {
      captions.push_back(control.caption());
      return true;
    });
    result = accelerator::add(captions, caption);
  });
  return result;
}

void DWTemplate::SetButtonFace(const HostControl& button, HBITMAP picture) noexcept {
  quietly(L"SetButtonFace", [&] {
    ClipboardKeeper own;
    pasteFace(button, picture, clipboard_ ? *clipboard_ : own);
  });
}

bool DWTemplate::RemoveAddInCommandBarButton(long RemoveMode,
                                             const std::wstring& ctl_key) noexcept {
  bool handled = false;
  quietly(L"RemoveAddInCommandBarButton", [&] {
    // This generation forgets temporary entries by itself, and is past being asked.
    if (RemoveMode == hostShutsDown && text::beginsIgnoringCase(hostApplication().version(), L"6."))
      return;
    // A search for no tag at all would find the host's own first entry.
    if (!ctl_key.empty())
      if (const auto control = hostApplication().commandBars().findByTag(ctl_key))
        control->remove();
    handled = true;
  });
  return handled;
}

bool DWTemplate::isWebOpen() {
  const Asking asking(asking_);
  return hostApplication().activeWeb().has_value();
}

void DWTemplate::m_btnCopyToWeb_Click(IDispatch*, VARIANT_BOOL*) noexcept {
  quietly(L"m_btnCopyToWeb_Click", [&] {
    if (commands::bringOpenWindowToFront() || asking_) return;
    if (isWebOpen())
      commands::browseTemplates(hostApplication(), ownerOfWindows());
    else
      tellNoWebIsOpen();
  });
}

void DWTemplate::m_btnDWTOnline_Click(IDispatch*, VARIANT_BOOL* CancelDefault) noexcept {
  quietly(L"m_btnDWTOnline_Click", [&] {
    if (commands::bringOpenWindowToFront() || asking_) return;
    if (!isWebOpen()) {
      tellNoWebIsOpen();
      return;
    }
    const auto result = commands::openOnlineCatalogue(hostApplication(), ownerOfWindows());
    if (result == commands::OnlineResult::browseDownloads && m_btnCopyToWeb.control)
      m_btnCopyToWeb_Click(m_btnCopyToWeb.control->object().get(), CancelDefault);
  });
}
