#include "common/log_switch.h"

#include <windows.h>

#include <oleauto.h>

#include "common/com.h"
#include "common/errors.h"
#include "common/report.h"
#include "common/settings.h"

namespace modCommon {
namespace {

short savedFlag() {
  const com::Bstr saved(settings::GetSetting(settings::general, settings::logging, L"0"));
  short flag = 0;
  const HRESULT result = VarI2FromStr(saved.get(), LOCALE_USER_DEFAULT, 0, &flag);
  if (result == DISP_E_OVERFLOW) throw Error(errors::overflow);
  if (FAILED(result)) throw Error(errors::typeMismatch);
  return flag;
}

}  // namespace

// A setting that is no number leaves the switch as it is.
void InitLog() {
  handle(L"InitLog", [] { setLoggingFlag(savedFlag()); });
  SetLogIndent(0);
}

}  // namespace modCommon
