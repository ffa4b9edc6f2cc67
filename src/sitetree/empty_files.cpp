#include "sitetree/empty_files.h"

namespace quorrix {

void emptyFiles(FileSystem& files, std::span<const Path> paths) {
  for (const Path& path : paths) files.deleteFile(path);
  // The sync is for the new file's name.
  for (const Path& path : paths) files.openRandomAccess(path)->sync();
}

}  // namespace quorrix
