// Unpacking one archive, with its messages.
#pragma once

#include <string>

#include "online/archive/UnpackingQuestions.h"

namespace modCommon {

// True when the library unpacked the whole archive without a complaint. A folder that cannot be
// written, an archive that is none (it is deleted), and whatever kept the library from being asked
// are shown in one message; a stop is not. Every failure is logged with what tells why. Never fails
// towards its caller.
bool UnzipFiles(const std::wstring& archivePath, const std::wstring& extractDir,
                UnpackingQuestions& questions) noexcept;

}  // namespace modCommon
