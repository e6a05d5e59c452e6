// Copying a template into the web of the stand-in host.
#include <cstring>
#include <optional>

#include "bench/bare_scan.h"
#include "bench/rows.h"
#include "common/ansi.h"
#include "common/forms/Form.h"
#include "host/model/Host.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "webcopy/CopyRun.h"
#include "webcopy/frmCopyToWeb.h"

namespace bench {
namespace {

constexpr wchar_t destination[] = L"/dwts";

std::wstring source(long files) {
  return places() / (L"copy-" + std::to_wstring(files)) + L"\\Site";
}

// An open web of its own, empty at first.
struct OpenWeb {
  ScratchFolder web;
  ScratchFolder themes;
  standin::Host host{{}, web.path(), themes.path()};

  OpenWeb() {
    hostApplication() = HostApplication(com::Dispatch(ComPtr<IDispatch>(host.application())));
  }
  ~OpenWeb() { hostApplication() = HostApplication(); }
  OpenWeb(const OpenWeb&) = delete;
  OpenWeb& operator=(const OpenWeb&) = delete;

  long files() const {
    long count = 0;
    for (const auto& entry : web.tree())
      if (entry.back() != L'\\') ++count;
    return count;
  }
};

class Silent final : public CopyRunView {
 public:
  bool keepGoing() override {
    forms::yieldToMessages();
    return true;
  }
  void showWeb(const std::wstring&) override {}
  void showTemplate(const std::wstring&) override {}
  void showOverallStatus(const std::wstring&) override {}
  void showCurrentStatus(const std::wstring&) override {}
  void resetOverall(short) override {}
  void stepOverall() override {}
  void resetCurrent(short) override {}
  void stepCurrent() override {}
  void finishCurrent() override {}
  bool ask(const std::wstring&) override { return true; }
  void inform(const std::wstring&) override {}
  void fail(const std::wstring&) override {}
  std::wstring caption() const override { return {}; }
  void unload() override {}
};

bool copyWithout(long files) {
  Silent view;
  CopyRun run(hostApplication(), destination, {L"Site", source(files)}, view);
  run.EH_CopyDWTToWeb();
  return run.continueFlag();
}

bool copyWithDialog(long files) {
  return frmCopyToWeb().CopyTemplateFolder(destination, {L"Site", source(files)}, nullptr);
}

// A host's object by the numbers of its members, each asked for once for all objects of its class.
class Member {
 public:
  explicit Member(const wchar_t* name) noexcept : name_(name) {}

  com::Variant call(const ComPtr<IDispatch>& object,
                    const std::initializer_list<com::Variant>& arguments = {}) {
    if (!id_) {
      auto* name = const_cast<wchar_t*>(name_);
      DISPID id = DISPID_UNKNOWN;
      object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
      id_ = id;
    }
    VARIANT reversed[2] = {};
    UINT count = 0;
    for (auto each = arguments.end(); each != arguments.begin();)
      reversed[count++] = (--each)->get();
    DISPPARAMS parameters = {reversed, nullptr, count, 0};
    com::Variant result;
    if (FAILED(object->Invoke(*id_, IID_NULL, LOCALE_USER_DEFAULT,
                              DISPATCH_PROPERTYGET | DISPATCH_METHOD, &parameters, result.put(),
                              nullptr, nullptr)))
      throw CannotRun{"the stand-in host refuses a bare call"};
    return result;
  }
  ComPtr<IDispatch> object(const ComPtr<IDispatch>& from,
                           const std::initializer_list<com::Variant>& arguments = {}) {
    return call(from, arguments).object();
  }

 private:
  const wchar_t* name_;
  std::optional<DISPID> id_;
};

// The host's calls for a copy, each folder's object kept in hand.
class BareCopy {
 public:
  explicit BareCopy(IDispatch* application)
      : web_(activeWeb_.object(ComPtr<IDispatch>(application))) {}

  void run(long files) {
    const std::string from = text::toAnsi(source(files));
    count(from);
    const auto dwts = folderOf(rootFolder_.object(web_), L"dwts", L"dwts");
    copy(from, folderOf(dwts, L"Site", L"dwts/Site"), L"dwts/Site/");
  }

