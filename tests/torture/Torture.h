// Journeys that are made again and again, each time with one thing going wrong, and the judgement
// of what came of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/torture/HostTrouble.h"
#include "tests/torture/SystemTrouble.h"
#include "tests/torture/World.h"

namespace torture {

struct Journey {
  const char* name;
  void (*before)(World&);  // undisturbed
  void (*body)(World&);
  void (*after)(World&);  // undisturbed
  const wchar_t* makes;   // a file that is there then
};
const std::vector<Journey>& journeys();
const Journey& journeyOf(std::string_view name);

// What came of one thing that went wrong.
struct Verdict {
  std::wstring where;   // the call that it befell
  std::string outcome;  // "as always", "a line", "a message", "given up quietly", "never came"
  Lines said;           // what the user was told besides, or the log
  Lines complaints;
};

// One journey in one world.
class Trial {
 public:
  Trial(World& world, const Journey& journey);

  int hostCalls() const noexcept { return hostCalls_; }
  int systemCalls(Kind kind);
  Verdict withHostTrouble(HostWay way, int number);
  // Undisturbed: nothing may grow, not even by what is kept on purpose.
  Verdict again();
  Verdict withSystemTrouble(const SystemWay& way, int number);
  // Somebody does anything at all before the journey.
  Verdict withMonkey(unsigned seed, int actions);

 private:
  struct Course {
    Seen first;
    Seen second;
    std::map<std::string, long> held;
  };

  Course run(const std::function<void()>& body, Lines& complaints);
  Course runUntilSteady(const std::function<void()>& body, Lines& complaints);
  void compare(const Course& course, bool hostWasGone, Verdict& verdict) const;
  Verdict judge(const Course& course, bool hostWasGone, Verdict verdict) const;
  void letMonkeyPlay(unsigned seed, int actions, Lines& complaints);
  bool takesMore();
  void watchMemory(Lines& complaints);
  static void demandWord(HostWay way, Verdict& verdict);
  void demandWord(const SystemWay& way, const Course& course, Verdict& verdict) const;

  World& world_;
  const Journey& journey_;
  int hostCalls_ = 0;
  Course usual_;
  std::map<std::string, long> most_;  // held after a monkey
  int times_ = 0;
  std::size_t memory_ = 0;  // of the process when it had warmed up
};

}  // namespace torture
