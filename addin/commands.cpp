#include "addin/commands.h"

#include "common/log.h"

namespace commands {

void browseTemplates(HostApplication&, HWND) {
  modCommon::InitLog();
  modCommon::WriteLog(L"The template browser is not there yet.");
}

OnlineResult openOnlineCatalogue(HostApplication&, HWND) {
  modCommon::InitLog();
  modCommon::WriteLog(L"The online catalogue is not there yet.");
  return OnlineResult::closed;
}

}  // namespace commands
