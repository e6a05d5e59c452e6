// The host's older automation object: programs make one by the name "FrontPage.Explorer.<version>"
// and bring the host to the front with it.
#pragma once

#include <windows.h>

#include <string>

#include "host/model/AutomationObject.h"

namespace standin {

class Explorer final : public AutomationObject {
 public:
  using AutomationObject::AutomationObject;

  com::Variant bringToTop(const Arguments& arguments);

 protected:
  const MemberTable& members() const override;
};

// While it lives, the object can be made from within this process, and its name, with the version
// of the session's options, stands in the machine's registry, where the system looks for it.
class ExplorerRegistration {
 public:
  explicit ExplorerRegistration(const SharedSession& session);
  ~ExplorerRegistration();
  ExplorerRegistration(const ExplorerRegistration&) = delete;
  ExplorerRegistration& operator=(const ExplorerRegistration&) = delete;

 private:
  std::wstring progId_;
  DWORD cookie_ = 0;
};

}  // namespace standin
