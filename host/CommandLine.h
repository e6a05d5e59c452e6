// How the program is started:
//   quillet-host.exe [web folder] [--themes folder] [--version text] [--script file|-] [--stay]
//                    [--pictures folder] [--no-addins] [--by-dispatch] [--show-pages]
//                    [--option name=value]...
#pragma once

#include <string>
#include <vector>

#include "host/model/HostOptions.h"

namespace standin {

struct CommandLine {
  std::wstring webFolder;
  std::wstring themesFolder;
  std::wstring script;    // a file, "-" for the standard input, empty for none
  std::wstring pictures;  // where pictures go; the current folder when empty
  bool stay = false;      // the window stays open behind the script's last line
  bool addIns = true;
  bool byDispatch = false;  // add-ins are called through Invoke
  bool showPages = false;   // in a browser control of the host's own
  HostOptions options;
  std::wstring error;  // what is wrong with it; empty when nothing is
};

// `arguments` without the program's name.
CommandLine parseCommandLine(const std::vector<std::wstring>& arguments);

}  // namespace standin