 private:
  template <class Visit>
  void visit(const std::string& folder, Visit&& found) {
    WIN32_FIND_DATAA entry;
    const HANDLE search = FindFirstFileA((folder + "\\*.*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) return;
    do {
      pumpQueue();
      if (std::strcmp(entry.cFileName, ".") != 0 && std::strcmp(entry.cFileName, "..") != 0)
        found(folder + "\\" + entry.cFileName,
              (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
    } while (FindNextFileA(search, &entry));
    FindClose(search);
  }

  // How many there are is known before the first one is copied.
  void count(const std::string& folder) {
    visit(folder, [this](const std::string& path, bool isFolder) {
      if (isFolder) count(path);
    });
  }

  ComPtr<IDispatch> folderOf(const ComPtr<IDispatch>& parent, const std::wstring& name,
                             const std::wstring& address) {
    if (auto existing = locateFolder_.object(web_, {address})) return existing;
    return addFolder_.object(folders_.object(parent), {name});
  }

  void copy(const std::string& from, const ComPtr<IDispatch>& folder, const std::wstring& address) {
    const auto files = files_.object(folder);
    visit(from, [&](const std::string& path, bool isFolder) {
      const std::wstring name = text::fromAnsi(path.substr(path.rfind('\\') + 1));
      if (isFolder) {
        copy(path, folderOf(folder, name, address + name), address + name + L"/");
      } else if (name != L"quillet.ini") {
        if (const auto old = locateFile_.object(web_, {address + name})) delete_.call(old);
        addFile_.call(files, {text::fromAnsi(path), false});
      }
    });
  }

  Member activeWeb_{L"ActiveWeb"};
  Member rootFolder_{L"RootFolder"};
  Member locateFolder_{L"LocateFolder"};
  Member locateFile_{L"LocateFile"};
  Member folders_{L"Folders"};
  Member files_{L"Files"};
  Member addFolder_{L"Add"};
  Member addFile_{L"Add"};
  Member delete_{L"Delete"};
  ComPtr<IDispatch> web_;
};

bool copyBare(long files, const OpenWeb& web) {
  BareCopy(web.host.application()).run(files);
  return true;
}

using Copy = bool (*)(long files);

// What stood there before is as large as what comes, when it is overwritten.
double timed(long files, bool overwriting, const std::function<bool(const OpenWeb&)>& copy) {
  OpenWeb web;
  if (overwriting) copyBare(files, web);
  std::optional<ModalDriver> driver;
  if (overwriting) driver.emplace().answer(IDYES);
  const Stopwatch watch;
  const bool done = copy(web);
  const double time = watch.milliseconds();
  if (!done || web.files() != files) throw CannotRun{std::to_string(web.files()) + " files arrive"};
  return time;
}

Samples copyInPairs(long files, bool overwriting, Copy ours) {
  return inPairs(
      [=] { return timed(files, overwriting, [=](const OpenWeb&) { return ours(files); }); },
      [=] {
        return timed(files, overwriting, [=](const OpenWeb& web) { return copyBare(files, web); });
      });
}

// Every member of the web's objects and the application's that can be of use to a copy.
double callsOf(const OpenWeb& web) {
  long calls = 0;
  for (const wchar_t* member :
       {L"ActiveWeb",  L"MakeAbs",      L"Version",    L"Url",        L"Title",
        L"RootFolder", L"LocateFolder", L"LocateFile", L"AllFolders", L"AllFiles",
        L"Refresh",    L"Name",         L"IsWeb",      L"IsRoot",     L"Parent",
        L"Web",        L"Folders",      L"Files",      L"Count",      L"Item",
        L"Add",        L"Extension",    L"Delete",     L"ApplyTheme", L"Themes"})
    calls += web.host.faults().calls(member);
  return static_cast<double>(calls);
}

Samples callsOnce(long files) {
  return once(
      [=] {
        const OpenWeb web;
        copyWithout(files);
        return callsOf(web);
      },
      [=] {
        const OpenWeb web;
        copyBare(files, web);
        return callsOf(web);
      });
}

Row copyRow(long files, bool overwriting, bool dialog) {
  const std::string kind =
      std::string(overwriting ? "overwriting" : "copy") + (dialog ? ", with dialog" : "");
  const std::string id =
      std::string(overwriting ? "overwrite" : "copy") + (dialog ? "-dialog-" : "-");
  Row row;
  row.id = id + std::to_string(files);
  row.work = kind + ": " + std::to_string(files) + " files";
  row.series = id;
  row.size = files;
  // Below that, what comes once in a copy counts for more than what comes with each file.
  if (files >= 1000) row.limit = {Limit::times, dialog ? 1.6 : 1.3};
  row.run = [=] { return copyInPairs(files, overwriting, dialog ? copyWithDialog : copyWithout); };
  return row;
}

}  // namespace

std::vector<Row> copyRows() {
  std::vector<Row> rows;
  for (const bool overwriting : {false, true})
    for (const bool dialog : {false, true})
      for (const long files : {10, 1000, 5000}) rows.push_back(copyRow(files, overwriting, dialog));
  rows.push_back({"calls",
                  "host calls for a copy of 1000 files in 100 folders",
                  "",
                  0,
                  {Limit::most, 3300},
                  [] { return callsOnce(1000); }});
  return rows;
}

}  // namespace bench
