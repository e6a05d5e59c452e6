// What finding and describing templates asks of the system, and nothing else.
#pragma once

#include <functional>
#include <string>

namespace bench {

// One template's record, with the files of it looked up on the disk.
struct BareTemplate {
  std::string file;    // the template itself
  std::string folder;  // with a backslash at its end
  std::string title;
  std::string description;
  std::string preview;  // full path
};

// The messages that are in the queue, as a program looks for them in one call.
void pumpQueue();

BareTemplate describe(const std::string& folder, const std::string& fileName);

// Every template of the immediate sub-folders.
void scan(const std::string& folder, const std::function<void(const BareTemplate&)>& found);

}  // namespace bench
