#include "addin/commands.h"

#include <memory>

#include "catalogue/frmQuillet.h"
#include "common/forms/Form.h"
#include "online/frmDWTOnline.h"

namespace commands {

bool bringOpenWindowToFront() noexcept { return forms::bringToFront(); }

void browseTemplates(HostApplication& host, HWND owner) {
  const auto window = std::make_unique<frmQuillet>(host);
  window->ShowQuillet(false, owner);
}

OnlineResult openOnlineCatalogue(HostApplication& host, HWND owner) {
  const auto window = std::make_unique<frmDWTOnline>(host);
  const short reason = window->RunOnline(false, owner);
  return reason == frmDWTOnline::showBrowser ? OnlineResult::browseDownloads : OnlineResult::closed;
}

}  // namespace commands
