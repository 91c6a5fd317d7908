// SPDX-License-Identifier: MIT
#include "host/start_again_windows.h"

#include <cstdint>
#include <system_error>
#include <vector>

#include "platform/process.h"
#include "platform/wide_paths_windows.h"

namespace cli {
namespace {

[[noreturn]] void FailToStart(std::error_code error = platform::LastErrorCode()) {
  throw std::system_error(error, "a process cannot be started");
}

/// Attributes of a new process: it inherits `handles` and nothing else.
class HandleList {
 public:
  explicit HandleList(std::vector<void*> handles) : handles_(std::move(handles)) {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    storage_.resize(size);
    if (!InitializeProcThreadAttributeList(Get(), 1, 0, &size)) FailToStart();
    for (void* handle : handles_) SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    if (UpdateProcThreadAttribute(Get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                                  handles_.size() * sizeof(void*), nullptr, nullptr))
      return;
    const std::error_code error = platform::LastErrorCode();
    DeleteProcThreadAttributeList(Get());
    FailToStart(error);
  }
  ~HandleList() { DeleteProcThreadAttributeList(Get()); }
  HandleList(const HandleList&) = delete;
  HandleList& operator=(const HandleList&) = delete;

  LPPROC_THREAD_ATTRIBUTE_LIST Get() {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(storage_.data());
  }

 private:
  std::vector<void*> handles_;
  std::vector<char> storage_;
};

std::wstring CommandLine(const char* word, const Inherited& inherited) {
  std::string line = std::string("fbx2czp ") + word;
  for (void* pipe : {inherited.order, inherited.messages})
    line += " " + std::to_string(reinterpret_cast<uintptr_t>(pipe));
  return {line.begin(), line.end()};
}

}  // namespace

Pipe MakePipe(DWORD room) {
  void *reading = nullptr, *writing = nullptr;
  if (!CreatePipe(&reading, &writing, nullptr, room)) FailToStart();
  return {Handle(reading), Handle(writing)};
}

Handle CopyOf(DWORD stream, bool isWanted) {
  void *const self = GetCurrentProcess(), *const own = isWanted ? GetStdHandle(stream) : nullptr;
  void* copy = nullptr;
  if (own && DuplicateHandle(self, own, self, &copy, 0, TRUE, DUPLICATE_SAME_ACCESS)) return Handle(copy);
  copy = CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                     OPEN_EXISTING, 0, nullptr);
  if (copy == INVALID_HANDLE_VALUE) FailToStart();
  return Handle(copy);
}

Handle StartAgain(const char* word, const Inherited& inherited, void* job) {
  HandleList handles(
      {inherited.input, inherited.output, inherited.errors, inherited.order, inherited.messages});
  STARTUPINFOEXW startup{};
  startup.StartupInfo.cb = sizeof startup;
  startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
  startup.StartupInfo.hStdInput = inherited.input;
  startup.StartupInfo.hStdOutput = inherited.output;
  startup.StartupInfo.hStdError = inherited.errors;
  startup.lpAttributeList = handles.Get();
  PROCESS_INFORMATION started{};
  if (!CreateProcessW(platform::CallPath(platform::ExecutablePath()).c_str(),
                      CommandLine(word, inherited).data(), nullptr, nullptr, TRUE,
                      EXTENDED_STARTUPINFO_PRESENT | CREATE_NEW_PROCESS_GROUP, nullptr, nullptr,
                      &startup.StartupInfo, &started)) {
    FailToStart();
  }
  Handle process(started.hProcess);
  CloseHandle(started.hThread);
  // It waits for its order meanwhile. Systems before Windows 8 refuse that inside of another job; the process does its
  // work there all the same.
  AssignProcessToJobObject(job, process.get());
  return process;
}

Handle MakeJob() {
  Handle job(CreateJobObjectW(nullptr, nullptr));
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

}  // namespace cli
