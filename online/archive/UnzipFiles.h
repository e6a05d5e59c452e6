// Unpacking one archive, with its messages.
#pragma once

#include <windows.h>

#include <string>

namespace modCommon {

// True when the library unpacked the whole archive without a complaint. A folder that cannot be
// written, an archive that is none (it is deleted), and whatever kept the library from being asked
// are shown in one message box over `owner`. Never fails towards its caller.
bool UnzipFiles(const std::wstring& archivePath, const std::wstring& extractDir,
                HWND owner = nullptr) noexcept;

}  // namespace modCommon
