#include "data_tool/file_output.h"

#include <filesystem>
#include <memory>

#include "data_tool/buffered_output.h"
#include "data_tool/problem.h"
#include "data_tool/resolved_path.h"
#include "data_tool/stage_folder.h"
#include "platform/file_replacement.h"

namespace quorrix {
namespace {

bool isSpecialFile(const Path& path) {
  std::error_code unknown;
  const auto status = std::filesystem::status(path, unknown);
  return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
}

// Throws Problem unless the user's `path`, which is `target` without links, may be that of a new
// file, or is that of a file that may be replaced.
void requireFileName(FileSystem& files, const Path& path, const Path& target) {
  if (withPath(path, [&] { return files.folderExists(target); })) {
    throw Problem::ofFile(path, "This is a folder. Name a file.");
  }
  if (!path.has_filename()) {
    throw Problem::ofFile(path, "This is the name of a folder. Name a file.");
  }
  if (isLink(target)) throw Problem::ofFile(path, "This is a link to a file that is missing.");
  if (isSpecialFile(target)) {
    throw Problem::ofFile(path, kUseStandardOutput);
  }
  // The file system would replace even a file that is write-protected.
  withPath(path, [&] {
    if (files.fileExists(target)) static_cast<void>(files.openRandomAccess(target));
  });
}

}  // namespace

void writeFile(FileSystem& files, const Path& path,
               const std::function<void(Output&, const DeferredSignals&)>& write) {
  const Path target = outputTarget(path);
  requireFileName(files, path, target);
  const Path stage = replacementNameOf(target);
  requireNothingAt(files, stage,
                   "This folder belongs to an export that is running or was interrupted. If it was "
                   "interrupted, remove the folder and try again.");
  const DeferredSignals signals;
  const StageFolder folder(files, stage);
  const Path next = folder.path() / target.filename();
  {
    const auto file = withPath(path, [&] { return files.openRandomAccess(next); });
    std::uint64_t length = 0;
    BufferedOutput output([&](std::string_view text) {
      signals.throwIfPending();
      withPath(path, [&] { file->writeAt(length, text); });
      length += text.size();
    });
    write(output, signals);
    output.flush();
    withPath(path, [&] { file->sync(); });
  }
  signals.throwIfPending();
  withPath(path, [&] { files.rename(next, target); });
}

}  // namespace quorrix
