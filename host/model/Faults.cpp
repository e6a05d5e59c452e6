#include "host/model/Faults.h"

#include <stdexcept>

#include "host/model/AutomationObject.h"

namespace standin {
namespace {

// A misspelt name would make a test pass for the wrong reason.
const std::wstring& known(const std::wstring& member) {
  if (!isMember(member)) throw std::invalid_argument("the host's model has no member of that name");
  return member;
}

}  // namespace

class Faults::Locked {
 public:
  explicit Locked(const Faults& faults) noexcept : faults_(faults) {
    EnterCriticalSection(&faults_.lock_);
  }
  ~Locked() { LeaveCriticalSection(&faults_.lock_); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;

 private:
  const Faults& faults_;
};

void Faults::refuse(const std::wstring& member, std::wstring description, long code, int skipped,
                    int times) {
  const Locked locked(*this);
  refusals_[known(member)] = {{code, std::move(description)}, skipped, times};
}

void Faults::returnNothing(const std::wstring& member) {
  const Locked locked(*this);
  nothing_[known(member)] = true;
}

void Faults::before(const std::wstring& member, std::function<void()> action) {
  const Locked locked(*this);
  actions_[known(member)] = std::move(action);
}

void Faults::watch(Watcher watcher) {
  const Locked locked(*this);
  watcher_ = std::move(watcher);
  watchedCalls_ = 0;
}

void Faults::clear() {
  const Locked locked(*this);
  watcher_ = nullptr;
  refusals_.clear();
  nothing_.clear();
  actions_.clear();
}

int Faults::calls(std::wstring_view member) const {
  known(std::wstring(member));
  const Locked locked(*this);
  const auto found = calls_.find(member);
  return found == calls_.end() ? 0 : found->second;
}

int Faults::allCalls() const {
  const Locked locked(*this);
  return allCalls_;
}

int Faults::namesAsked() const {
  const Locked locked(*this);
  return namesAsked_;
}

void Faults::resetCalls() {
  const Locked locked(*this);
  calls_.clear();
  allCalls_ = namesAsked_ = 0;
  arguments_.clear();
}

std::vector<std::wstring> Faults::lastArguments(std::wstring_view member) const {
  known(std::wstring(member));
  const Locked locked(*this);
  const auto found = arguments_.find(member);
  return found == arguments_.end() ? std::vector<std::wstring>() : found->second;
}

bool Faults::meet(const std::vector<std::wstring>& names,
                  const std::vector<std::wstring>& arguments) {
  noteCall(names, arguments);
  bool nothing = false;
  for (const auto& name : names)
    if (meet(name)) nothing = true;
  return nothing;
}

bool Faults::meet(const std::wstring& name) {
  // A copy that runs unlocked: the action may change the plan, and may take its time.
  if (const auto action = actionOf(name)) action();
  const Locked locked(*this);
  if (const auto refusal = refusals_.find(name); refusal != refusals_.end()) {
    Planned& planned = refusal->second;
    if (planned.skipped > 0) {
      --planned.skipped;
    } else if (planned.times != 0) {
      if (planned.times > 0) --planned.times;
      throw Refusal(planned.refusal);
    }
  }
  return nothing_.contains(name);
}

void Faults::noteCall(const std::vector<std::wstring>& names,
                      const std::vector<std::wstring>& arguments) {
  const Locked locked(*this);
  ++allCalls_;
  for (const auto& name : names) {
    ++calls_[name];
    arguments_[name] = arguments;
  }
}

std::optional<com::Variant> Faults::watched(const std::wstring& member) {
  // A copy that runs unlocked: the watcher may end the watch, and may take its time.
  Watcher watcher;
  HostCall call = {0, member};
  {
    const Locked locked(*this);
    if (!watcher_) return std::nullopt;
    watcher = watcher_;
    call.number = ++watchedCalls_;
  }
  return watcher(call);
}

// A result that is none of its own means that the call did not do what it was for.
HRESULT Faults::watchedBare(const std::wstring& member) noexcept {
  try {
    return watched(member) ? E_NOTIMPL : S_OK;
  } catch (const Failure& failure) {
    return failure.outcome;
  } catch (...) {
    return E_FAIL;
  }
}

void Faults::noteName() {
  const Locked locked(*this);
  ++namesAsked_;
}

std::function<void()> Faults::actionOf(const std::wstring& name) const {
  const Locked locked(*this);
  const auto action = actions_.find(name);
  return action == actions_.end() ? std::function<void()>() : action->second;
}

}  // namespace standin
