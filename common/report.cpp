#include "common/report.h"

#include "common/text.h"

#include <string>

namespace modCommon {
namespace {

// Reporting an error must not raise another.
std::wstring numberOf(const Error& error) noexcept {
  try {
    return text::decimal(error.number());
  } catch (...) {  // Not run by tests: no memory.
    return {};
  }
}

void reportNumbered(std::wstring_view procedure, std::wstring_view kind, std::wstring_view place,
                    const Error& error) noexcept {
  WriteLog({L"Error ", numberOf(error), L" (", error.description(), L") in procedure ", procedure,
            kind, place});
}

}  // namespace

void reportFormError(std::wstring_view procedure, std::wstring_view form,
                     const Error& error) noexcept {
  WriteLog({L"ERROR in procedure ", procedure, L" of Form ", form, L". Error : ", numberOf(error),
            L"\t", error.description()});
}

void reportFormErrorText(std::wstring_view procedure, std::wstring_view form,
                         const Error& error) noexcept {
  WriteLog(
      {L"ERROR in procedure ", procedure, L" of Form ", form, L". Error : ", error.description()});
}

void reportErrorOfForm(std::wstring_view procedure, std::wstring_view form,
                       const Error& error) noexcept {
  reportNumbered(procedure, L" of Form ", form, error);
}

void reportModuleError(std::wstring_view procedure, const Error& error,
                       std::wstring_view module) noexcept {
  reportNumbered(procedure, L" of Module ", module, error);
}

void reportHandledError(std::wstring_view procedure, std::wstring_view form,
                        const Error& error) noexcept {
  WriteLog(
      {L"Handled Error : ", error.description(), L" in procedure ", procedure, L" of Form ", form});
}

void reportMenuError(std::wstring_view procedure, std::wstring_view form,
                     const Error& error) noexcept {
  WriteLog({L"Error in ", procedure, L" procedure of ", form, L". Error description :",
            error.description()});
}

}  // namespace modCommon
