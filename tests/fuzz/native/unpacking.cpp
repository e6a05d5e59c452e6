// The unzip library in this process, its view of the disk limited: every call of its that bears a
// path or makes a handle comes through here (unzip_sandbox.h).
#include <dirent.h>
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>
#include <utime.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "tests/fuzz/Target.h"
#include "tests/fuzz/Unpacked.h"

namespace {

bool isElsewhere = false;

// Made once, in memory where there is such a place.
class Place {
 public:
  Place() {
    std::string made = (access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp") + suffix_;
    if (!mkdtemp(made.data())) abort();
    root_ = made;
    archive_ = root_ + "/archive.zip";
    folder_ = root_ + "/inside";
    mkdir(folder_.c_str(), 0755);
  }
  ~Place() {
    unlink(archive_.c_str());
    rmdir(folder_.c_str());
    rmdir(root_.c_str());
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;

  const std::string& archive() const { return archive_; }
  const std::string& folder() const { return folder_; }
  bool holds(const char* path) const {
    const std::string wanted(path);
    if (!wanted.starts_with(folder_) || wanted.find("/../") != wanted.npos ||
        wanted.ends_with("/.."))
      return false;
    return wanted.size() == folder_.size() || wanted[folder_.size()] == '/';
  }

 private:
  std::string suffix_ = "/quillet-fuzz-XXXXXX";
  std::string root_;
  std::string archive_;
  std::string folder_;
};

Place& place() {
  static Place made;
  return made;
}

const char* allowed(const char* path, bool onlyRead = false) {
  if (!place().holds(path) && !(onlyRead && path == place().archive())) {
    std::fprintf(stderr, "unpacking: %s is elsewhere\n", path);
    isElsewhere = true;
  }
  return path;
}

void write(const std::string& path, std::string_view bytes) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (file < 0 || ::write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
    abort();
  close(file);
}

// Counts what is there and takes it away. Links are not followed.
void empty(const std::string& folder, fuzz::Unpacked& counted) {
  DIR* const entries = opendir(folder.c_str());
  if (!entries) return;
  while (const dirent* entry = readdir(entries)) {
    const std::string name = entry->d_name;
    if (name == "." || name == "..") continue;
    const std::string path = folder + "/" + name;
    ++counted.files;
    struct stat about = {};
    lstat(path.c_str(), &about);
    if (S_ISDIR(about.st_mode)) {
      chmod(path.c_str(), 0755);
      empty(path, counted);
      rmdir(path.c_str());
    } else {
      counted.bytes += static_cast<std::uint64_t>(about.st_size);
      unlink(path.c_str());
    }
  }
  closedir(entries);
}

// Handles are given out from the lowest on.
int nextHandle() {
  const int handle = dup(2);
  close(handle);
  return handle;
}

}  // namespace

extern "C" {

int unzip_main(int count, char** words);

int sandboxChmod(const char* path, mode_t mode) { return chmod(allowed(path), mode); }
int sandboxMkdir(const char* path, mode_t mode) { return mkdir(allowed(path), mode); }
int sandboxUnlink(const char* path) { return unlink(allowed(path)); }
int sandboxStat(const char* path, struct stat* about) { return stat(allowed(path, true), about); }
int sandboxLstat(const char* path, struct stat* about) { return lstat(allowed(path, true), about); }
int sandboxUtime(const char* path, const utimbuf* times) { return utime(allowed(path), times); }
int sandboxRename(const char* from, const char* to) {
  return std::rename(allowed(from), allowed(to));
}
DIR* sandboxOpendir(const char* path) { return opendir(allowed(path)); }
FILE* sandboxFopen(const char* path, const char* mode) {
  return std::fopen(allowed(path, *mode == 'r'), mode);
}
int sandboxOpen(const char* path, int flags, ...) {
  return open(allowed(path, (flags & O_ACCMODE) == O_RDONLY), flags, 0666);
}

// There are neither owners nor links where the product runs.
int sandboxChown(const char* path, uid_t, gid_t) {
  allowed(path);
  return 0;
}
int sandboxSymlink(const char*, const char* path) {
  allowed(path);
  return -1;
}
// The sanitizers have their own.
void (*sandboxSignal(int, void (*)(int)))(int) { return nullptr; }

// What the library says goes nowhere, and nobody is there to be asked.
int UzpMessagePrnt(void*, unsigned char*, unsigned long, int) { return 0; }
char* getp() { return nullptr; }

}  // extern "C"

fuzz::Unpacked fuzz::unpack(std::string_view archive, bool passed) {
  Unpacked result;
  result.passed = passed;
  if (!passed) return result;
  isElsewhere = false;
  write(place().archive(), archive);
  const int before = nextHandle();
  std::string words[] = {"unzip",           "-o", "-qq",           "-P", "secret",
                         place().archive(), "-d", place().folder()};
  char* arguments[std::size(words) + 1] = {};
  for (std::size_t i = 0; i < std::size(words); ++i) arguments[i] = words[i].data();
  unzip_main(std::size(words), arguments);
  result.leftOpen = nextHandle() != before;
  result.isElsewhere = isElsewhere;
  empty(place().folder(), result);
  return result;
}
