// SPDX-License-Identifier: MIT
#include "platform/desktop.h"

#include <conio.h>
#include <windows.h>

#include <shellapi.h>

#include "platform/wide_paths_windows.h"

namespace platform {
namespace {

/// A function of a library that only few runs need, and that takes a while to load.
template <typename Function>
Function* Find(const wchar_t* library, const char* name) {
  const HMODULE module = LoadLibraryW(library);
  return module ? reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)))
                : nullptr;
}

/// Services and planned tasks have consoles that are on no screen.
bool IsOnScreen() {
  const auto station = Find<decltype(GetProcessWindowStation)>(L"user32.dll", "GetProcessWindowStation");
  const auto information =
      Find<decltype(GetUserObjectInformationW)>(L"user32.dll", "GetUserObjectInformationW");
  USEROBJECTFLAGS flags{};
  return station && information && information(station(), UOI_FLAGS, &flags, sizeof flags, nullptr) &&
         (flags.dwFlags & WSF_VISIBLE) != 0;
}

}  // namespace

bool OwnsConsole() {
  DWORD processes[2] = {}, mode = 0;
  if (GetConsoleProcessList(processes, 2) != 1 || !GetConsoleWindow()) return false;
  for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
    if (!GetConsoleMode(GetStdHandle(stream), &mode)) return false;
  }
  return IsOnScreen();
}

void WaitForKey() { _getwch(); }

bool OpenForUser(const std::string& path) {
  const auto open = Find<decltype(ShellExecuteW)>(L"shell32.dll", "ShellExecuteW");
  constexpr INT_PTR kLastError = 32;
  return open && reinterpret_cast<INT_PTR>(open(nullptr, L"open", WideText(path).c_str(), nullptr, nullptr,
                                                SW_SHOWNORMAL)) > kLastError;
}

}  // namespace platform
