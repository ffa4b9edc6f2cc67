#include "platform/folder_claim.h"

#include <windows.h>

#include "platform/windows/unique_handle.h"

namespace quorrix {
namespace {

constexpr wchar_t kRequest[] = L"request";
constexpr wchar_t kAnswer[] = L"answer";

// Empty for a folder that cannot be opened, and on shares that do not number their files.
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

// Windows deletes an event with the last process that has it open.
UniqueHandle openEvent(const std::wstring& folder, const wchar_t* purpose) {
  const std::wstring name = L"Local\\Quorrix-" + folder + L'-' + purpose;
  const HANDLE event = ::CreateEventW(nullptr, TRUE, FALSE, name.c_str());
  return event ? UniqueHandle(event) : UniqueHandle();
}

}  // namespace

struct FolderClaim::Handles {
  UniqueHandle request;
  UniqueHandle answer;
};

FolderClaim::FolderClaim() : handles_(std::make_unique<Handles>()) {}
FolderClaim::~FolderClaim() = default;

ClaimResult FolderClaim::claim(const Path& folder, std::string_view /*activationToken*/,
                               std::chrono::milliseconds patience) {
  const std::wstring identity = identityOf(folder);
  if (identity.empty()) return ClaimResult::Unavailable;
  UniqueHandle request = openEvent(identity, kRequest);
  const bool isOther = ::GetLastError() == ERROR_ALREADY_EXISTS;
  UniqueHandle answer = openEvent(identity, kAnswer);
  if (!request.isOpen() || !answer.isOpen()) return ClaimResult::Unavailable;
  if (isOther) {
    // The user has started this process, which alone may pass the foreground on.
    ::AllowSetForegroundWindow(ASFW_ANY);
    ::ResetEvent(answer.get());  // perhaps that of a start that no longer waited for it
    ::SetEvent(request.get());
    const auto wait = static_cast<DWORD>(patience.count());
    const bool isAnswered = ::WaitForSingleObject(answer.get(), wait) == WAIT_OBJECT_0;
    return isAnswered ? ClaimResult::Answered : ClaimResult::Unanswered;
  }
  handles_->request = std::move(request);
  handles_->answer = std::move(answer);
  return ClaimResult::Claimed;
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
