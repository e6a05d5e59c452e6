#include "common/errors.h"

#include <windows.h>

#include <new>

namespace errors {
namespace {

struct Description {
  long number;
  std::wstring_view text;
};

constexpr Description descriptions[] = {
    {invalidArgument, L"Invalid procedure call or argument"},
    {overflow, L"Overflow"},
    {outOfMemory, L"Out of memory"},
    {subscriptOutOfRange, L"Subscript out of range"},
    {typeMismatch, L"Type mismatch"},
    {badFileName, L"Bad file name or number"},
    {fileNotFound, L"File not found"},
    {fileAlreadyOpen, L"File already open"},
    {deviceIoError, L"Device I/O error"},
    {fileAlreadyExists, L"File already exists"},
    {diskFull, L"Disk full"},
    {tooManyFiles, L"Too many files"},
    {deviceUnavailable, L"Device unavailable"},
    {permissionDenied, L"Permission denied"},
    {diskNotReady, L"Disk not ready"},
    {pathFileAccess, L"Path/File access error"},
    {pathNotFound, L"Path not found"},
    {objectNotSet, L"Object variable or With block variable not set"},
    {cannotCreateObject, L"ActiveX component can't create object"},
    {noSuchMember, L"Object doesn't support this property or method"},
    {automationError, L"Automation error"},
    {wrongArgumentCount, L"Wrong number of arguments or invalid property assignment"},
    {cancelled, L"Operation Cancelled."},
};

struct Translation {
  DWORD code;
  long number;
};

constexpr Translation translations[] = {
    {ERROR_NOT_ENOUGH_MEMORY, outOfMemory},
    {ERROR_OUTOFMEMORY, outOfMemory},
    {ERROR_INVALID_NAME, badFileName},
    {ERROR_BAD_PATHNAME, badFileName},
    {ERROR_BAD_NETPATH, badFileName},
    {ERROR_BAD_NET_NAME, badFileName},
    {ERROR_INVALID_DRIVE, badFileName},
    {ERROR_FILE_NOT_FOUND, fileNotFound},
    {ERROR_CRC, deviceIoError},
    {ERROR_GEN_FAILURE, deviceIoError},
    {ERROR_IO_DEVICE, deviceIoError},
    {ERROR_FILE_EXISTS, fileAlreadyExists},
    {ERROR_ALREADY_EXISTS, fileAlreadyExists},
    {ERROR_DISK_FULL, diskFull},
    {ERROR_HANDLE_DISK_FULL, diskFull},
    {ERROR_TOO_MANY_OPEN_FILES, tooManyFiles},
    {ERROR_DEV_NOT_EXIST, deviceUnavailable},
    {ERROR_SHARING_VIOLATION, permissionDenied},
    {ERROR_LOCK_VIOLATION, permissionDenied},
    {ERROR_WRITE_PROTECT, permissionDenied},
    {ERROR_NOT_READY, diskNotReady},
    {ERROR_ACCESS_DENIED, pathFileAccess},
    {ERROR_PATH_NOT_FOUND, pathNotFound},
};

}  // namespace

Error::Error(long number, std::wstring_view description, std::wstring_view source)
    : number_(number),
      texts_(std::make_shared<Texts>(Texts{std::wstring(description), std::wstring(source)})) {}

std::wstring_view Error::description() const noexcept {
  return texts_ ? std::wstring_view(texts_->description) : descriptionOf(number_);
}

std::wstring_view Error::source() const noexcept {
  return texts_ ? std::wstring_view(texts_->source) : std::wstring_view();
}

Error operationCancelled(std::wstring_view source) {
  return {cancelled, descriptionOf(cancelled), source};
}

std::wstring_view descriptionOf(long number) noexcept {
  for (const auto& entry : descriptions)
    if (entry.number == number) return entry.text;
  return {};
}

long numberFromSystemCode(unsigned long code, long fallback) {
  for (const auto& entry : translations)
    if (entry.code == code) return entry.number;
  return fallback;
}

std::wstring systemMessage(unsigned long code) {
  std::wstring text(2047, L'\0');
  FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                 MAKELANGID(LANG_NEUTRAL, SUBLANG_NEUTRAL), text.data(), 2048, nullptr);
  text.resize(text.find(L'\0') == text.npos ? text.size() : text.find(L'\0'));
  return text;
}

Error fromSystemCode(unsigned long code) { return Error(numberFromSystemCode(code)); }

Error fromLastError() { return fromSystemCode(GetLastError()); }

Error fromHResult(long result) {
  switch (result) {
    case E_OUTOFMEMORY:
      return Error(outOfMemory);
    case DISP_E_TYPEMISMATCH:
      return Error(typeMismatch);
    case DISP_E_UNKNOWNNAME:
    case DISP_E_MEMBERNOTFOUND:
      return Error(noSuchMember);
    case DISP_E_BADPARAMCOUNT:
      return Error(wrongArgumentCount);
    case REGDB_E_CLASSNOTREG:
    case CO_E_CLASSSTRING:
    case CLASS_E_CLASSNOTAVAILABLE:
      return Error(cannotCreateObject);
    default:
      return Error(automationError);
  }
}

Error current() noexcept {
  try {
    throw;
  } catch (const Error& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return Error(outOfMemory);
  } catch (...) {
    return Error(invalidArgument);
  }
}

}  // namespace errors
