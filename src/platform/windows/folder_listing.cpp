#include "platform/folder_listing.h"

#include <algorithm>
#include <string>

#include "platform/failure.h"
#include "platform/windows/windows_random_access_file.h"

namespace quorrix {
namespace {

class FolderSearch {
 public:
  explicit FolderSearch(const Path& pattern)
      : handle_(::FindFirstFileW(pattern.c_str(), &entry_)) {}
  ~FolderSearch() {
    if (isOpen()) ::FindClose(handle_);
  }
  FolderSearch(const FolderSearch&) = delete;
  FolderSearch& operator=(const FolderSearch&) = delete;

  [[nodiscard]] bool isOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  [[nodiscard]] const WIN32_FIND_DATAW& entry() const { return entry_; }
  [[nodiscard]] bool next() { return ::FindNextFileW(handle_, &entry_) != 0; }

 private:
  WIN32_FIND_DATAW entry_{};  // before handle_, whose initialisation fills it
  HANDLE handle_;
};

void requireFolder(const Path& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    const DWORD reason = ::GetLastError();
    // Even if the parent folder exists.
    if (reason == ERROR_FILE_NOT_FOUND) throw Failure(failure::kPathNotFound);
    failWithWindowsError(reason, path);
  }
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) throw Failure(failure::kPathFileAccess);
}

}  // namespace

std::vector<Path> namesIn(const Path& folder, ListedKind kind) {
  requireFolder(folder);
  FolderSearch search(folder / L"*");
  std::vector<std::wstring> names;
  // An empty root does not even contain ".".
  if (!search.isOpen() && ::GetLastError() == ERROR_FILE_NOT_FOUND) return {};
  if (!search.isOpen()) failWithWindowsError(::GetLastError(), folder);
  do {
    const std::wstring name = search.entry().cFileName;
    const bool isFolder = (search.entry().dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    const bool isWanted = isFolder == (kind == ListedKind::Folder);
    if (isWanted && name != L"." && name != L"..") names.push_back(name);
  } while (search.next());
  if (::GetLastError() != ERROR_NO_MORE_FILES) failWithWindowsError(::GetLastError(), folder);
  std::sort(names.begin(), names.end());
  return {names.begin(), names.end()};
}

}  // namespace quorrix
