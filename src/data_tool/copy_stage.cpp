#include "data_tool/copy_stage.h"

#include <algorithm>
#include <filesystem>

#include "data_tool/data_folder.h"
#include "data_tool/problem.h"
#include "data_tool/resolved_path.h"
#include "datafiles/working_folder.h"
#include "platform/file_replacement.h"

namespace quorrix {
namespace {

constexpr const char* kNameInside = "copy";

// Such a folder is in the root of a disk that is otherwise empty.
bool isOfFileSystem(const Path& name) {
  return name == "lost+found" || name == "System Volume Information";
}

}  // namespace

CopyStage::CopyStage(FileSystem& files, const Path& target)
    : files_(files),
      target_(target),
      isInside_(withPath(target, [&] { return files.folderExists(target); })) {
  const Path stage = replacementNameOf(isInside_ ? target / kNameInside : target);
  requireNothingAt(files, stage,
                   "This folder belongs to a copy that is running or was interrupted. If it was "
                   "interrupted, remove the folder and try again.");
  requireEmptyTarget();
  requireFolder(files, stage.parent_path());
  stage_.emplace(files, stage);
}

void CopyStage::requireEmptyTarget() {
  if (withPath(target_, [&] { return files_.fileExists(target_); })) {
    throw Problem::ofFile(target_, "This is a file. Name a new or empty folder.");
  }
  if (!isInside_ && isLink(target_)) {
    throw Problem::ofFile(target_, "This is a link to a folder that is missing.");
  }
  const bool isEmpty = !isInside_ || withPath(target_, [&] {
    return files_.fileNames(target_).empty() &&
           std::ranges::all_of(files_.folderNames(target_), isOfFileSystem);
  });
  if (!isEmpty) throw Problem::ofFile(target_, "This folder is not empty.");
}

CopyStage::~CopyStage() {
  if (isFinished_) return;
  std::error_code ignored;
  for (const Path& path : moved_) std::filesystem::remove_all(path, ignored);
}

void CopyStage::finish() {
  if (isInside_) {
    moveOut();
  } else {
    move(path(), target_);
  }
  isFinished_ = true;
}

// A rename that fails may have taken effect. What it did not put there is left alone.
void CopyStage::move(const Path& from, const Path& to) {
  try {
    files_.rename(from, to);
  } catch (const Failure& reason) {
    std::error_code unknown;
    const auto type = std::filesystem::symlink_status(from, unknown).type();
    if (type == std::filesystem::file_type::not_found) moved_.push_back(to);
    throw Problem::ofFile(to, reason.number());
  }
  moved_.push_back(to);
}

// nodes.dat, without which nothing is an archive, is last.
void CopyStage::moveOut() {
  const Path& stage = path();
  std::vector<Path> names = withPath(stage, [&] { return files_.folderNames(stage); });
  for (const Path& name : withPath(stage, [&] { return files_.fileNames(stage); })) {
    if (name != data_file::kNodes) names.push_back(name);
  }
  if (withPath(stage, [&] { return files_.fileExists(stage / data_file::kNodes); })) {
    names.emplace_back(data_file::kNodes);
  }
  for (const Path& name : names) move(stage / name, target_ / name);
  std::error_code reason;
  std::filesystem::remove(stage, reason);
  if (reason) throw Problem::ofFile(stage, "This empty folder cannot be removed.");
}

}  // namespace quorrix
