#include "author/PageSource.h"

#include "common/errors.h"

namespace author {

PageSource::PageSource() {
  // Not run by tests: the system refuses none, even without a network.
  if (!session_.open())
    throw Error(errors::pathNotFound, L"Could not open a connection to the internet.");
  session_.readProxy();
}

PageSource::Page PageSource::ask(const std::wstring& address) {
  Page page;
  const handles::Internet file = session_.openUrl(address);
  page.isReached = static_cast<bool>(file);
  if (file) page.status = session_.status(file);
  return page;
}

PageSource::Page PageSource::read(const std::wstring& address) {
  Page page;
  const handles::Internet file = session_.openUrl(address);
  page.isReached = static_cast<bool>(file);
  if (!file) return page;
  page.status = session_.status(file);
  std::string piece(16384, '\0');
  while (page.isThere()) {
    const auto got = session_.read(file, piece.data(), static_cast<DWORD>(piece.size()));
    if (!got) page.isWhole = false;
    if (!got || *got == 0) break;
    page.bytes.append(piece, 0, *got);
    if (page.bytes.size() <= largestPage) continue;
    page.isWhole = false;
    break;
  }
  // A connection that the server ends too early is no error of the system's.
  if (page.isThere() && page.bytes.size() < session_.contentLength(file).value_or(0))
    page.isWhole = false;
  return page;
}

}  // namespace author
