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

// While it lives, this thread makes windows and loads modules as if no such scope were there: for
// calls into the host from our windows.
class HostStyles {
 public:
  HostStyles() noexcept;
  ~HostStyles();
  HostStyles(const HostStyles&) = delete;
  HostStyles& operator=(const HostStyles&) = delete;

 private:
  ULONG_PTR cookie_ = 0;
};
