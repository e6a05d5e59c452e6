// What a run of the program wrote, and how often it was asked to go on.
#pragma once

#include <string>
#include <vector>

#include "author/Console.h"

class RecordedConsole final : public author::Console {
 public:
  void print(std::wstring_view text) override { printed += text; }
  void complain(std::wstring_view text) override { complained += text; }
  void show(const std::wstring& step) override { steps.push_back(step); }
  bool keepGoing() override { return goesOn-- > 0; }

  std::wstring printed;
  std::wstring complained;
  std::vector<std::wstring> steps;
  int goesOn = 1000000;  // how often, before it is stopped
};
