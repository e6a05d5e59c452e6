// Where the archives of one run are kept until they are unpacked. They stay there afterwards.
#pragma once

#include <string>
#include <string_view>
#include <vector>

class StagedFiles {
 public:
  // `folder` exists already.
  explicit StagedFiles(std::wstring folder);

  // For an address: below the folder, under the address's own file name, with "%20" as a blank.
  // Raises an Error (52) when that cannot be a file's name on this system: it could lead out of the
  // folder.
  std::wstring ordinaryPath(std::wstring_view address) const;

  // The same, unless an archive of this run is there already. Then the name gets a number, so that
  // each archive of a page has a file of its own; one of an earlier run may be there.
  std::wstring freePath(std::wstring_view address) const;

  // From now on the file is this run's.
  void take(const std::wstring& path);

  const std::wstring& folder() const noexcept { return folder_; }

 private:
  // One file under all of its names: an archive's name may be the short name of another one.
  struct Identity {
    unsigned long volume = 0;
    unsigned long indexHigh = 0;
    unsigned long indexLow = 0;
    bool operator==(const Identity&) const = default;
  };
  struct Taken {
    std::wstring path;
    Identity identity;
  };

  static Identity identityOf(const std::wstring& path);
  bool isTaken(const std::wstring& path) const;

  std::wstring folder_;
  std::vector<Taken> taken_;
};
