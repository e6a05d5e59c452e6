// Stands in for a program that the product launches: notes its own command line in a file beside
// itself, named like itself with ".txt" behind.
#include <windows.h>

#include <string>

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  wchar_t self[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  const std::wstring note = std::wstring(self) + L".txt";
  const std::wstring draft = note + L".tmp";
  const std::wstring line = GetCommandLineW();
  const HANDLE file =
      CreateFileW(draft.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written = 0;
  WriteFile(file, line.data(), static_cast<DWORD>(line.size() * sizeof(wchar_t)), &written,
            nullptr);
  CloseHandle(file);
  // The note appears whole or not at all.
  MoveFileExW(draft.c_str(), note.c_str(), MOVEFILE_REPLACE_EXISTING);
  return 0;
}
