#include "data_tool/stage_folder.h"

#include <filesystem>

#include "data_tool/problem.h"

namespace quorrix {
namespace {

Path newFolder(FileSystem& files, const Path& path) {
  try {
    return files.makeFolder(path);
  } catch (const Failure& reason) {
    const Path parent = path.parent_path();
    if (reason.number() == failure::kPathFileAccess) {
      throw Problem::ofFile(parent, "Nothing can be written in this folder.");
    }
    // It may have been made, but could not be synced.
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    throw Problem::ofFile(parent, reason.number());
  }
}

}  // namespace

StageFolder::StageFolder(FileSystem& files, const Path& path) : path_(newFolder(files, path)) {}

StageFolder::~StageFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

void requireNothingAt(FileSystem& files, const Path& path, const char* reason) {
  const Path parent = path.parent_path();
  if (withPath(parent, [&] { return files.folderExists(path) || files.fileExists(path); })) {
    throw Problem::ofFile(path, reason);
  }
}

}  // namespace quorrix
