#include "platform/windows/firefox_settings.h"

#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>
#include <winternl.h>

#include <algorithm>
#include <fstream>
#include <memory>

#include "platform/browsers/firefox_preferences.h"
#include "platform/windows/wide_text.h"

namespace quorrix {
namespace {

constexpr std::string_view kProfilePath = "Path=";
constexpr std::string_view kProfileOptions[] = {"-profile", "--profile"};

struct Closer {
  void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, Closer>;

template <typename Value>
bool readFrom(HANDLE process, const void* address, Value* value, std::size_t size) {
  SIZE_T count = 0;
  return ::ReadProcessMemory(process, address, value, size, &count) && count == size;
}

// A process keeps its command line in its own memory.
std::optional<std::wstring> commandLineOf(std::uint32_t processId) {
  const Handle process(
      ::OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
  PROCESS_BASIC_INFORMATION basics{};
  if (!process || !NT_SUCCESS(::NtQueryInformationProcess(process.get(), ProcessBasicInformation,
                                                          &basics, sizeof basics, nullptr))) {
    return std::nullopt;
  }
  PEB environment{};
  RTL_USER_PROCESS_PARAMETERS parameters{};
  if (!readFrom(process.get(), basics.PebBaseAddress, &environment, sizeof environment) ||
      !readFrom(process.get(), environment.ProcessParameters, &parameters, sizeof parameters)) {
    return std::nullopt;
  }
  const UNICODE_STRING& text = parameters.CommandLine;
  std::wstring line(text.Length / sizeof(wchar_t), L'\0');
  if (!readFrom(process.get(), text.Buffer, line.data(), text.Length)) return std::nullopt;
  return line;
}

std::vector<std::string> argumentsIn(const std::wstring& commandLine) {
  int count = 0;
  const std::unique_ptr<LPWSTR, decltype(&::LocalFree)> values(
      ::CommandLineToArgvW(commandLine.c_str(), &count), &::LocalFree);
  std::vector<std::string> arguments;
  for (int i = 0; values && i < count; ++i) arguments.push_back(utf8FromWide(values.get()[i]));
  return arguments;
}

std::vector<Path> profilesIn(const Path& folder) {
  std::ifstream list(folder / "profiles.ini");
  std::vector<Path> profiles;
  for (std::string line; std::getline(list, line);) {
    if (line.ends_with('\r')) line.pop_back();
    if (!line.starts_with(kProfilePath)) continue;
    profiles.push_back(folder / wideFromUtf8(line.substr(kProfilePath.size())));
  }
  return profiles;
}

bool isInUse(const Path& profile) {
  const HANDLE lock =
      ::CreateFileW((profile / "parent.lock").c_str(), GENERIC_READ | GENERIC_WRITE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  if (lock == INVALID_HANDLE_VALUE) return ::GetLastError() == ERROR_SHARING_VIOLATION;
  ::CloseHandle(lock);
  return false;
}

std::optional<bool> remembers(const Path& profile) {
  std::ifstream settings(profile / "prefs.js");
  if (!settings) return std::nullopt;
  for (std::string line; std::getline(settings, line);) {
    if (firefox_preferences::isNeverRemembering(line)) return false;
  }
  return settings.bad() ? std::nullopt : std::optional(true);
}

}  // namespace

std::optional<bool> firefoxRemembersHistory(const std::vector<std::string>& arguments,
                                            const Path& folder) {
  if (std::ranges::any_of(arguments, firefox_preferences::isPrivateOption)) return false;
  std::vector<Path> profiles;
  const auto option = std::ranges::find_first_of(arguments, kProfileOptions);
  if (option != arguments.end() && option + 1 != arguments.end()) {
    profiles.push_back(wideFromUtf8(*(option + 1)));
  } else {
    for (Path& profile : profilesIn(folder)) {
      if (isInUse(profile)) profiles.push_back(std::move(profile));
    }
  }
  std::optional<bool> all;
  for (const Path& profile : profiles) {
    all = remembers(profile);
    if (all != true) return all;
  }
  return all;
}

std::optional<bool> firefoxRemembersHistory(std::uint32_t processId) {
  const auto commandLine = commandLineOf(processId);
  if (!commandLine || commandLine->empty()) return std::nullopt;
  PWSTR roaming = nullptr;
  const HRESULT result = ::SHGetKnownFolderPath(FOLDERID_RoamingAppData, 0, nullptr, &roaming);
  const Path folder = SUCCEEDED(result) ? Path(roaming) / "Mozilla" / "Firefox" : Path();
  ::CoTaskMemFree(roaming);
  return firefoxRemembersHistory(argumentsIn(*commandLine), folder);
}

}  // namespace quorrix
