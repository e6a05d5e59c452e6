// The application object that add-ins are connected with, and its web window.
#pragma once

#include "host/model/AutomationObject.h"
#include "host/model/CommandBars.h"

namespace standin {

class WebWindow : public AutomationObject {
 public:
  explicit WebWindow(SharedSession session) : AutomationObject(std::move(session)) {}

  com::Variant getCaption(const Arguments&);
  com::Variant activate(const Arguments&);

 protected:
  const MemberTable& members() const override;
};

// What the window's title bar says.
std::wstring windowCaption(const Session& session);

class Application : public AutomationObject {
 public:
  explicit Application(SharedSession session);

  CommandBars& commandBars() { return *bars_.get(); }

  com::Variant getName(const Arguments&);
  com::Variant getVersion(const Arguments&);
  com::Variant getCommandBars(const Arguments&);
  com::Variant getActiveWeb(const Arguments&);
  com::Variant getActiveWebWindow(const Arguments&);
  com::Variant getThemes(const Arguments&);
  com::Variant makeAbs(const Arguments&);

 protected:
  const MemberTable& members() const override;

 private:
  ComPtr<CommandBars> bars_;
};

}  // namespace standin
