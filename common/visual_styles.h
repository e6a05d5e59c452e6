// Visual styles for our own windows, without touching the host's.
#pragma once

#include <windows.h>

// While it lives, windows created by this thread get the controls that the module's own manifest
// names (resource 2). Scopes nest.
class VisualStyles {
 public:
  VisualStyles() noexcept;
  ~VisualStyles();
  VisualStyles(const VisualStyles&) = delete;
  VisualStyles& operator=(const VisualStyles&) = delete;

 private:
  ULONG_PTR cookie_ = 0;
};
