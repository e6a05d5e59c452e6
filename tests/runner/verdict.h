// What the run of one test case says about it.
#pragma once

#include <string>
#include <vector>

enum class Result { passed, failed, skipped };

struct Verdict {
  Result result = Result::failed;
  std::vector<std::string> lines;  // why
};

// `name` is the case's and `output` is what doctest has printed about it, with the time that it
// took.
Verdict judge(bool isEnded, unsigned long code, const std::string& output, const std::string& name);

// The names of the cases in the order in which doctest numbers them, out of the list that it has
// printed. Throws std::runtime_error when that is no whole list.
std::vector<std::string> namesOf(const std::string& list);
