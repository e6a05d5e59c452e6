#include "common/report.h"

#include <vector>

#include "tests/support/DebugOutput.h"
#include "tests/support/text_output.h"

TEST_CASE("each kind of error line reads as it always has") {
  const DebugOutput output;
  modCommon::setLoggingFlag(1);
  const Error error(75, L"No access");
  modCommon::reportFormError(L"cmdGo_Click", L"frmOne", error);
  modCommon::reportFormErrorText(L"cmdGo_Click", L"frmOne", error);
  modCommon::reportErrorOfForm(L"cmdGo_Click", L"frmOne", error);
  modCommon::reportModuleError(L"Go", error);
  modCommon::reportModuleError(L"Go", error, L"modOther");
  modCommon::reportHandledError(L"cmdGo_Click", L"frmOne", error);
  modCommon::reportMenuError(L"CreatePopupMenu", L"frmOne", error);
  modCommon::setLoggingFlag(0);
  CHECK(output.messages() ==
        std::vector<std::wstring>{
            L"ERROR in procedure cmdGo_Click of Form frmOne. Error : 75\tNo access",
            L"ERROR in procedure cmdGo_Click of Form frmOne. Error : No access",
            L"Error 75 (No access) in procedure cmdGo_Click of Form frmOne",
            L"Error 75 (No access) in procedure Go of Module modCommon",
            L"Error 75 (No access) in procedure Go of Module modOther",
            L"Handled Error : No access in procedure cmdGo_Click of Form frmOne",
            L"Error in CreatePopupMenu procedure of frmOne. Error description :No access",
        });
}
