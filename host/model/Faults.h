// What a test makes the host do wrong, and how often each member was used.
//
// A member is named "WebFolders.Add", or "Add" for the members of that name of every class. Plans
// may be made on another thread than the host's; actions run on the host's.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace standin {

// Raised by a member: the caller gets DISP_E_EXCEPTION with this text. A code up to 0xFFFF goes
// into EXCEPINFO's wCode, another one into its scode.
struct Refusal {
  long code;
  std::wstring description;
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
  std::map<std::wstring, Planned, std::less<>> refusals_;
  std::map<std::wstring, bool, std::less<>> nothing_;
  std::map<std::wstring, std::function<void()>, std::less<>> actions_;
  std::map<std::wstring, int, std::less<>> calls_;
  int allCalls_ = 0;
  int namesAsked_ = 0;
  std::map<std::wstring, std::vector<std::wstring>, std::less<>> arguments_;
};

}  // namespace standin
