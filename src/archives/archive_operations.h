// The file operations of archiving, loading and deleting. A failure stops the operation
// and reaches the caller as Failure. Nothing is rolled back: files that were already
// copied, deleted or emptied stay that way.
#pragma once

#include <span>

#include "datafiles/working_folder.h"
#include "platform/file_system.h"
#include "shell/app_paths.h"

namespace quorrix {

// Whether any record of the site file has an address; the other files do not count. The
// site file is created if it is missing.
[[nodiscard]] bool hasSitesToArchive(FileSystem& files, const WorkingPaths& paths);

enum class EarlierArchive { None, Delete };

// Copies the data files to the folder, then empties those in loadPath. What another
// program writes to them in between is archived, too. With
// EarlierArchive::Delete, first deletes all four files of the earlier archive, and fails
// with kFileNotFound if one of them is missing. The current data files, whatever path
// leads to them, are never deleted as if they were an earlier archive.
void moveIntoArchive(FileSystem& files, const WorkingPaths& paths, const Path& folder,
                     EarlierArchive earlier);

// Copies the archive over the working data, then points the paths back to loadPath. If a
// copy fails, for example with kFileNotFound for a file that the archive lacks, the paths
// keep pointing into the archive.
void takeOverArchive(FileSystem& files, const AppPaths& appPaths, WorkingPaths& paths,
                     const Path& folder);

// Deletes from the folder the files in `names`, in that order, for which
// isDeletedWithAnArchive() is true. Returns false if there was nothing to delete.
[[nodiscard]] bool deleteArchiveFiles(FileSystem& files, const Path& folder,
                                      std::span<const Path> names);

}  // namespace quorrix
