// A running host in one object, for programs and tests:
//
//   standin::Host host({}, web.path(), themes.path());
//   addin->OnConnection(host.application(), ...);
//   host.faults().refuse(L"WebFiles.Add", L"No.");
//   host.options().absentFileIsError = true;
//   host.click(L"Dynamic Web Templates Online...");
//
// The web and the themes are folders on disk; without one for the web none is open. Faults.h tells
// what calls can be made to fail, HostOptions.h what can be switched at any time. A click fires the
// entry's event.
//
// It lives on one thread, the one that made it. Its objects may outlive it; their menus are then
// empty and no web is open.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/model/Application.h"
#include "host/model/Explorer.h"
#include "host/model/HostOptions.h"
#include "host/model/menus.h"

namespace standin {

class Host {
 public:
  explicit Host(HostOptions options = {}, std::wstring webFolder = {},
                std::wstring themesFolder = {});
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  IDispatch* application() const noexcept { return application_.get(); }  // borrowed
  Session& session() const noexcept { return *session_; }
  const SharedSession& sharedSession() const noexcept { return session_; }
  HostOptions& options() const noexcept { return session_->options; }
  Faults& faults() const noexcept { return session_->faults; }

  void openWeb(std::wstring folder);
  void closeWeb();
  // How many of the host's objects somebody still holds, the standing ones (menus) included.
  long liveObjects() const noexcept { return session_->liveObjects; }

  CommandBars& commandBars() const noexcept { return application_->commandBars(); }
  // The first control in the bars and menus, by identifier, or by its tag or its caption as read;
  // null when there is none.
  CommandBarControl* control(long id) const;
  CommandBarControl* control(std::wstring_view tagOrCaption) const;
  CommandBarButton* button(std::wstring_view tagOrCaption) const;
  // The captions of a pop-up's entries, with their accelerators.
  std::vector<std::wstring> captions(long popupId = templatesMenuId) const;
  // A further button at the end of a pop-up.
  CommandBarButton& addEntry(long popupId, long id, std::wstring caption);
  void clearEntries(long popupId = templatesMenuId);

  // As the user does it. False when there is no such entry; `cancelled` gets the entry's answer.
  bool click(std::wstring_view tagOrCaption, bool* cancelled = nullptr) const;

 private:
  SharedSession session_;
  ComPtr<Application> application_;
  std::optional<ExplorerRegistration> explorer_;
};

}  // namespace standin
