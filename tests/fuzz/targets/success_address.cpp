// The page that a catalogue wants to be shown after a download.
#include <algorithm>
#include <array>

#include "common/text.h"
#include "online/download_page.h"
#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

wchar_t lower(wchar_t letter) {
  return letter >= L'A' && letter <= L'Z' ? static_cast<wchar_t>(letter + 32) : letter;
}

// Ignoring letter case in the plainest way.
bool begins(std::wstring_view text, std::wstring_view beginning) {
  return text.size() >= beginning.size() &&
         std::equal(beginning.begin(), beginning.end(), text.begin(),
                    [](wchar_t one, wchar_t other) { return one == lower(other); });
}

void checkShowable(const std::wstring& address) {
  for (const wchar_t letter : address)
    promise(letter >= 0x20 && letter != 0x7F, "no control characters");
  if (begins(address, L"about:blank")) return promise(address.size() == 11, "the blank page alone");
  constexpr std::array<std::wstring_view, 3> schemes = {L"http://", L"https://", L"ftp://"};
  const auto scheme = std::find_if(schemes.begin(), schemes.end(),
                                   [&](auto each) { return begins(address, each); });
  promise(scheme != schemes.end(), "an address of the network");
  promise(address.size() > scheme->size() &&
              std::wstring_view(L" /\\?#").find(address[scheme->size()]) == std::wstring::npos,
          "an address with a host");
}

const fuzz::Target target("success_address", [](fuzz::Input input) {
  const std::wstring extra = input.text();
  const auto success = successAddress(extra);
  if (success) {
    promise(extra.find(L"=" + *success) != extra.npos, "it stands as it is behind an equals sign");
    promise(success->find(L'&') == success->npos, "it is one part of the query");
    if (isShowable(*success)) checkShowable(*success);
  }
  const std::wstring address = input.text();
  if (isShowable(address)) {
    checkShowable(address);
    promise(
        !isShowable(L" " + address) && !isShowable(L"x" + address) && !isShowable(L"/" + address),
        "nothing stands before the scheme");
    // A blank would be trimmed.
    if (address.find(L'&') == address.npos && text::trimBlanks(address) == address)
      promise(successAddress(L"?a=b&SUCCESS=" + address) == address, "an address comes back");
  }

  const std::wstring path = input.text();
  const bool isDownload = isDownloadPage(L"/" + path);
  promise(isDownloadPage(L"/x/y\\/" + path) == isDownload, "folders before it make no difference");
  if (path.find_first_of(L"?#") == path.npos && path.find(L"://") == path.npos)
    promise(isDownloadAddress(L"http://h/" + path) == isDownload,
            "an address is seen like its path");
});

}  // namespace
