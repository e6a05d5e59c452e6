// Downloading from a server on this machine.
#include <windows.h>

#include <wininet.h>

#include "bench/bare_scan.h"
#include "bench/rows.h"
#include "common/ansi.h"
#include "common/forms/Form.h"
#include "common/handles.h"
#include "host/model/Host.h"
#include "online/frmDownloadProgress.h"
#include "online/transfer/FileTransfer.h"
#include "online/transfer/SilentView.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScratchRegistry.h"

namespace bench {
namespace {

constexpr DWORD readSize = 255;
constexpr long megabyte = 1 << 20;

std::wstring fileName(long megabytes) {
  return L"download-" + std::to_wstring(megabytes) + L".zip";
}
std::wstring addressOf(long megabytes) { return places().address + L"/" + fileName(megabytes); }

class Silent final : public SilentView {
 public:
  bool keepGoing() override {
    forms::yieldToMessages();
    return true;
  }
  void fail(std::wstring_view text, std::wstring_view) noexcept override { failure = text; }
  bool ask(const std::wstring&) override { return true; }
  Overwrite overwrite(const std::wstring&) override { return Overwrite::yes; }
  std::optional<std::wstring> password(int) override { return std::nullopt; }

  std::wstring failure;
};

void checkSize(const std::wstring& path, long megabytes) {
  const handles::File file(
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file || GetFileSize(file.get(), nullptr) != static_cast<DWORD>(megabytes * megabyte))
    throw CannotRun{"the file does not arrive whole"};
}

double engine(long megabytes) {
  const ScratchFolder staging;
  Silent view;
  DownloadTable table;
  table.fill(L"?dwt1=" + addressOf(megabytes));
  table.setParts(0, DownloadTable::dwt, modWINInetURL::CrackUrl(addressOf(megabytes)));
  table.setSize(0, DownloadTable::dwt, static_cast<unsigned long long>(megabytes) * megabyte);
  InternetSession session;
  session.open();
  session.readProxy();
  const Stopwatch watch;
  try {
    FileTransfer(table, session, staging.path(), view).run();
  } catch (const Error&) {
    throw CannotRun{"the download says: " + text::toAnsi(view.failure)};
  }
  const double time = watch.milliseconds();
  session.close();
  checkSize(staging / fileName(megabytes), megabytes);
  return time;
}

// What is served is no archive, so the dialog ends with a message about that instead of unpacking.
double withDialog(long megabytes) {
  const ScratchFolder scratch;
  const ScratchFolder web;
  const standin::Host host({}, web.path());
  ScratchRegistry registry;
  registry.setString(HKEY_CURRENT_USER,
                     L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders",
                     L"AppData", scratch.makeFolder(L"data"));
  ModalDriver driver;
  frmDownloadProgress dialog(HostApplication(com::Dispatch(ComPtr<IDispatch>(host.application()))));
  std::wstring destination;
  bool completed = false;
  const Stopwatch watch;
  dialog.RunModal(destination, completed,
                  {.pageAddress = L"http://h/DWTOnlineDownload.htm?dwt1=" + addressOf(megabytes),
                   .applicationData = {},
                   .destinationFolder = scratch / L"templates",
                   .destinationTag = L"U",
                   .agent = {}},
                  nullptr);
  const double time = watch.milliseconds();
  if (driver.boxes().size() != 1 || !driver.boxes()[0].text.starts_with(L"Cannot unzip file"))
    throw CannotRun{"the download fails" +
                    (driver.boxes().empty() ? "" : ": " + text::toAnsi(driver.boxes()[0].text))};
  return time;
}

struct InternetTraits {
  using type = HINTERNET;
  static type none() noexcept { return nullptr; }
  static void close(type handle) noexcept { InternetCloseHandle(handle); }
};
using Internet = handles::Unique<InternetTraits>;

constexpr DWORD flags = INTERNET_FLAG_RELOAD | INTERNET_FLAG_RAW_DATA |
                        INTERNET_FLAG_NO_CACHE_WRITE | INTERNET_FLAG_TRANSFER_BINARY;

Internet openUrl(const Internet& session, const std::string& address) {
  Internet file(InternetOpenUrlA(session.get(), address.c_str(), nullptr, 0, flags, 0));
  char answer[100] = {};
  DWORD length = sizeof answer;
  if (!file || !HttpQueryInfoA(file.get(), HTTP_QUERY_STATUS_CODE, answer, &length, nullptr))
    throw CannotRun{"the server of the downloads does not answer"};
  return file;
}

double bare(long megabytes) {
  const ScratchFolder staging;
  const std::wstring path = staging / fileName(megabytes);
  const std::string address = text::toAnsi(addressOf(megabytes));
  const Internet session(InternetOpenA("bench", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
  const Stopwatch watch;
  Internet source = openUrl(session, address);
  handles::File file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                 CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  char buffer[readSize];
  const long size = megabytes * megabyte;
  for (long received = 0; received < size;) {
    DWORD count = 0;
    if (!InternetReadFile(source.get(), buffer, sizeof buffer, &count) || count == 0)
      throw CannotRun{"the bare download ends early"};
    pumpQueue();
    DWORD written = 0;
    WriteFile(file.get(), buffer, count, &written, nullptr);
    received += static_cast<long>(count);
  }
  file.reset();
  source.reset();
  const double time = watch.milliseconds();
  checkSize(path, megabytes);
  return time;
}

Row downloadRow(long megabytes, bool dialog) {
  Row row;
  row.series = dialog ? "download-dialog-" : "download-";
  row.id = row.series + std::to_string(megabytes);
  row.work = std::string(dialog ? "download with dialog: " : "download: ") +
             std::to_string(megabytes) + " MB";
  row.size = megabytes;
  // The dialog's own coming and going is most of the small one.
  if (megabytes >= 50) row.limit = {Limit::times, dialog ? 1.2 : 1.05};
  row.run = [=] {
    return inPairs([=] { return dialog ? withDialog(megabytes) : engine(megabytes); },
                   [=] { return bare(megabytes); });
  };
  return row;
}

}  // namespace

std::vector<Row> downloadRows() {
  std::vector<Row> rows;
  for (const bool dialog : {false, true})
    for (const long megabytes : {1, 50}) rows.push_back(downloadRow(megabytes, dialog));
  return rows;
}

}  // namespace bench
