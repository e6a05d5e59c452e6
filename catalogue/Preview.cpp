#include "catalogue/Preview.h"

#include "common/text.h"

Preview previewOf(const std::wstring& templateFile, const TemplateInfo& info) {
  Preview preview;
  preview.description = info.description;
  preview.file = info.preview.empty() ? templateFile : info.preview;
  preview.notes = info.readme.empty() ? preview.file : info.readme;
  preview.isImage = IsImageFile(preview.file);
  preview.heading = emptyHeading + info.title + L"     " +
                    (preview.isImage ? L"[Image Preview]" : L"[HTML Preview]");
  return preview;
}

std::wstring wrappable(std::wstring_view path) { return text::replaceAll(path, L"\\", L"\\ "); }

long zoomed(long length, long percent) {
  const long long hundredfold = static_cast<long long>(length) * percent;
  const long long whole = hundredfold / 100;
  const long long rest = hundredfold % 100;
  const bool up = rest > 50 || (rest == 50 && whole % 2 != 0);
  return static_cast<long>(whole + (up ? 1 : 0));
}
