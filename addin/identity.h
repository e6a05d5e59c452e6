// The identifiers by which the component is known outside.
#pragma once

#include <guiddef.h>

namespace identity {

inline constexpr GUID classId = {
    0xEA65D517, 0xCDCA, 0x46D0, {0xBD, 0x68, 0x44, 0x9B, 0xB8, 0x32, 0x8D, 0x69}};
// Repeated in DWT.idl.
inline constexpr GUID typeLibraryId = {
    0xC5C4A6FE, 0xC4FE, 0x4D30, {0x8B, 0x40, 0xF7, 0xF9, 0x86, 0x5B, 0x65, 0xBE}};

inline constexpr wchar_t programId[] = L"DWT.DWTemplate";
inline constexpr wchar_t description[] = L"Orlique Dynamic Web Template";
inline constexpr wchar_t friendlyName[] = L"Orlique Quillet";
inline constexpr wchar_t version[] = L"1.0";

}  // namespace identity
