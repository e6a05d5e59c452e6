#include "tests/runner/Report.h"

#include <windows.h>

#include <stdexcept>

namespace {

constexpr char byteOrderMark[] = "\xEF\xBB\xBF";

const char* wordFor(Result result) {
  if (result == Result::passed) return "  passed   ";
  return result == Result::skipped ? "  skipped  " : "  FAILED   ";
}

void write(HANDLE file, const std::string& bytes) {
  DWORD written = 0;
  if (!WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr))
    throw std::runtime_error("the report cannot be written");
}

// A program that crashes may print anything.
std::string asUtf8(std::string text) {
  if (text.empty() || MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(),
                                          static_cast<int>(text.size()), nullptr, 0) > 0)
    return text;
  for (char& letter : text)
    if (static_cast<unsigned char>(letter) >= 0x80) letter = '?';
  return text;
}

}  // namespace

Report::Report(const std::wstring& path)
    : file_(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                        FILE_ATTRIBUTE_NORMAL, nullptr)) {
  if (!file_) throw std::runtime_error("the report cannot be written");
  write(file_.get(), byteOrderMark);
}

void Report::line(const std::string& text) { write(file_.get(), asUtf8(text) + "\r\n"); }

void Report::add(const std::string& name, const Verdict& verdict) {
  ++counts_[verdict.result];
  line(wordFor(verdict.result) + name);
  for (const std::string& each : verdict.lines) line("             " + each);
}

int Report::count(Result result) const {
  const auto found = counts_.find(result);
  return found == counts_.end() ? 0 : found->second;
}

std::string Report::summary() const {
  const int passed = count(Result::passed), failed = count(Result::failed),
            skipped = count(Result::skipped);
  const int all = passed + failed + skipped;
  return std::to_string(all) + (all == 1 ? " test: " : " tests: ") + std::to_string(passed) +
         " passed, " + std::to_string(failed) + " failed, " + std::to_string(skipped) + " skipped";
}
