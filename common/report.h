// How an error becomes a log line.
#pragma once

#include <string_view>

#include "common/errors.h"
#include "common/log.h"

namespace modCommon {

// "ERROR in procedure <procedure> of Form <form>. Error : <number><tab><description>"
void reportFormError(std::wstring_view procedure, std::wstring_view form,
                     const Error& error) noexcept;

// "Error <number> (<description>) in procedure <procedure> of Module <module>"
void reportModuleError(std::wstring_view procedure, const Error& error,
                       std::wstring_view module = L"modCommon") noexcept;

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
