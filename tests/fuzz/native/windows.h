// What the rules under test ask of Windows: its types, and models of a few functions. A rule that
// asks for more does not build here, which is how it shows that it asks the system.
#pragma once

#include <cstdint>

static_assert(sizeof(wchar_t) == 2 && sizeof(long) == 4 && sizeof(void*) == 4);

using BYTE = unsigned char;
using WORD = unsigned short;
using SHORT = short;
using INT = int;
using UINT = unsigned;
using LONG = long;
using DWORD = unsigned long;
using BOOL = int;
using HRESULT = long;
struct HWND__;
using HWND = HWND__*;
using HANDLE = void*;
using HGDIOBJ = void*;
using HFONT = void*;
using HDC = void*;
using HKEY = void*;
using HICON = void*;
using HGLOBAL = void*;

struct POINT {
  LONG x;
  LONG y;
};
struct SIZE {
  LONG cx;
  LONG cy;
};
struct RECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};
struct TEXTMETRICW {
  LONG tmAscent;
};
struct WINDOWPLACEMENT {
  UINT length;
  UINT flags;
  UINT showCmd;
  POINT ptMinPosition;
  POINT ptMaxPosition;
  RECT rcNormalPosition;
};

#define RGB(red, green, blue) \
  (static_cast<DWORD>((red) | (green) << 8 | static_cast<DWORD>(blue) << 16))
#define FAILED(result) ((result) < 0)
#define FALSE 0
#define TRUE 1
#define MAX_PATH 260
#define WINAPI

#define CP_ACP 0u
#define CP_OEMCP 1u
#define CP_UTF8 65001u
#define MB_ERR_INVALID_CHARS 8u
#define WC_NO_BEST_FIT_CHARS 0x400u
#define SEM_FAILCRITICALERRORS 1u
#define FORMAT_MESSAGE_FROM_SYSTEM 0x1000u
#define FORMAT_MESSAGE_IGNORE_INSERTS 0x200u
#define LANG_NEUTRAL 0
#define SUBLANG_NEUTRAL 0
#define MAKELANGID(language, sub) 0u

#define ERROR_FILE_NOT_FOUND 2
#define ERROR_PATH_NOT_FOUND 3
#define ERROR_TOO_MANY_OPEN_FILES 4
#define ERROR_ACCESS_DENIED 5
#define ERROR_NOT_ENOUGH_MEMORY 8
#define ERROR_OUTOFMEMORY 14
#define ERROR_INVALID_DRIVE 15
#define ERROR_WRITE_PROTECT 19
#define ERROR_NOT_READY 21
#define ERROR_CRC 23
#define ERROR_GEN_FAILURE 31
#define ERROR_SHARING_VIOLATION 32
#define ERROR_LOCK_VIOLATION 33
#define ERROR_HANDLE_DISK_FULL 39
#define ERROR_BAD_NETPATH 53
#define ERROR_DEV_NOT_EXIST 55
#define ERROR_BAD_NET_NAME 67
#define ERROR_FILE_EXISTS 80
#define ERROR_DISK_FULL 112
#define ERROR_INVALID_NAME 123
#define ERROR_BAD_PATHNAME 161
#define ERROR_ALREADY_EXISTS 183
#define ERROR_IO_DEVICE 1117

#define E_OUTOFMEMORY (-2)
#define DISP_E_TYPEMISMATCH (-3)
#define DISP_E_UNKNOWNNAME (-4)
#define DISP_E_MEMBERNOTFOUND (-5)
#define DISP_E_BADPARAMCOUNT (-6)
#define REGDB_E_CLASSNOTREG (-7)
#define CO_E_CLASSSTRING (-8)
#define CLASS_E_CLASSNOTAVAILABLE (-9)

#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(-1))
#define FW_NORMAL 400
#define FW_BOLD 700
#define DEFAULT_CHARSET 1u
#define OUT_DEFAULT_PRECIS 0u
#define CLIP_DEFAULT_PRECIS 0u
#define ANTIALIASED_QUALITY 4u
#define DEFAULT_PITCH 0u

// Handles are numbers and own nothing; a font is its height.
inline BOOL CloseHandle(HANDLE) { return TRUE; }
inline BOOL FindClose(HANDLE) { return TRUE; }
inline LONG RegCloseKey(HKEY) { return 0; }
inline BOOL DeleteObject(HGDIOBJ) { return TRUE; }
inline BOOL DeleteDC(HDC) { return TRUE; }
inline BOOL DestroyIcon(HICON) { return TRUE; }
inline HGLOBAL GlobalFree(HGLOBAL) { return nullptr; }
inline HDC GetDC(HWND) { return nullptr; }
inline int ReleaseDC(HWND, HDC) { return 1; }
HFONT CreateFontW(int height, int width, int escapement, int orientation, int weight, DWORD italic,
                  DWORD underline, DWORD strikeOut, DWORD charSet, DWORD precision, DWORD clipping,
                  DWORD quality, DWORD pitch, const wchar_t* face);
HGDIOBJ SelectObject(HDC context, HGDIOBJ object);
BOOL GetTextExtentPoint32W(HDC context, const wchar_t* text, int count, SIZE* size);
BOOL GetTextMetricsW(HDC context, TEXTMETRICW* metrics);

DWORD GetLastError();
UINT SetErrorMode(UINT mode);
DWORD FormatMessageW(DWORD flags, const void* source, DWORD code, DWORD language, wchar_t* text,
                     DWORD size, void* arguments);

UINT GetACP();
int MultiByteToWideChar(UINT page, DWORD flags, const char* bytes, int count, wchar_t* letters,
                        int size);
int WideCharToMultiByte(UINT page, DWORD flags, const wchar_t* letters, int count, char* bytes,
                        int size, const char* standIn, BOOL* lossy);
DWORD CharLowerBuffW(wchar_t* text, DWORD count);
DWORD CharUpperBuffW(wchar_t* text, DWORD count);

extern "C" int _wtoi(const wchar_t* text);  // of its C library

DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* fallback,
                               char* value, DWORD size, const char* file);
DWORD GetFullPathNameW(const wchar_t* path, DWORD size, wchar_t* full, wchar_t** name);
DWORD GetLongPathNameW(const wchar_t* path, wchar_t* longPath, DWORD size);
