#include "datafiles/empty_files.h"

#include "platform/failure.h"

namespace quorrix {

void emptyFiles(FileSystem& files, std::span<const Path> paths) {
  for (const Path& path : paths) files.deleteFile(path);
  createEmptyFiles(files, paths);
}

void createEmptyFiles(FileSystem& files, std::span<const Path> paths) {
  // The sync writes the new file's name to the disk.
  for (const Path& path : paths) files.openRandomAccess(path)->sync();
}

void createMissingFiles(FileSystem& files, std::span<const Path> paths) {
  for (const Path& path : paths) {
    try {
      if (!files.fileExists(path)) files.openRandomAccess(path)->sync();
    } catch (const Failure&) {
      continue;
    }
  }
}

}  // namespace quorrix
