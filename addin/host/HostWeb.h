// The open web, its folders and files, as thin values over the host's objects. Hold them for the
// length of an operation only.
//
// Paths are accepted in every shape the program meets: "/dwts", "dwts", "dwts/" and absolute URLs
// of the web, escaped or not; this layer turns them into what the host takes.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/Dispatch.h"

class HostFile {
 public:
  explicit HostFile(com::Dispatch object) noexcept : object_(std::move(object)) {}

  std::wstring name() const;
  std::wstring extension() const;  // without its point
  std::wstring url() const;
  void remove() const;
  void applyTheme(const std::wstring& theme, long properties) const;

 private:
  com::Dispatch object_;
};

// The files of one folder.
class HostFiles {
 public:
  explicit HostFiles(com::Dispatch object) noexcept : object_(std::move(object)) {}

  // A copy of a local file joins the folder; an existing one of that name is refused by the host.
  HostFile import(const std::wstring& localPath) const;
  long count() const;

 private:
  com::Dispatch object_;
};

class HostWeb;

class HostFolder {
 public:
  explicit HostFolder(com::Dispatch object) noexcept : object_(std::move(object)) {}

  std::wstring name() const;
  std::wstring url() const;  // absolute
  bool isWeb() const;        // the root of a sub-web: not offered and not entered
  HostWeb web() const;
  // The immediate sub-folders, in the host's order.
  std::vector<HostFolder> folders() const;
  // Asked without reading them.
  bool hasFolders() const;
  // The immediate sub-folder that the host lists under that name.
  std::optional<HostFolder> folderNamed(const std::wstring& name) const;
  // A new immediate sub-folder of that plain name. The host's refusal is raised as it is.
  HostFolder addFolder(const std::wstring& name) const;
  HostFiles files() const;

 private:
  friend class HostWeb;

  com::Dispatch object_;
};

struct MadeFolder {
  HostFolder folder;
  bool isNew = false;  // as far as the host tells
};

class HostWeb {
 public:
  explicit HostWeb(com::Dispatch object) noexcept : object_(std::move(object)) {}

  std::wstring url() const;  // absolute, without a "/" at its end
  HostFolder rootFolder() const;
  std::optional<HostFolder> locateFolder(std::wstring_view path) const;
  std::optional<HostFile> locateFile(std::wstring_view path) const;
  // The folder at that path, made level by level where it is missing. An existing one is the
  // answer, not an error.
  MadeFolder createFolder(std::wstring_view path) const;
  // The same for the folder `name` of `parent`; the web-relative path is its own.
  MadeFolder createSubfolder(const HostFolder& parent, const std::wstring& name,
                             const std::wstring& path) const;
  void refresh() const;
  // The web-relative path of a path in any of the accepted shapes: no "/" at either end. An address
  // outside the web stays what it is: nothing is found there. Of two paths that an address may
  // mean it is the one where there is a folder, else the address as it stands.
  std::wstring relative(std::wstring_view path) const;

 private:
  struct Reading {
    std::wstring place;
    std::wstring other;  // what the path may mean as well; empty when nothing
  };

  Reading read(std::wstring_view path) const;
  std::optional<HostFolder> folderAt(const std::wstring& place) const;
  std::optional<HostFile> fileAt(const std::wstring& place) const;
  com::Dispatch itemAt(const std::wstring& place, std::wstring_view lookUp,
                       std::wstring_view list) const;
  std::optional<HostFolder> existingSubfolder(const HostFolder& parent, const std::wstring& name,
                                              const std::wstring& path) const;

  com::Dispatch object_;
};
