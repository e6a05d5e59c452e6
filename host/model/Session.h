// What all objects of one running host share.
#pragma once

#include <functional>
#include <string>

#include "common/com.h"
#include "host/model/Faults.h"
#include "host/model/HostOptions.h"

namespace standin {

struct Session {
  HostOptions options;
  Faults faults;

  std::wstring webFolder;     // of the open web, without a trailing backslash; empty: none is open
  long webGeneration = 0;     // changes whenever a web is opened or closed
  std::wstring themesFolder;  // installed themes; may be empty

  std::function<void()> menuChanged = [] {};
  std::function<void()> webChanged = [] {};
  std::function<void()> activated = [] {};  // the host is to come to the front

  long liveObjects = 0;

  // An object that is not there, as this host says it.
  com::Variant nothing() const {
    return options.nothingIsEmpty ? com::Variant() : com::Variant(static_cast<IDispatch*>(nullptr));
  }
};

}  // namespace standin
