// Why an archive is not handed to the unzip library.
#pragma once

#include <cstddef>

namespace archive {

enum class Fault {
  none,

  // What a download that broke off or was changed on its way looks like: no valid archive.
  noEnd,      // no record at the file's end that closes a directory
  directory,  // the directory is not where that record says, or not what it says
  contents,   // fewer bytes than claimed, another check sum, or no compressed data at all

  // What no usual tool writes, or what cannot be unpacked here.
  severalParts,   // the first or a further one of several files
  headersDiffer,  // an entry's own header does not say what the directory says
  overlap,        // two entries share bytes
  outside,        // an entry lies outside of the file, or in its directory
  method,         // neither stored nor deflated
  encryption,     // not by the format's traditional way
  kind,           // a volume's label, or something of a later version of the format
  tooMuch,        // more bytes than claimed
  tooMany,        // files, than is sensible

  // Names.
  noName,
  unsafeName,   // could lead outside of the folder it is unpacked into
  controlName,  // holds a control character
  badUtf8,      // is said to be in UTF-8 and is not
  unfitName,    // holds a character that the code page or the library lacks
  longName,     // the path would be longer than the system takes
  sameName,     // two different names would become the same file
  fileAndFolder,

  stopped,  // on purpose, before the end was reached
};

struct Finding {
  Fault fault = Fault::none;
  std::size_t entry = noEntry;  // the directory's number of the entry, from 0

  static constexpr std::size_t noEntry = static_cast<std::size_t>(-1);
  explicit operator bool() const noexcept { return fault != Fault::none; }
};

constexpr bool isDamage(Fault fault) {
  return fault == Fault::noEnd || fault == Fault::directory || fault == Fault::contents;
}

}  // namespace archive
