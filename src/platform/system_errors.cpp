#include "platform/system_errors.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

#include "platform/failure.h"

namespace quorrix {
namespace {

struct ErrnoRow {
  int code;
  int number;
};

constexpr ErrnoRow kErrnoTable[] = {
    {ENOENT, failure::kFileNotFound},
    {ENOTDIR, failure::kPathNotFound},
    {ENAMETOOLONG, failure::kPathFileAccess},
    {EINVAL, failure::kPathFileAccess},
    {EACCES, failure::kPathFileAccess},
    {EBADF, failure::kPathFileAccess},  // writing to a file that is open for reading
    {EPERM, failure::kPathFileAccess},
    {EROFS, failure::kPathFileAccess},
    {EEXIST, failure::kPathFileAccess},
    {EISDIR, failure::kPathFileAccess},
    {ENOTEMPTY, failure::kPathFileAccess},
    {EILSEQ, failure::kPathFileAccess},  // a name that is not in the disk's encoding
    {EBUSY, failure::kPathFileAccess},
#ifdef ETXTBSY
    {ETXTBSY, failure::kPathFileAccess},
#endif
#ifdef ELOOP
    {ELOOP, failure::kPathFileAccess},
#endif
    {ENOSPC, failure::kDiskFull},
#ifdef EDQUOT
    {EDQUOT, failure::kDiskFull},
#endif
    {EFBIG, failure::kDiskFull},
    {EMFILE, failure::kTooManyFiles},
    {ENFILE, failure::kTooManyFiles},
    {EIO, failure::kDeviceIo},
    {ENODEV, failure::kDeviceUnavailable},
    {ENXIO, failure::kDeviceUnavailable},
#ifdef ESTALE
    {ESTALE, failure::kDeviceUnavailable},
#endif
#ifdef ENOMEDIUM
    {ENOMEDIUM, failure::kDiskNotReady},
#endif
    {ENOMEM, failure::kOutOfMemory},
};

struct WindowsRow {
  std::uint32_t code;
  int number;
};

// The names of the codes are given in comments because <windows.h> is not available on
// every system that compiles and tests this table.
constexpr WindowsRow kWindowsTable[] = {
    {2, failure::kFileNotFound},          // ERROR_FILE_NOT_FOUND
    {3, failure::kPathNotFound},          // ERROR_PATH_NOT_FOUND
    {4, failure::kTooManyFiles},          // ERROR_TOO_MANY_OPEN_FILES
    {5, failure::kPathFileAccess},        // ERROR_ACCESS_DENIED
    {8, failure::kOutOfMemory},           // ERROR_NOT_ENOUGH_MEMORY
    {14, failure::kOutOfMemory},          // ERROR_OUTOFMEMORY
    {15, failure::kDeviceUnavailable},    // ERROR_INVALID_DRIVE
    {16, failure::kPathFileAccess},       // ERROR_CURRENT_DIRECTORY
    {17, failure::kPathFileAccess},       // ERROR_NOT_SAME_DEVICE
    {19, failure::kPathFileAccess},       // ERROR_WRITE_PROTECT
    {20, failure::kDeviceUnavailable},    // ERROR_BAD_UNIT
    {21, failure::kDiskNotReady},         // ERROR_NOT_READY
    {23, failure::kDeviceIo},             // ERROR_CRC
    {27, failure::kDeviceIo},             // ERROR_SECTOR_NOT_FOUND
    {29, failure::kDeviceIo},             // ERROR_WRITE_FAULT
    {30, failure::kDeviceIo},             // ERROR_READ_FAULT
    {31, failure::kDeviceIo},             // ERROR_GEN_FAILURE
    {32, failure::kPathFileAccess},       // ERROR_SHARING_VIOLATION
    {33, failure::kPathFileAccess},       // ERROR_LOCK_VIOLATION
    {34, failure::kDiskNotReady},         // ERROR_WRONG_DISK
    {39, failure::kDiskFull},             // ERROR_HANDLE_DISK_FULL
    {51, failure::kDeviceUnavailable},    // ERROR_REM_NOT_LIST
    {53, failure::kPathNotFound},         // ERROR_BAD_NETPATH
    {55, failure::kDeviceUnavailable},    // ERROR_DEV_NOT_EXIST
    {58, failure::kDeviceUnavailable},    // ERROR_BAD_NET_RESP
    {59, failure::kDeviceUnavailable},    // ERROR_UNEXP_NET_ERR
    {64, failure::kDeviceUnavailable},    // ERROR_NETNAME_DELETED
    {65, failure::kPathFileAccess},       // ERROR_NETWORK_ACCESS_DENIED
    {67, failure::kPathNotFound},         // ERROR_BAD_NET_NAME
    {80, failure::kPathFileAccess},       // ERROR_FILE_EXISTS
    {82, failure::kPathFileAccess},       // ERROR_CANNOT_MAKE
    {108, failure::kPathFileAccess},      // ERROR_DRIVE_LOCKED
    {110, failure::kPathFileAccess},      // ERROR_OPEN_FAILED
    {112, failure::kDiskFull},            // ERROR_DISK_FULL
    {121, failure::kDeviceUnavailable},   // ERROR_SEM_TIMEOUT: a share that stopped answering
    {123, failure::kPathFileAccess},      // ERROR_INVALID_NAME
    {145, failure::kPathFileAccess},      // ERROR_DIR_NOT_EMPTY
    {148, failure::kPathFileAccess},      // ERROR_PATH_BUSY
    {161, failure::kPathNotFound},        // ERROR_BAD_PATHNAME
    {170, failure::kPathFileAccess},      // ERROR_BUSY
    {183, failure::kPathFileAccess},      // ERROR_ALREADY_EXISTS
    {206, failure::kPathFileAccess},      // ERROR_FILENAME_EXCED_RANGE
    {267, failure::kPathNotFound},        // ERROR_DIRECTORY
    {303, failure::kPathFileAccess},      // ERROR_DELETE_PENDING
    {433, failure::kDeviceUnavailable},   // ERROR_NO_SUCH_DEVICE
    {1005, failure::kDiskNotReady},       // ERROR_UNRECOGNIZED_VOLUME: not formatted
    {1006, failure::kDeviceUnavailable},  // ERROR_FILE_INVALID: the volume went away
    {1110, failure::kDiskNotReady},       // ERROR_MEDIA_CHANGED
    {1112, failure::kDiskNotReady},       // ERROR_NO_MEDIA_IN_DRIVE
    {1117, failure::kDeviceIo},           // ERROR_IO_DEVICE
    {1167, failure::kDeviceUnavailable},  // ERROR_DEVICE_NOT_CONNECTED
    {1231, failure::kDeviceUnavailable},  // ERROR_NETWORK_UNREACHABLE
    {1232, failure::kDeviceUnavailable},  // ERROR_HOST_UNREACHABLE
    {1295, failure::kDiskFull},           // ERROR_DISK_QUOTA_EXCEEDED
    {1392, failure::kDeviceIo},           // ERROR_FILE_CORRUPT
    {1393, failure::kDeviceIo},           // ERROR_DISK_CORRUPT
    {1450, failure::kOutOfMemory},        // ERROR_NO_SYSTEM_RESOURCES
    {1455, failure::kOutOfMemory},        // ERROR_COMMITMENT_LIMIT
};

template <typename Rows, typename Code>
int numberIn(const Rows& rows, Code code) noexcept {
  const auto row = std::find_if(std::begin(rows), std::end(rows),
                                [code](const auto& candidate) { return candidate.code == code; });
  return row == std::end(rows) ? failure::kUnknown : row->number;
}

}  // namespace

int failureNumberOfErrno(int code) noexcept { return numberIn(kErrnoTable, code); }

int failureNumberOfWindowsError(std::uint32_t code) noexcept {
  return numberIn(kWindowsTable, code);
}

bool mayEndSoon(std::uint32_t code, bool isBeingDeleted) noexcept {
  constexpr std::uint32_t kAccessDenied = 5;
  constexpr std::uint32_t kSharingViolation = 32;
  constexpr std::uint32_t kFileExists = 80;  // another program has just created it and will use it
  constexpr std::uint32_t kDeletePending = 303;
  if (code == kAccessDenied) return isBeingDeleted;
  return code == kSharingViolation || code == kFileExists || code == kDeletePending;
}

int failureNumberForPath(int number, const std::filesystem::path& path) noexcept {
  if (number != failure::kFileNotFound) return number;
  std::error_code ignored;
  const auto parent = path.parent_path();
  const bool parentIsThere = parent.empty() || std::filesystem::is_directory(parent, ignored);
  return parentIsThere ? number : failure::kPathNotFound;
}

}  // namespace quorrix
