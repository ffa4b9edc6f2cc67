#include "platform/folder_claim.h"

#include <windows.h>

#include "platform/windows/unique_handle.h"

namespace quorrix {
namespace {

constexpr wchar_t kRequest[] = L"request";
constexpr wchar_t kAnswer[] = L"answer";

// Empty for a folder that cannot be opened, and on shares that give files no index.
std::wstring identityOf(const Path& folder) {
  const UniqueHandle opened(
      ::CreateFileW(folder.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  BY_HANDLE_FILE_INFORMATION status{};
  if (!opened.isOpen() || !::GetFileInformationByHandle(opened.get(), &status)) return {};
  if ((status.nFileIndexHigh | status.nFileIndexLow) == 0) return {};
  return std::to_wstring(status.dwVolumeSerialNumber) + L'-' +
         std::to_wstring(status.nFileIndexHigh) + L'-' + std::to_wstring(status.nFileIndexLow);
}

// Windows deletes an event when the last process that has it open closes it.
UniqueHandle openEvent(const std::wstring& folder, const wchar_t* purpose) {
  const std::wstring name = L"Local\\Quorrix-" + folder + L'-' + purpose;
  const HANDLE event = ::CreateEventW(nullptr, TRUE, FALSE, name.c_str());
  return event ? UniqueHandle(event) : UniqueHandle();
}

}  // namespace

struct FolderClaim::Handles {
  UniqueHandle request;
  UniqueHandle answer;

  [[nodiscard]] ClaimResult open(const std::wstring& folder, std::chrono::milliseconds patience) {
    request = openEvent(folder, kRequest);
    const bool isOther = ::GetLastError() == ERROR_ALREADY_EXISTS;
    answer = openEvent(folder, kAnswer);
    if (!request.isOpen() || !answer.isOpen()) return ClaimResult::Unavailable;
    return isOther ? ask(patience) : ClaimResult::Claimed;
  }

  [[nodiscard]] ClaimResult ask(std::chrono::milliseconds patience) {
    // Only the process that the user has started may let another one take the foreground.
    ::AllowSetForegroundWindow(ASFW_ANY);
    ::ResetEvent(answer.get());  // may still be set from a start that no longer waits
    ::SetEvent(request.get());
    const auto wait = static_cast<DWORD>(patience.count());
    const bool isAnswered = ::WaitForSingleObject(answer.get(), wait) == WAIT_OBJECT_0;
    request = UniqueHandle();
    answer = UniqueHandle();
    return isAnswered ? ClaimResult::Answered : ClaimResult::Unanswered;
  }
};

FolderClaim::FolderClaim() : handles_(std::make_unique<Handles>()) {}
FolderClaim::~FolderClaim() = default;

ClaimResult FolderClaim::claim(const Path& folder, std::string_view /*activationToken*/,
                               std::chrono::milliseconds patience) {
  const std::wstring identity = identityOf(folder);
  if (identity.empty()) return ClaimResult::Unavailable;
  const ClaimResult result = handles_->open(identity, patience);
  if (result != ClaimResult::Unanswered) return result;
  // The other program may have ended instead of answering.
  return handles_->open(identity, std::chrono::milliseconds(0));
}

std::intptr_t FolderClaim::signal() const {
  return reinterpret_cast<std::intptr_t>(handles_->request.get());
}

std::optional<std::string> FolderClaim::takeRequest() {
  if (::WaitForSingleObject(handles_->request.get(), 0) != WAIT_OBJECT_0) return std::nullopt;
  ::ResetEvent(handles_->request.get());
  ::SetEvent(handles_->answer.get());
  return std::string();
}

}  // namespace quorrix
