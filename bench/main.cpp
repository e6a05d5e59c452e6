// quillet-bench FOLDER ADDRESS rows | row ID | child NAME
//
// FOLDER is what lay-out has filled, ADDRESS where it is served. "rows" lists the rows'
// identifiers; "row" runs one and prints it for report, in fields divided by tabs.
#include <windows.h>

#include <ole2.h>

#include <cstdio>
#include <exception>
#include <utility>

#include "bench/rows.h"
#include "common/errors.h"

namespace {

using bench::Row;

std::vector<Row> allRows() {
  std::vector<Row> all;
  for (const auto rows : {bench::windowRows, bench::selectionRows, bench::copyRows,
                          bench::downloadRows, bench::unpackingRows, bench::moduleRows})
    for (auto& row : rows()) all.push_back(std::move(row));
  return all;
}

const char* nameOf(bench::Limit::Kind kind) {
  switch (kind) {
    case bench::Limit::times:
      return "times";
    case bench::Limit::added:
      return "added";
    case bench::Limit::most:
      return "most";
    default:
      return "none";
  }
}

std::string listed(const std::vector<double>& numbers) {
  std::string text;
  for (const double number : numbers) text += (text.empty() ? "" : " ") + std::to_string(number);
  return text;
}

void print(const Row& row, const bench::Samples& samples) {
  std::printf("%s\t%s\t%ld\t%s\t%g\t%s\t%s\n", row.work.c_str(), row.series.c_str(), row.size,
              nameOf(row.limit.kind), row.limit.value, listed(samples.ours).c_str(),
              listed(samples.bare).c_str());
}

int runRow(const std::string& id) {
  bool known = false;
  for (const Row& row : allRows()) {
    if (row.id != id) continue;
    print(row, row.run());
    known = true;
  }
  if (!known) std::printf("there is no such row\n");
  return known ? 0 : 2;
}

int runChild(const std::string& name) {
  for (const auto children :
       {bench::windowChildren, bench::selectionChildren, bench::moduleChildren})
    for (const auto& [known, run] : children())
      if (known == name) {
        std::printf("%s\n", listed(run()).c_str());
        return 0;
      }
  return 2;
}

int listRows() {
  std::string last;
  for (const Row& row : allRows())
    if (std::exchange(last, row.id) != row.id) std::printf("%s\n", row.id.c_str());
  return 0;
}

std::wstring wide(const char* text) {
  const std::string narrow = text;
  return {narrow.begin(), narrow.end()};
}

int run(int count, char** words) {
  if (count < 4) return 2;
  bench::setPlaces({wide(words[1]), wide(words[2])});
  const std::string what = words[3];
  if (what == "rows") return listRows();
  if (count < 5) return 2;
  if (what == "row") return runRow(words[4]);
  return what == "child" ? runChild(words[4]) : 2;
}

}  // namespace

int main(int count, char** words) {
  OleInitialize(nullptr);
  int code = 1;
  try {
    code = run(count, words);
  } catch (const bench::CannotRun& reason) {
    std::printf("%s\n", reason.why.c_str());
  } catch (const Error& error) {
    std::printf("error %ld: %ls\n", error.number(), std::wstring(error.description()).c_str());
  } catch (const std::exception& error) {
    std::printf("%s\n", error.what());
  }
  std::fflush(stdout);
  return code;
}
