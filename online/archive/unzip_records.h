// The records of the Info-ZIP library (unzip32.dll), as its documentation lays them out for 32-bit
// Windows: everything packed to its natural size, text in the ANSI code page. They came with its
// version 6, which is what stands beside the module; an earlier library is turned away.
#pragma once

#include <windows.h>

#include <cstddef>

namespace unzip {

using Size = unsigned long long;

// UzpVersion2. The caller says in the first field how long the record is; a library that expects
// another length answers with that length and fills nothing in.
struct Version {
  unsigned char major;
  unsigned char minor;
  unsigned char patchLevel;
  unsigned char unused;
};
struct VersionRecord {
  unsigned long length;
  unsigned long flags;
  char betaLevel[10];
  char date[20];
  char zlibVersion[10];
  Version unzip;
  Version zipInfo;
  Version os2Library;
  Version windowsLibrary;
  Version oldestInterface;  // the last change of the interface
};
static_assert(sizeof(VersionRecord) == 68);
static_assert(offsetof(VersionRecord, unzip) == 48);

// What is to be done with the archive.
inline constexpr unsigned optionsVersion = 0x600;
struct UnzipOptions {
  unsigned version;  // optionsVersion
  int extractOnlyNewer;
  int spaceToUnderscore;
  int promptToOverwrite;
  int quiet;      // 0 all messages, 1 few, 2 none
  int toStdOut;   // hands the files' bytes to the print routine
  int test;       // reads everything, writes nothing
  int list;       // lists the contents, writes nothing
  int freshen;    // only files that exist already and are older
  int comment;    // the archive's comment, nothing else
  int folders;    // 0 drops the folders of the names; 1 keeps them, without ".."
  int overwrite;  // without a question
  int convertLineEnds;
  int zipInfo;  // a technical listing, nothing else
  int backup;   // keeps a copy of what it overwrites
  int ignoreCase;
  int times;      // 0 restores all file times
  int utf8;       // 0 translates names in UTF-8 to the code page
  int privilege;  // 1 restores access rights, 2 with the user's privileges
  const char* archive;
  const char* folder;  // null for the current folder
};
static_assert(sizeof(UnzipOptions) == 84);
static_assert(offsetof(UnzipOptions, archive) == 76);

// What the library calls. `print` and `replace` must be there.
using Print = int(WINAPI*)(char* text, unsigned long length);
using Sound = void(WINAPI*)();
using Password = int(WINAPI*)(char* buffer, int size, const char* prompt, const char* entry);
using Replace = int(WINAPI*)(char* name, unsigned size);
// One line of a listing. `caseMark` is "^" for a name in lower-case letters, `crypt` is "E" for an
// encrypted entry.
using Message = void(WINAPI*)(Size unpackedSize, Size packedSize, unsigned ratio, unsigned month,
                              unsigned day, unsigned year, unsigned hour, unsigned minute,
                              char caseMark, const char* name, const char* method,
                              unsigned long crc, char crypt);
// After each entry; an answer other than 0 stops the library.
using Service = int(WINAPI*)(const char* name, Size unpackedSize);

struct UnzipCallbacks {
  Print print;
  Sound sound;
  Replace replace;
  Password password;
  Message message;
  Service service;
  void* message32;  // in place of `message` and `service` for callers without 64-bit numbers
  void* service32;
  Size packedSize;
  Size unpackedSize;
  Size entries;
  unsigned ratio;
  WORD hasComment;
};
static_assert(sizeof(UnzipCallbacks) == 64);
static_assert(offsetof(UnzipCallbacks, packedSize) == 32);

// Answers of the callbacks.
inline constexpr int replaceNo = 100;
inline constexpr int replaceYes = 102;
inline constexpr int replaceNone = 104;
inline constexpr int passwordEntered = 0;
inline constexpr int passwordCancelAll = -2;  // and ask for no further one

inline constexpr int goOn = 0;
inline constexpr int stop = 1;

// Results of the entry point, as far as they are told apart.
enum Result : long {
  success = 0,
  warning = 1,       // unpacked, with something odd on the way
  cannotCreate = 2,  // the folder to unpack into cannot be made
  notAnArchive = 9,  // or there is no such file
  cannotWrite = 50,  // the disk is full, or a file cannot be made
};

}  // namespace unzip

// The sister library that makes archives (zip32.dll). No archive is made here.
namespace zip {

struct Callbacks;
struct Settings;
struct Files {
  int count;
  const char* archive;
  char** names;
};
static_assert(sizeof(Files) == 12);

using ZpInit = int(WINAPI*)(Callbacks* callbacks);
using ZpSetOptions = BOOL(WINAPI*)(Settings* settings);
using ZpGetOptions = Settings(WINAPI*)();
using ZpArchive = int(WINAPI*)(Files files);

}  // namespace zip
