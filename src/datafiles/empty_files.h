// Makes data files empty by deleting them and creating them again.
#pragma once

#include <span>

#include "platform/file_system.h"

namespace quorrix {

// Deletes all of them in the order given, then creates each again in the same order.
// Throws kFileNotFound if a file is missing. The first failure stops the operation.
void emptyFiles(FileSystem& files, std::span<const Path> paths);

// Creates each of them in the order given, and leaves one that exists as it is. Returns
// once their names have reached the disk.
void createEmptyFiles(FileSystem& files, std::span<const Path> paths);

// Creates the missing ones, empty. Files are missing if a program died inside
// emptyFiles(), and archiving does not work without them. Failures are ignored here; the
// operation that needs the file reports them.
void createMissingFiles(FileSystem& files, std::span<const Path> paths);

}  // namespace quorrix
