#include "common/visual_styles.h"

#include "tests/support/activation_context.h"
#include "tests/support/text_output.h"

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

TEST_CASE("the visual styles are those of the common controls that have them") {
  const auto redirects = [] {
    ACTCTX_SECTION_KEYED_DATA found = {};
    found.cbSize = sizeof found;
    return FindActCtxSectionStringW(0, nullptr, ACTIVATION_CONTEXT_SECTION_DLL_REDIRECTION,
                                    L"comctl32.dll", &found) != FALSE;
  };
  CHECK_FALSE(redirects());
  const VisualStyles styles;
  CHECK(redirects());
}
