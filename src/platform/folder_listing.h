// Lists the contents of a folder by name.
#pragma once

#include <vector>

#include "platform/file_system.h"

namespace quorrix {

enum class ListedKind { File, Folder };  // anything that is not a folder is a File

// See FileSystem::fileNames() and folderNames().
[[nodiscard]] std::vector<Path> namesIn(const Path& folder, ListedKind kind);

}  // namespace quorrix
