#include "common/report.h"

#include <string>

namespace modCommon {

void reportFormError(std::wstring_view procedure, std::wstring_view form,
                     const Error& error) noexcept {
  try {
    WriteLog(std::wstring(L"ERROR in procedure ")
                 .append(procedure)
                 .append(L" of Form ")
                 .append(form)
                 .append(L". Error : ")
                 .append(std::to_wstring(error.number()))
                 .append(L"\t")
                 .append(error.description()));
  } catch (...) {
    // Reporting an error must not raise another.
  }
}

void reportModuleError(std::wstring_view procedure, const Error& error,
                       std::wstring_view module) noexcept {
  try {
    WriteLog(std::wstring(L"Error ")
                 .append(std::to_wstring(error.number()))
                 .append(L" (")
                 .append(error.description())
                 .append(L") in procedure ")
                 .append(procedure)
                 .append(L" of Module ")
                 .append(module));
  } catch (...) {
    // Reporting an error must not raise another.
  }
}

}  // namespace modCommon
