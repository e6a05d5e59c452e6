// What a test makes the host do wrong, and how often each member was used.
//
// A member is named "WebFolders.Add", or "Add" for the members of that name of every class. Plans
// may be made on another thread than the host's; actions run on the host's.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/com.h"

namespace standin {

// Raised by a member: the caller gets DISP_E_EXCEPTION with this text. A code up to 0xFFFF goes
// into EXCEPINFO's wCode, another one into its scode.
struct Refusal {
  long code;
  std::wstring description;  // empty: without a text
};

// Raised by a member: the caller gets this HRESULT and nothing else, as from a host that is gone.
struct Failure {
  HRESULT outcome;
};

// One call that reaches an object of the host: of a member ("WebFiles.Add"), for a member's number
// ("the name WebFiles.Add") or to a button's events ("events Advise").
struct HostCall {
  int number;  // from 1 on, since the watch began
  std::wstring member;
};

class Faults {
 public:
  Faults() noexcept { InitializeCriticalSection(&lock_); }
  ~Faults() { DeleteCriticalSection(&lock_); }
  Faults(const Faults&) = delete;
  Faults& operator=(const Faults&) = delete;

  // Calls of the member are refused: all of them, or `times` of them after the first `skipped`.
  void refuse(const std::wstring& member, std::wstring description, long code = E_FAIL,
              int skipped = 0, int times = -1);
  // The member succeeds, does nothing and gives nothing back.
  void returnNothing(const std::wstring& member);
  // `action` runs before each call of the member.
  void before(const std::wstring& member, std::function<void()> action);
  // `watcher` is asked before every call. What it gives is the call's result then, and the call is
  // not made; it may raise a Refusal or a Failure, and may do whatever can happen during a call.
  // None ends the watch.
  using Watcher = std::function<std::optional<com::Variant>(const HostCall&)>;
  void watch(Watcher watcher);
  // Ends everything the above has set up.
  void clear();

  int calls(std::wstring_view member) const;
  // Of all members together, and how often a member's name was asked to be resolved.
  int allCalls() const;
  int namesAsked() const;
  // What the member was given at its last call, as texts: "-1" and "0" for booleans, nothing for an
  // object and for what was left out.
  std::vector<std::wstring> lastArguments(std::wstring_view member) const;
  void resetCalls();

  // Used by the objects: notes the call, runs the actions, raises the refusal. True when the
  // member is to give nothing.
  bool meet(const std::vector<std::wstring>& names, const std::vector<std::wstring>& arguments);
  void noteName();
  // The watcher's answer to a call of a member, and to one that gives no value.
  std::optional<com::Variant> watched(const std::wstring& member);
  HRESULT watchedBare(const std::wstring& member) noexcept;

 private:
  struct Planned {
    Refusal refusal;
    int skipped;
    int times;  // -1: for ever
  };

  class Locked;
  bool meet(const std::wstring& name);
  void noteCall(const std::vector<std::wstring>& names, const std::vector<std::wstring>& arguments);
  std::function<void()> actionOf(const std::wstring& name) const;

  mutable CRITICAL_SECTION lock_;
  Watcher watcher_;
  int watchedCalls_ = 0;
  std::map<std::wstring, Planned, std::less<>> refusals_;
  std::map<std::wstring, bool, std::less<>> nothing_;
  std::map<std::wstring, std::function<void()>, std::less<>> actions_;
  std::map<std::wstring, int, std::less<>> calls_;
  int allCalls_ = 0;
  int namesAsked_ = 0;
  std::map<std::wstring, std::vector<std::wstring>, std::less<>> arguments_;
};

}  // namespace standin
