#include "addin/commands.h"

#include <memory>

#include "catalogue/frmQuillet.h"
#include "common/log.h"

namespace commands {

void browseTemplates(HostApplication& host, HWND owner) {
  const auto window = std::make_unique<frmQuillet>(host);
  window->ShowQuillet(false, owner);
}

OnlineResult openOnlineCatalogue(HostApplication&, HWND) {
  modCommon::InitLog();
  modCommon::WriteLog(L"The online catalogue is not available yet.");
  return OnlineResult::closed;
}

}  // namespace commands
