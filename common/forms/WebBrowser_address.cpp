// What only tests ask, in a file of its own: what ships does not link it.
#include "common/com.h"
#include "common/forms/WebBrowser.h"

namespace forms {

std::wstring WebBrowser::address() const {
  com::Bstr url;
  if (!browser_ || FAILED(browser_->get_LocationURL(url.put()))) return {};
  return url.text();
}

}  // namespace forms
