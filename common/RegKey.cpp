#include "common/RegKey.h"

#include <new>

#include "common/ansi.h"
#include "common/errors.h"

namespace {

constexpr DWORD nameLength = 2048;

bool isStringType(DWORD type) {
  return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_LINK || type == REG_MULTI_SZ;
}

// For an empty name the plain open call hands back the caller's own handle, which is not ours to
// close.
LSTATUS WINAPI openPlain(HKEY root, LPCSTR subkey, PHKEY key) {
  if (*subkey == '\0') return RegOpenKeyExA(root, subkey, 0, MAXIMUM_ALLOWED, key);
  return RegOpenKeyA(root, subkey, key);
}

LSTATUS WINAPI createPlain(HKEY root, LPCSTR subkey, PHKEY key) {
  if (*subkey == '\0') return openPlain(root, subkey, key);
  return RegCreateKeyA(root, subkey, key);
}

}  // namespace

template <class Operation>
bool RegKey::run(Operation operation) {
  internal_ = none;
  try {
    return operation();
  } catch (const std::bad_alloc&) {
    return settle(ERROR_NOT_ENOUGH_MEMORY);
  }
}

template <class Operation>
bool RegKey::runOn(HKEY key, Operation operation) {
  return run([&] {
    const HKEY used = key ? key : key_.get();
    return used ? operation(used) : fail(noKeyOpen);
  });
}

bool RegKey::OpenKey(HKEY root, std::wstring_view subkey) { return take(openPlain, root, subkey); }

bool RegKey::CreateKey(HKEY root, std::wstring_view subkey) {
  return take(createPlain, root, subkey);
}

bool RegKey::CloseKey() {
  return run([&] { return key_ ? close() : fail(noKeyOpen); });
}

bool RegKey::setHKey(HKEY key) {
  return run([&] {
    if (key != key_.get()) {
      if (!closePrevious()) return false;
      key_.reset(key);
    }
    return settle(ERROR_SUCCESS);
  });
}

bool RegKey::QueryValue(std::wstring_view subkey, std::wstring& value, HKEY key) {
  return runOn(key, [&](HKEY used) {
    const std::string name = text::toAnsi(subkey);
    LONG size = 0;
    if (!settle(RegQueryValueA(used, name.c_str(), nullptr, &size))) return false;
    std::string bytes(static_cast<std::size_t>(size) + 1, '\0');
    if (!settle(RegQueryValueA(used, name.c_str(), bytes.data(), &size))) return false;
    value = text::fromAnsi(bytes.c_str());
    return true;
  });
}

bool RegKey::QueryValueEx(std::wstring_view name, DWORD length, DWORD& type, BYTE* buffer,
                          HKEY key) {
  return runOn(key, [&](HKEY used) {
    const std::string ansiName = text::toAnsi(name);
    DWORD size = 0;
    if (!settle(RegQueryValueExA(used, ansiName.c_str(), nullptr, &type, nullptr, &size)))
      return false;
    if (size > length) {
      data_ = static_cast<long>(size);
      return fail(bufferTooSmall);
    }
    size = length;
    return settle(RegQueryValueExA(used, ansiName.c_str(), nullptr, &type, buffer, &size));
  });
}

bool RegKey::QueryValueEx_SZ(std::wstring_view name, std::wstring& value, HKEY key, bool keepNuls) {
  return runOn(key, [&](HKEY used) {
    const std::string ansiName = text::toAnsi(name);
    DWORD type = REG_NONE;
    DWORD size = 0;
    if (!settle(RegQueryValueExA(used, ansiName.c_str(), nullptr, &type, nullptr, &size)))
      return false;
    if (type != REG_SZ) return fail(wrongDataType);
    std::string bytes(static_cast<std::size_t>(size) + 1, '\0');
    if (!settle(RegQueryValueExA(used, ansiName.c_str(), nullptr, &type,
                                 reinterpret_cast<BYTE*>(bytes.data()), &size)))
      return false;
    bytes.resize(size);
    if (!keepNuls) bytes.resize(strnlen(bytes.data(), bytes.size()));
    value = text::fromAnsi(bytes);
    return true;
  });
}

bool RegKey::SetValueEx(std::wstring_view name, DWORD length, DWORD type, const BYTE* buffer,
                        HKEY key) {
  return runOn(key, [&](HKEY used) {
    if (isStringType(type)) return fail(wrongDataType);
    return settle(RegSetValueExA(used, text::toAnsi(name).c_str(), 0, type, buffer, length));
  });
}

bool RegKey::SetValueEx_SZ(std::wstring_view name, std::wstring_view value, DWORD type, HKEY key) {
  return runOn(key, [&](HKEY used) {
    if (!isStringType(type)) return fail(wrongDataType);
    const std::string bytes = text::toAnsi(value);
    return settle(RegSetValueExA(used, text::toAnsi(name).c_str(), 0, type,
                                 reinterpret_cast<const BYTE*>(bytes.c_str()),
                                 static_cast<DWORD>(bytes.size()) + 1));
  });
}

bool RegKey::EnumValue(std::wstring& name, DWORD& type, long index, HKEY key) {
  return runOn(key, [&](HKEY used) {
    enumerationIndex_ = index == -1 ? enumerationIndex_ + 1 : index;
    char buffer[nameLength] = {};
    DWORD length = nameLength;
    const LSTATUS result = RegEnumValueA(used, static_cast<DWORD>(enumerationIndex_), buffer,
                                         &length, nullptr, &type, nullptr, nullptr);
    if (result == ERROR_SUCCESS) name = text::fromAnsi(buffer);
    if (result == ERROR_NO_MORE_ITEMS) enumerationIndex_ = -1;
    return settle(result);
  });
}

std::wstring RegKey::GetErrorDescription() const {
  switch (internal_) {
    case bufferTooSmall:
      return L"Insufficient buffer length. Please supplu more buffer.";
    case wrongDataType:
      return L"Internal error: Data type supplied is invalid.";
    case previousKeyNotClosed:
      return L"Internal error: Failed to close previous key.\r\n" + errors::systemMessage(system_);
    case noKeyOpen:
      return L"Internal error: Registry operation without opening a key.";
    case none:
      return errors::systemMessage(system_);
  }
  return {};  // Not run by tests: there is no other number.
}

bool RegKey::take(Opener opener, HKEY root, std::wstring_view subkey) {
  return run([&] {
    if (!closePrevious()) return false;
    HKEY opened = nullptr;
    if (!settle(opener(root, text::toAnsi(subkey).c_str(), &opened))) return false;
    key_.reset(opened);
    return true;
  });
}

// A key that cannot be closed stays held.
bool RegKey::close() {
  const HKEY held = key_.release();
  if (settle(RegCloseKey(held))) return true;
  key_.reset(held);
  return false;
}

bool RegKey::closePrevious() {
  if (!key_ || close()) return true;
  internal_ = previousKeyNotClosed;
  return false;
}

// The system has no part in the object's own verdicts.
bool RegKey::fail(InternalError error) {
  internal_ = error;
  system_ = ERROR_SUCCESS;
  return false;
}

bool RegKey::settle(LSTATUS result) {
  system_ = result;
  return result == ERROR_SUCCESS;
}
