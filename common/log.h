// The diagnostic log: single lines on the system debug output, while the setting "Logging" is 1.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace modCommon {

void SetLogIndent(int level);
// Two columns deeper, or back; never below 0.
void LogIndent(bool deeper);

// "hh:mm:ss", (indentation + 1) blanks, the message. Never fails towards its caller.
void WriteLog(std::wstring_view message) noexcept;
// The same with a message in parts.
void WriteLog(std::initializer_list<std::wstring_view> parts) noexcept;

// The switch itself: 1 writes lines, anything else does not.
int loggingFlag() noexcept;
void setLoggingFlag(int flag) noexcept;

// The separator between two sessions.
inline constexpr wchar_t logSeparator[] = L"-----------------------------------------------------";

}  // namespace modCommon
