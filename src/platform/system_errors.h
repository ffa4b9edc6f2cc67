// The one table from the operating systems' error codes to failure numbers.
// Both columns are compiled everywhere, so that each is tested on either system.
#pragma once

#include <cstdint>
#include <filesystem>

namespace quorrix {

// `code` is an errno value. "No such file" is kFileNotFound here. When the path is known,
// failureNumberForPath() tells kFileNotFound and kPathNotFound apart.
[[nodiscard]] int failureNumberOfErrno(int code) noexcept;

// `code` is a GetLastError() value.
[[nodiscard]] int failureNumberOfWindowsError(std::uint32_t code) noexcept;

// Whether an operation on a file that failed with this GetLastError() value may succeed
// soon, when another program closes the file. A file that was deleted while it was open
// refuses everything, as a missing permission does; `isBeingDeleted` tells them apart.
[[nodiscard]] bool mayEndSoon(std::uint32_t code, bool isBeingDeleted) noexcept;

// `number`, or kPathNotFound in place of kFileNotFound if the folder that should hold `path`
// is missing too.
[[nodiscard]] int failureNumberForPath(int number, const std::filesystem::path& path) noexcept;

}  // namespace quorrix
