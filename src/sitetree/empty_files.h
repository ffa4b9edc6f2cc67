// Makes data files empty by deleting them and creating them anew.
#pragma once

#include <span>

#include "platform/file_system.h"

namespace quorrix {

// Deletes all of them in the order given, then creates each again in the same
// order. A file that is missing fails with 53. A failure stops it where it is.
void emptyFiles(FileSystem& files, std::span<const Path> paths);

// Creates those that are missing, empty: a program that died inside emptyFiles() has
// left them so, and archiving does not work without them. A failure is none here; it
// shows in the operation that needs the file.
void createMissingFiles(FileSystem& files, std::span<const Path> paths);

}  // namespace quorrix
