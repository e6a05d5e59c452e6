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

void Faults::refuse(const std::wstring& member, std::wstring description, long code, int skipped,
                    int times) {
  refusals_[known(member)] = {{code, std::move(description)}, skipped, times};
}

void Faults::returnNothing(const std::wstring& member) { nothing_[known(member)] = true; }

void Faults::before(const std::wstring& member, std::function<void()> action) {
  actions_[known(member)] = std::move(action);
}

void Faults::clear() {
  refusals_.clear();
  nothing_.clear();
  actions_.clear();
}

int Faults::calls(std::wstring_view member) const {
  known(std::wstring(member));
  const auto found = calls_.find(member);
  return found == calls_.end() ? 0 : found->second;
}

bool Faults::meet(const std::vector<std::wstring>& names) {
  bool nothing = false;
  for (const auto& name : names) {
    ++calls_[name];
    // A copy, so that the action may clear the plan it stands in.
    if (const auto action = actions_.find(name); action != actions_.end()) {
      const auto run = action->second;
      run();
    }
    if (nothing_.contains(name)) nothing = true;
    const auto refusal = refusals_.find(name);
    if (refusal == refusals_.end()) continue;
    Planned& planned = refusal->second;
    if (planned.skipped > 0) {
      --planned.skipped;
    } else if (planned.times != 0) {
      if (planned.times > 0) --planned.times;
      throw planned.refusal;
    }
  }
  return nothing;
}

}  // namespace standin
