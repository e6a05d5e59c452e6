// Makes the journeys with everything that can go wrong going wrong, one thing after another.
//
//   quillet-torture list KIND                      JOURNEY, WAY and number of runs, one a line, and
//                                                  "listed" at the end
//   quillet-torture KIND JOURNEY WAY FROM TO       makes these runs, one row for each
//
// A row has the word "row", the kind, the journey, what goes wrong, the number of the run, the
// call, the outcome, what was told of it, and what is wrong.
#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tests/support/Watchdog.h"
#include "tests/support/utf8.h"
#include "tests/torture/Torture.h"

namespace {

constexpr DWORD patience = 120000;  // milliseconds for one run and the undisturbed ones behind it

// In one field of a row.
std::string narrow(const std::wstring& text) {
  std::string bytes = toUtf8(text);
  for (char& each : bytes)
    if (each == '\t' || each == '\r' || each == '\n') each = ' ';
  return bytes;
}

std::string joined(const torture::Lines& lines) {
  constexpr std::size_t longest = 600;
  std::string all;
  for (const auto& line : lines) all += (all.empty() ? "" : "; ") + narrow(line);
  return all.substr(0, longest);
}

void print(const char* kind, const char* journey, const char* way, int number,
           const torture::Verdict& verdict) {
  std::printf("row\t%s\t%s\t%s\t%d\t%s\t%s\t%s\t%s\n", kind, journey, way, number,
              narrow(verdict.where).c_str(),
              verdict.complaints.empty() ? verdict.outcome.c_str() : "WRONG",
              joined(verdict.said).c_str(), joined(verdict.complaints).c_str());
  std::fflush(stdout);
}

void listHost() {
  torture::World world;
  for (const torture::Journey& journey : torture::journeys()) {
    const torture::Trial trial(world, journey);
    if (trial.hostCalls() == 0) continue;
    for (int way = 0; way < torture::hostWays; ++way)
      std::printf("host %s %d %d\n", journey.name, way, trial.hostCalls());
  }
}

void runHost(const torture::Journey& journey, int way, int from, int to) {
  torture::World world;
  torture::Trial trial(world, journey);
  const auto asked = static_cast<torture::HostWay>(way);
  for (int number = from; number <= to; ++number) {
    const Watchdog watchdog(patience);
    print("host", journey.name, nameOf(asked), number, trial.withHostTrouble(asked, number));
  }
}

// Allocations are many: in each journey they are tried at even steps, a whole number apart.
constexpr int mostOfAKind = 2500;

int stepOf(int calls) { return 1 + (calls - 1) / mostOfAKind; }

bool belongsTo(const std::string& kind, const torture::SystemWay& way) {
  return (way.kind == torture::Kind::yields) == (kind == "cancel");
}

void listSystem(const std::string& kind) {
  torture::World world;
  for (const torture::Journey& journey : torture::journeys()) {
    torture::Trial trial(world, journey);
    for (std::size_t way = 0; way < torture::systemWays().size(); ++way) {
      const torture::SystemWay& each = torture::systemWays()[way];
      const int calls = belongsTo(kind, each) ? trial.systemCalls(each.kind) : 0;
      if (calls > 0)
        std::printf("%s %s %u %d\n", kind.c_str(), journey.name, static_cast<unsigned>(way),
                    1 + (calls - 1) / stepOf(calls));
    }
  }
}

void runSystem(const std::string& kind, const torture::Journey& journey, int way, int from,
               int to) {
  torture::World world;
  torture::Trial trial(world, journey);
  const torture::SystemWay& asked = torture::systemWays().at(static_cast<std::size_t>(way));
  const int step = stepOf(trial.systemCalls(asked.kind));
  for (int number = from; number <= to; ++number) {
    const Watchdog watchdog(patience);
    print(kind.c_str(), journey.name, asked.name, number,
          trial.withSystemTrouble(asked, 1 + (number - 1) * step));
  }
}

struct Stretch {
  const char* journey;
  int runs;  // of two visits each
};
constexpr Stretch stretches[] = {{"connection", 500}, {"copy", 100},     {"download", 100},
                                 {"windows", 100},    {"password", 100}, {"viewers", 100}};

void listEndurance() {
  for (const Stretch& each : stretches) std::printf("endurance %s 0 %d\n", each.journey, each.runs);
}

void runEndurance(const torture::Journey& journey, int from, int to) {
  torture::World world;
  torture::Trial trial(world, journey);
  for (int number = from; number <= to; ++number) {
    const Watchdog watchdog(patience);
    print("endurance", journey.name, "nothing", number, trial.again());
  }
}

// As many actions as somebody makes in eight hours, one in three seconds. A run's number is the
// seed.
constexpr int monkeys = 48;
constexpr int actionsOfMonkey = 200;

void runMonkey(const torture::Journey& journey, int from, int to) {
  torture::World world;
  torture::Trial trial(world, journey);
  for (int number = from; number <= to; ++number) {
    const Watchdog watchdog(patience);
    print("monkey", journey.name, "anything", number,
          trial.withMonkey(static_cast<unsigned>(number), actionsOfMonkey));
  }
}

int list(const std::string& kind) {
  if (kind == "host")
    listHost();
  else if (kind == "endurance")
    listEndurance();
  else if (kind == "monkey")
    std::printf("monkey copy 0 %d\n", monkeys);
  else if (kind == "system" || kind == "cancel")
    listSystem(kind);
  else
    return 2;
  std::printf("listed\n");
  return 0;
}

int run(const std::vector<std::string>& words) {
  const bool isList = words.size() == 2 && words[0] == "list";
  if (!isList && words.size() != 5) return 2;
  const std::string& kind = isList ? words[1] : words[0];
  if (isList) return list(kind);
  const torture::Journey& journey = torture::journeyOf(words[1]);
  const int way = std::stoi(words[2]);
  const int from = std::stoi(words[3]);
  const int to = std::stoi(words[4]);
  if (kind == "host")
    runHost(journey, way, from, to);
  else if (kind == "endurance")
    runEndurance(journey, from, to);
  else if (kind == "monkey")
    runMonkey(journey, from, to);
  else if (kind == "system" || kind == "cancel")
    runSystem(kind, journey, way, from, to);
  else
    return 2;
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  OleInitialize(nullptr);
  int result = 1;
  try {
    result = run(std::vector<std::string>(argv + 1, argv + argc));
  } catch (const std::exception& error) {
    std::printf("ERROR: %s\n", error.what());
  }
  OleUninitialize();
  return result;
}
