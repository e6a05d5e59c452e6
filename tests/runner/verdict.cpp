#include "tests/runner/verdict.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string_view>

namespace {

using Lines = std::vector<std::string>;

constexpr std::string_view separator = "=====";
constexpr std::string_view ofDoctest = "[doctest] ";
constexpr std::string_view skippedMark = ": test case THREW exception: skipped: ";

Lines linesOf(const std::string& text) {
  Lines lines(1);
  for (const char letter : text) {
    if (letter == '\n')
      lines.emplace_back();
    else if (letter != '\r')
      lines.back() += letter;
  }
  if (lines.back().empty()) lines.pop_back();
  return lines;
}

bool contains(const std::string& line, std::string_view what) {
  return line.find(what) != line.npos;
}

// A crashed program sometimes ends with code 0, so the last word must be doctest's.
bool endsWith(const Lines& lines, std::string_view status) {
  return !lines.empty() && lines.back() == status;
}

// "file.cpp:12:" in front of what happened there, which says the same.
bool isPlace(const std::string& line) { return line.ends_with(':') && !contains(line, " "); }

// Without what surrounds every case.
Lines told(const Lines& lines, const std::string& name) {
  Lines result;
  for (const std::string& line : lines)
    if (!line.empty() && !line.starts_with(ofDoctest) && !line.starts_with(separator) &&
        line != "TEST CASE:  " + name && !line.ends_with(" s: " + name) && !isPlace(line))
      result.push_back(line);
  return result;
}

// Nothing had failed before the case asked to be left out.
std::string reasonToSkip(const Lines& lines) {
  const bool noneFailed = std::ranges::any_of(lines, [](const std::string& line) {
    return line.starts_with("[doctest] assertions: ") && line.ends_with(" 0 failed |");
  });
  if (!noneFailed || !endsWith(lines, "[doctest] Status: FAILURE!")) return {};
  for (const std::string& line : lines)
    if (const auto at = line.find(skippedMark); at != line.npos)
      return line.substr(at + skippedMark.size());
  return {};
}

// Those of crashes are known by their hexadecimal digits.
std::string codeText(unsigned long code) {
  constexpr unsigned long ordinary = 0xFFFF;
  char text[16] = {};
  std::snprintf(text, sizeof text, code > ordinary ? "0x%lX" : "%lu", code);
  return text;
}

bool hasRun(const Lines& lines, const std::string& name) {
  return std::ranges::any_of(
      lines, [&](const std::string& line) { return line.ends_with(" s: " + name); });
}

}  // namespace

Verdict judge(bool isEnded, unsigned long code, const std::string& output,
              const std::string& name) {
  const Lines lines = linesOf(output);
  Verdict verdict;
  verdict.lines = told(lines, name);
  const auto fail = [&](const std::string& why) {
    verdict.lines.push_back(why);
    return verdict;
  };
  if (!isEnded) return fail("It was not done when its time was over.");
  if (const std::string reason = reasonToSkip(lines); !reason.empty())
    return {Result::skipped, {reason}};
  if (endsWith(lines, "[doctest] Status: FAILURE!")) return verdict;
  if (!endsWith(lines, "[doctest] Status: SUCCESS!"))
    return fail("It ended before its end, with code " + codeText(code) + ".");
  if (code != 0) return fail("It ended with code " + codeText(code) + ".");
  if (!hasRun(lines, name)) return fail("It has not run.");
  return {Result::passed, {}};
}

std::vector<std::string> namesOf(const std::string& list) {
  const Lines lines = linesOf(list);
  const auto isSeparator = [](const std::string& line) { return line.starts_with(separator); };
  const auto begin = std::ranges::find_if(lines, isSeparator);
  const auto end = begin == lines.end() ? begin : std::find_if(begin + 1, lines.end(), isSeparator);
  const Lines names(begin == lines.end() ? begin : begin + 1, end);
  if (end == lines.end() || names.empty() ||
      lines.back() != "[doctest] unskipped test cases passing the current filters: " +
                          std::to_string(names.size()))
    throw std::runtime_error("it does not list its tests");
  return names;
}
