// The open web with its folders and files: objects over a folder on disk. Everything is looked up
// when it is asked for; nothing is kept.
#pragma once

#include <string>
#include <vector>

#include "host/model/AutomationObject.h"

namespace standin {

// Whatever belongs to the web that was open when it was handed out; once that web is closed, every
// member refuses.
class WebObject : public AutomationObject {
 public:
  explicit WebObject(SharedSession session);

 protected:
  void requireOpen() const;

 private:
  long generation_;
};

class Web : public WebObject {
 public:
  explicit Web(SharedSession session) : WebObject(std::move(session)) {}

  std::wstring address() const;

  com::Variant getUrl(const Arguments&) const;
  com::Variant getTitle(const Arguments&);
  com::Variant getRootFolder(const Arguments&);
  com::Variant locateFolder(const Arguments&);
  com::Variant locateFile(const Arguments&);
  com::Variant getAllFolders(const Arguments&);
  com::Variant getAllFiles(const Arguments&);
  com::Variant refresh(const Arguments&);

 protected:
  const MemberTable& members() const override;
};

class WebFolder : public WebObject {
 public:
  WebFolder(SharedSession session, std::wstring relative);

  std::wstring address() const;

  com::Variant getName(const Arguments&);
  com::Variant getUrl(const Arguments&) const;
  com::Variant getIsWeb(const Arguments&);
  com::Variant getIsRoot(const Arguments&);
  com::Variant getParent(const Arguments&);
  com::Variant getWeb(const Arguments&);
  com::Variant getFolders(const Arguments&);
  com::Variant getFiles(const Arguments&);

 protected:
  const MemberTable& members() const override;

 private:
  std::wstring relative_;
};

// The folders below one folder, or all of the web.
class WebFolders : public WebObject {
 public:
  WebFolders(SharedSession session, std::wstring relative, bool all);

  com::Variant getCount(const Arguments&);
  com::Variant getItem(const Arguments&);
  com::Variant add(const Arguments&);

 protected:
  const MemberTable& members() const override;

 private:
  std::vector<std::wstring> paths() const;
  std::wstring wantedPath(const std::wstring& argument) const;

  std::wstring relative_;
  bool all_;
};

class WebFile : public WebObject {
 public:
  WebFile(SharedSession session, std::wstring relative);

  std::wstring address() const;

  com::Variant getName(const Arguments&);
  com::Variant getExtension(const Arguments&);
  com::Variant getUrl(const Arguments&) const;
  com::Variant getTitle(const Arguments&);
  com::Variant remove(const Arguments&);
  com::Variant applyTheme(const Arguments&);

 protected:
  const MemberTable& members() const override;

 private:
  std::wstring requireFile() const;  // its path on disk

  std::wstring relative_;
};

class WebFiles : public WebObject {
 public:
  WebFiles(SharedSession session, std::wstring relative, bool all);

  com::Variant getCount(const Arguments&);
  com::Variant getItem(const Arguments&);
  com::Variant add(const Arguments&);

 protected:
  const MemberTable& members() const override;

 private:
  std::vector<std::wstring> paths() const;

  std::wstring relative_;
  bool all_;
};

}  // namespace standin
