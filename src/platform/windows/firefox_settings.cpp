#include "platform/windows/firefox_settings.h"

#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>
#include <winternl.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>

#include "platform/windows/process_program.h"
#include "platform/windows/wide_text.h"

namespace quorrix {
namespace {

constexpr std::string_view kProfilePath = "Path=";
constexpr std::string_view kSetting = "browser.privatebrowsing.autostart";
constexpr std::string_view kPolicy = "PrivateBrowsingModeAvailability";
constexpr std::string_view kOtherSettings = "general.config";
constexpr const wchar_t* kPolicyKey = L"Software\\Policies\\Mozilla\\Firefox";
constexpr const wchar_t* kPolicyValue = L"PrivateBrowsingModeAvailability";
constexpr const wchar_t* kPreferencesValue = L"Preferences";
constexpr DWORD kAlwaysPrivate = 2;

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

// Firefox takes "/private", "-Private" and "--private:x" for the same option.
std::string optionIn(const std::string& argument) {
  if (!argument.starts_with('-') && !argument.starts_with('/')) return {};
  const std::size_t begin = argument.find_first_not_of("-/");
  if (begin == std::string::npos) return {};
  std::string option = argument.substr(begin, argument.find_first_of(":=", begin) - begin);
  std::ranges::transform(option, option.begin(), [](unsigned char letter) {
    return static_cast<char>(letter >= 'A' && letter <= 'Z' ? letter + ('a' - 'A') : letter);
  });
  return option;
}

bool contains(const Path& file, std::string_view text) {
  std::ifstream input(file, std::ios::binary);
  const std::string content{std::istreambuf_iterator<char>(input), {}};
  return content.find(text) != std::string::npos;
}

bool isInAnyFile(const Path& folder, const char* extension, std::string_view text) {
  std::error_code error;
  const std::filesystem::directory_iterator entries(folder, error);
  return std::any_of(begin(entries), end(entries), [&](const auto& entry) {
    return entry.path().extension() == extension && contains(entry.path(), text);
  });
}

// Whether a file beside the program may force private browsing. What exactly it says is
// not looked at.
bool mayBeForced(const Path& program) {
  const Path policies = program / "distribution" / "policies.json";
  return contains(policies, kPolicy) || contains(policies, kSetting) ||
         isInAnyFile(program, ".cfg", kSetting) ||
         isInAnyFile(program / "defaults" / "pref", ".js", kSetting);
}

// An administrator's file of settings may have any name, and its bytes may be shifted.
bool hasOtherSettings(const Path& program) {
  return isInAnyFile(program / "defaults" / "pref", ".js", kOtherSettings);
}

// The policy "Preferences" is JSON.
bool isForcedByPreferences(HKEY root) {
  DWORD size = 0;
  const DWORD types = RRF_RT_REG_SZ | RRF_RT_REG_MULTI_SZ;
  if (::RegGetValueW(root, kPolicyKey, kPreferencesValue, types, nullptr, nullptr, &size) !=
      ERROR_SUCCESS) {
    return false;
  }
  std::wstring value(size / sizeof(wchar_t) + 1, L'\0');
  size = static_cast<DWORD>(value.size() * sizeof(wchar_t));
  const LSTATUS result =
      ::RegGetValueW(root, kPolicyKey, kPreferencesValue, types, nullptr, value.data(), &size);
  return result != ERROR_SUCCESS || utf8FromWide(value).find(kSetting) != std::string::npos;
}

bool isForcedByPolicy() {
  for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    DWORD value = 0;
    DWORD size = sizeof value;
    if (::RegGetValueW(root, kPolicyKey, kPolicyValue, RRF_RT_REG_DWORD, nullptr, &value, &size) ==
            ERROR_SUCCESS &&
        value == kAlwaysPrivate) {
      return true;
    }
    if (isForcedByPreferences(root)) return true;
  }
  return false;
}

std::optional<bool> remembers(const Path& profile) {
  bool isRead = false;
  for (const char* const name : {"prefs.js", "user.js"}) {
    std::ifstream settings(profile / name);
    isRead = isRead || settings.is_open();
    for (std::string line; std::getline(settings, line);) {
      // Users write user.js by hand, in whatever form.
      const bool isNever =
          line.find(kSetting) != std::string::npos && line.find("true") != std::string::npos;
      if (isNever) return false;
    }
    if (settings.bad()) return std::nullopt;
  }
  return isRead ? std::optional(true) : std::nullopt;
}

}  // namespace

std::optional<bool> firefoxRemembersHistory(const std::vector<std::string>& arguments,
                                            const FirefoxFiles& files, std::size_t processes) {
  if (mayBeForced(files.program)) return false;
  if (hasOtherSettings(files.program)) return std::nullopt;
  std::vector<Path> profiles;
  for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
    const std::string option = optionIn(*argument);
    if (option == "private") return false;
    if (option == "profile" && argument + 1 != arguments.end()) {
      profiles.emplace_back(wideFromUtf8(*(argument + 1)));
    }
  }
  const bool isGiven = !profiles.empty();
  if (!isGiven) profiles = profilesIn(files.profiles);
  std::erase_if(profiles, [](const Path& profile) { return !isInUse(profile); });
  // With fewer profiles than processes, one of them has a profile that is not known here.
  if (profiles.empty() || (!isGiven && profiles.size() < processes)) return std::nullopt;
  for (const Path& profile : profiles) {
    const auto its = remembers(profile);
    if (its != true) return its;
  }
  return true;
}

std::optional<bool> firefoxRemembersHistory(std::uint32_t processId, std::size_t processes) {
  if (isForcedByPolicy()) return false;
  const auto commandLine = commandLineOf(processId);
  const Path program = programOf(processId).parent_path();
  if (!commandLine || commandLine->empty() || program.empty()) return std::nullopt;
  PWSTR roaming = nullptr;
  const HRESULT result = ::SHGetKnownFolderPath(FOLDERID_RoamingAppData, 0, nullptr, &roaming);
  const Path profiles = SUCCEEDED(result) ? Path(roaming) / "Mozilla" / "Firefox" : Path();
  ::CoTaskMemFree(roaming);
  return firefoxRemembersHistory(argumentsIn(*commandLine),
                                 {.program = program, .profiles = profiles}, processes);
}

}  // namespace quorrix
