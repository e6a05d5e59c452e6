// Makes the journeys with everything that can go wrong going wrong, one thing after another.
//
//   quillet-torture list KIND                      JOURNEY, WAY and number of runs, one a line
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
#include "tests/torture/Torture.h"

namespace {

constexpr DWORD patience = 120000;  // milliseconds for one run and the undisturbed ones behind it

std::string narrow(const std::wstring& text) {
  std::string bytes(text.size() * 3, '\0');
  bytes.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr)));
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
constexpr Stretch stretches[] = {
    {"connection", 500}, {"copy", 50}, {"download", 50}, {"windows", 100}};

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

int run(const std::vector<std::string>& words) {
  const bool isList = words.size() == 2 && words[0] == "list";
  if (!isList && words.size() != 5) return 2;
  const std::string& kind = isList ? words[1] : words[0];
  const bool isHost = kind == "host";
  const bool isEndurance = kind == "endurance";
  if (!isHost && !isEndurance && kind != "system" && kind != "cancel") return 2;
  if (isList) {
    isHost ? listHost() : isEndurance ? listEndurance() : listSystem(kind);
    return 0;
  }
  const torture::Journey& journey = torture::journeyOf(words[1]);
  const int way = std::stoi(words[2]);
  const int from = std::stoi(words[3]);
  const int to = std::stoi(words[4]);
  if (isHost)
    runHost(journey, way, from, to);
  else if (isEndurance)
    runEndurance(journey, from, to);
  else
    runSystem(kind, journey, way, from, to);
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
