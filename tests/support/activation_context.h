// The activation context of a thread, which gives its windows the visual styles.
#pragma once

#include <windows.h>

// The context that this thread makes windows and loads modules in; null is the process's own.
inline HANDLE activeContext() {
  HANDLE context = nullptr;
  GetCurrentActCtx(&context);
  if (context) ReleaseActCtx(context);
  return context;
}
