// How an error becomes a log line. Each kind of line is made here and nowhere else: people search
// their logs for them.
#pragma once

#include <string_view>

#include "common/errors.h"
#include "common/log.h"

namespace modCommon {

// "ERROR in procedure <procedure> of Form <form>. Error : <number><tab><description>"
void reportFormError(std::wstring_view procedure, std::wstring_view form,
                     const Error& error) noexcept;

// "ERROR in procedure <procedure> of Form <form>. Error : <description>"
void reportFormErrorText(std::wstring_view procedure, std::wstring_view form,
                         const Error& error) noexcept;

// "Error <number> (<description>) in procedure <procedure> of Form <form>"
void reportErrorOfForm(std::wstring_view procedure, std::wstring_view form,
                       const Error& error) noexcept;

// "Error <number> (<description>) in procedure <procedure> of Module <module>"
void reportModuleError(std::wstring_view procedure, const Error& error,
                       std::wstring_view module = L"modCommon") noexcept;

// "Handled Error : <description> in procedure <procedure> of Form <form>", for one that was raised
// on purpose.
void reportHandledError(std::wstring_view procedure, std::wstring_view form,
                        const Error& error) noexcept;

// "Error in <procedure> procedure of <form>. Error description :<description>"
void reportMenuError(std::wstring_view procedure, std::wstring_view form,
                     const Error& error) noexcept;

// Runs `body`; an error inside ends it with the module's log line. True when it came to its end.
template <class Body>
bool handle(std::wstring_view procedure, Body&& body) noexcept {
  try {
    body();
    return true;
  } catch (...) {
    reportModuleError(procedure, errors::current());
    return false;
  }
}

}  // namespace modCommon
