// What archiving, loading and deleting do to files. Failures reach the caller
// as Failure and stop an operation where it is. Nothing is rolled back: what is
// copied, deleted or emptied by then stays so.
#pragma once

#include <span>

#include "datafiles/working_folder.h"
#include "platform/file_system.h"
#include "shell/app_paths.h"

namespace quorrix {

// Whether any record of the site file has an address; the other files do not
// count. The site file is created when it is missing.
[[nodiscard]] bool hasSitesToArchive(FileSystem& files, const WorkingPaths& paths);

enum class EarlierArchive { None, Delete };

// Copies the data files to the folder, then empties those in loadPath. First deletes all
// four files of an earlier archive; fails with kFileNotFound when one is missing. Files of
// the folder that are the current data files themselves, by whatever path, are not deleted
// as an earlier archive.
void moveIntoArchive(FileSystem& files, const WorkingPaths& paths, const Path& folder,
                     EarlierArchive earlier);

// Copies the archive over the working data, then points the paths back into
// loadPath. If a copy fails, for example with kFileNotFound for a file that the
// archive lacks, the paths stay in the archive.
void takeOverArchive(FileSystem& files, const AppPaths& appPaths, WorkingPaths& paths,
                     const Path& folder);

// Deletes from the folder what isDeletedWithAnArchive() of the names of its files,
// in their order. False when there was nothing to delete.
[[nodiscard]] bool deleteArchiveFiles(FileSystem& files, const Path& folder,
                                      std::span<const Path> names);

}  // namespace quorrix
