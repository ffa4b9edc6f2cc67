// What lies in a folder, by name.
#pragma once

#include <vector>

#include "platform/file_system.h"

namespace quorrix {

enum class ListedKind { File, Folder };  // whatever is no folder is a file

// As FileSystem::fileNames() and folderNames() promise.
[[nodiscard]] std::vector<Path> namesIn(const Path& folder, ListedKind kind);

}  // namespace quorrix
