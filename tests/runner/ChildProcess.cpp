#include "tests/runner/ChildProcess.h"

#include <stdexcept>

namespace {

constexpr DWORD settleTime = 10000;  // milliseconds that an ended process may take to go

handles::File inherited(const std::wstring& path, DWORD access, DWORD disposition) {
  SECURITY_ATTRIBUTES security = {sizeof security, nullptr, TRUE};
  return handles::File(CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                   &security, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// Its processes end with this one, too, however that ends.
handles::Kernel makeJob() {
  handles::Kernel job(CreateJobObjectW(nullptr, nullptr));
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

std::string contentOf(const std::wstring& path) {
  const handles::File file = inherited(path, GENERIC_READ, OPEN_EXISTING);
  if (!file) return {};
  std::string bytes(GetFileSize(file.get(), nullptr), '\0');
  DWORD read = 0;
  if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
    return {};
  bytes.resize(read);
  return bytes;
}

}  // namespace

ChildProcess::ChildProcess(const std::wstring& commandLine, const std::wstring& folder)
    : commandLine_(commandLine), outputFile_(folder + L"\\output"), job_(makeJob()) {
  for (const wchar_t* const name : {L"TEMP", L"TMP"}) SetEnvironmentVariableW(name, folder.c_str());
  startIn(folder);
}

ChildProcess::~ChildProcess() { endAll(); }

// Before Windows 8 a process cannot be in two jobs, and whatever started this program may have put
// it into one that its own may leave.
void ChildProcess::startIn(const std::wstring& folder) {
  const handles::File in = inherited(L"NUL", GENERIC_READ, OPEN_EXISTING);
  const handles::File out = inherited(outputFile_, GENERIC_WRITE, CREATE_ALWAYS);
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = in.get();
  start.hStdOutput = start.hStdError = out.get();
  PROCESS_INFORMATION process = {};
  for (const DWORD apart : {static_cast<DWORD>(CREATE_BREAKAWAY_FROM_JOB), DWORD{0}})
    if (CreateProcessW(nullptr, commandLine_.data(), nullptr, nullptr, TRUE,
                       CREATE_SUSPENDED | CREATE_NO_WINDOW | apart, nullptr, folder.c_str(), &start,
                       &process))
      break;
  if (!process.hProcess)
    throw std::runtime_error("it does not start: error " + std::to_string(GetLastError()));
  const handles::Kernel thread(process.hThread);
  process_.reset(process.hProcess);
  isInJob_ = AssignProcessToJobObject(job_.get(), process_.get()) != FALSE;
  ResumeThread(thread.get());
}

ChildProcess::Outcome ChildProcess::wait(DWORD milliseconds) {
  Outcome outcome;
  outcome.isEnded = WaitForSingleObject(process_.get(), milliseconds) == WAIT_OBJECT_0;
  if (outcome.isEnded) GetExitCodeProcess(process_.get(), &outcome.code);
  endAll();
  outcome.output = contentOf(outputFile_);
  return outcome;
}

void ChildProcess::endAll() {
  constexpr UINT ended = 99;
  if (isInJob_)
    TerminateJobObject(job_.get(), ended);
  else
    TerminateProcess(process_.get(), ended);
  WaitForSingleObject(process_.get(), settleTime);
}
