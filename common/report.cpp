#include "common/report.h"

#include "common/text.h"

#include <string>

namespace modCommon {

void reportFormError(std::wstring_view procedure, std::wstring_view form,
                     const Error& error) noexcept {
  try {
    WriteLog({L"ERROR in procedure ", procedure, L" of Form ", form, L". Error : ",
              text::decimal(error.number()), L"\t", error.description()});
  } catch (...) {
    // Reporting an error must not raise another.
  }
}

void reportModuleError(std::wstring_view procedure, const Error& error,
                       std::wstring_view module) noexcept {
  try {
    WriteLog({L"Error ", text::decimal(error.number()), L" (", error.description(),
              L") in procedure ", procedure, L" of Module ", module});
  } catch (...) {
    // Reporting an error must not raise another.
  }
}

}  // namespace modCommon
