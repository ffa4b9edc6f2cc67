#include "data_tool/file_output.h"

#include <filesystem>
#include <memory>

#include "data_tool/buffered_output.h"
#include "data_tool/outside.h"
#include "data_tool/problem.h"
#include "platform/failure.h"
#include "platform/file_replacement.h"

namespace quorrix {
namespace {

// A new folder, which nobody else can write to. A new file of a known name could be a link that
// another user has put there.
class PrivateFolder {
 public:
  PrivateFolder(FileSystem& files, const Path& path)
      : path_(withPath(path, [&] { return files.makeFolder(path); })) {}

  ~PrivateFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  [[nodiscard]] const Path& path() const { return path_; }

 private:
  Path path_;
};

bool isSpecialFile(const Path& path) {
  std::error_code unknown;
  const auto status = std::filesystem::status(path, unknown);
  return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
}

}  // namespace

void writeFile(FileSystem& files, const Path& path,
               const std::function<void(Output&, const DeferredSignals&)>& write) {
  const Path target = withoutLinks(path);
  if (withPath(path, [&] { return files.folderExists(target); })) {
    throw Problem::ofFile(path, failure::kPathFileAccess);
  }
  if (isSpecialFile(target)) {
    throw Problem::ofFile(path, "This is a device or a pipe. Use standard output instead.");
  }
  const Path stage = replacementNameOf(target);
  if (withPath(stage, [&] { return files.folderExists(stage) || files.fileExists(stage); })) {
    throw Problem::ofFile(stage, "This is an unfinished file. Remove it and try again.");
  }
  const DeferredSignals signals;
  const PrivateFolder folder(files, stage);
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
