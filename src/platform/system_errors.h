// Maps the operating systems' error codes to failure numbers. Both tables are compiled
// everywhere, so that each is tested on both systems.
#pragma once

#include <cstdint>
#include <filesystem>

namespace quorrix {

// `code` is an errno value. "No such file" is kFileNotFound here. When the path is known,
// failureNumberForPath() tells kFileNotFound and kPathNotFound apart.
[[nodiscard]] int failureNumberOfErrno(int code) noexcept;

// `code` is a GetLastError() value.
[[nodiscard]] int failureNumberOfWindowsError(std::uint32_t code) noexcept;

// Whether a file operation that failed with this GetLastError() value may succeed soon,
// when another program closes the file. A file that was deleted while it was open refuses
// every access with the same code as a missing permission; `isBeingDeleted` tells them
// apart.
[[nodiscard]] bool mayEndSoon(std::uint32_t code, bool isBeingDeleted) noexcept;

// `number`, or kPathNotFound in place of kFileNotFound if the folder that should hold `path`
// is missing too.
[[nodiscard]] int failureNumberForPath(int number, const std::filesystem::path& path) noexcept;

}  // namespace quorrix
