#include "common/visual_styles.h"

#include "tests/support/text_output.h"

namespace {

// The context that this thread makes windows in; null is the process's own.
HANDLE activeContext() {
  HANDLE context = nullptr;
  GetCurrentActCtx(&context);
  if (context) ReleaseActCtx(context);
  return context;
}

}  // namespace

TEST_CASE("the visual styles hold for a scope, and do not for the host in the middle of it") {
  CHECK(activeContext() == nullptr);
  {
    const VisualStyles styles;
    const HANDLE ours = activeContext();
    CHECK(ours != nullptr);
    {
      const HostStyles host;
      CHECK(activeContext() == nullptr);
      const VisualStyles again;
      CHECK(activeContext() == ours);
    }
    CHECK(activeContext() == ours);
  }
  CHECK(activeContext() == nullptr);
}
