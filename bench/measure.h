// Measuring a piece of the product against a bare loop: the same system calls with nothing of ours
// around them.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace bench {

// Why a row cannot be run.
struct CannotRun {
  std::string why;
};

class Stopwatch {
 public:
  Stopwatch() noexcept { QueryPerformanceCounter(&began_); }
  double milliseconds() const noexcept;

 private:
  LARGE_INTEGER began_ = {};
};

// Times in milliseconds; counts, or megabytes, in the rows that are about those.
struct Samples {
  std::vector<double> ours;
  std::vector<double> bare;
};

using Sample = std::function<double()>;

// Ours, bare, ours, bare...: whatever else the machine does meets both alike.
Samples inPairs(const Sample& ours, const Sample& bare);
// One of each, for what does not depend on the time.
Samples once(const Sample& ours, const Sample& bare);

struct Limit {
  enum Kind {
    none,   // the row is there for its growth
    times,  // ours over bare
    added,  // ours less bare, in milliseconds
    most,   // ours alone
  };
  Kind kind = none;
  double value = 0;
};

struct Row {
  std::string id;      // rows that are run together share it, and stand together
  std::string work;    // as the table has it
  std::string series;  // rows of one series differ in their size only
  long size = 0;
  Limit limit;
  std::function<Samples()> run;
};

// What the rows work on: the folder that lay-out has filled, and where it is served.
struct Places {
  std::wstring folder;   // without a backslash at its end
  std::wstring address;  // without a "/" at its end

  std::wstring operator/(const std::wstring& relative) const { return folder + L"\\" + relative; }
};
const Places& places() noexcept;
void setPlaces(Places places);

// This program once more, for what only a new process can show. `name` is one of the children that
// the rows know; the answer are the numbers that it prints.
std::vector<double> child(const std::string& name);

}  // namespace bench
