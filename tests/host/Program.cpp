#include "tests/host/Program.h"

#include <stdexcept>
#include <utility>

namespace {

constexpr DWORD patience = 40000;

std::wstring programPath() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring own = path;
  return own.substr(0, own.rfind(L'\\') + 1) + L"quillet-host.exe";
}

handles::File inherited(const std::wstring& path, DWORD access, DWORD disposition) {
  SECURITY_ATTRIBUTES security = {sizeof security, nullptr, TRUE};
  return handles::File(CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                   &security, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

}  // namespace

void Program::start(const std::wstring& arguments, const std::string& input) const {
  folder.writeFile(L"input", input);
  const handles::File in = inherited(folder / L"input", GENERIC_READ, OPEN_EXISTING);
  const handles::File out = inherited(folder / L"output", GENERIC_WRITE, CREATE_ALWAYS);
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = in.get();
  start.hStdOutput = start.hStdError = out.get();
  std::wstring line = L"\"" + programPath() + (addIns ? L"\" " : L"\" --no-addins ") + arguments;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                      &process))
    throw std::runtime_error("the program does not start");
  const handles::Kernel thread(process.hThread);
  process_.reset(process.hProcess);
  id_ = process.dwProcessId;
}

bool Program::isRunning() const { return WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT; }

HWND Program::mainWindow() const {
  HWND window = nullptr;
  while ((window = FindWindowExW(nullptr, window, L"FrontPageExplorerWindow40", nullptr)) !=
         nullptr) {
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner == id_) return window;
  }
  return nullptr;
}

Outcome Program::end() const {
  if (WaitForSingleObject(process_.get(), patience) != WAIT_OBJECT_0) {
    constexpr DWORD wait = 5000;
    TerminateProcess(process_.get(), 99);
    WaitForSingleObject(process_.get(), wait);
  }
  Outcome outcome;
  GetExitCodeProcess(process_.get(), &outcome.code);
  process_.reset();
  outcome.output = output();
  return outcome;
}

Outcome Program::run(const std::wstring& arguments, const std::string& input) const {
  start(arguments, input);
  return end();
}

std::wstring Program::scriptArguments(const std::string& lines) const {
  folder.writeFile(L"script.txt", lines);
  return L"\"" + web + L"\" --script \"" + (folder / L"script.txt") + L"\" ";
}

Outcome Program::script(const std::string& lines, const std::wstring& arguments) const {
  return run(scriptArguments(lines) + arguments);
}
