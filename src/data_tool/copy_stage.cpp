#include "data_tool/copy_stage.h"

#include <filesystem>

#include "data_tool/data_folder.h"
#include "data_tool/problem.h"
#include "datafiles/working_folder.h"
#include "platform/failure.h"
#include "platform/file_replacement.h"

namespace quorrix {
namespace {

constexpr const char* kNameInside = "copy";

bool isLink(const Path& path) {
  std::error_code unknown;
  return std::filesystem::is_symlink(path, unknown);
}

}  // namespace

CopyStage::CopyStage(FileSystem& files, const Path& target)
    : files_(files),
      target_(target),
      isInside_(withPath(target, [&] { return files.folderExists(target); })),
      path_(replacementNameOf(isInside_ ? target / kNameInside : target)) {
  if (withPath(path_, [&] { return files_.folderExists(path_) || files_.fileExists(path_); })) {
    throw Problem::ofFile(path_, "This is an unfinished copy. Remove it and try again.");
  }
  requireEmptyTarget();
  make();
}

void CopyStage::requireEmptyTarget() {
  if (withPath(target_, [&] { return files_.fileExists(target_); })) {
    throw Problem::ofFile(target_, "This is a file. Name a new or empty folder.");
  }
  if (!isInside_ && isLink(target_)) {
    throw Problem::ofFile(target_, "This is a link to a folder that is missing.");
  }
  const bool isEmpty = !isInside_ || withPath(target_, [&] {
    return files_.fileNames(target_).empty() && files_.folderNames(target_).empty();
  });
  if (!isEmpty) throw Problem::ofFile(target_, "This folder is not empty.");
}

void CopyStage::make() {
  const Path parent = path_.parent_path();
  requireFolder(files_, parent);
  try {
    path_ = files_.makeFolder(path_);
  } catch (const Failure& reason) {
    if (reason.number() == failure::kPathFileAccess) {
      throw Problem::ofFile(parent, "Nothing can be written in this folder.");
    }
    // It may have been made, but could not be synced.
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
    throw Problem::ofFile(parent, reason.number());
  }
}

CopyStage::~CopyStage() {
  if (isFinished_) return;
  std::error_code ignored;
  for (const Path& path : moved_) std::filesystem::remove_all(path, ignored);
  std::filesystem::remove_all(path_, ignored);
}

void CopyStage::finish() {
  if (isInside_) {
    moveOut();
  } else {
    move(path_, target_);
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
  std::vector<Path> names = withPath(path_, [&] { return files_.folderNames(path_); });
  for (const Path& name : withPath(path_, [&] { return files_.fileNames(path_); })) {
    if (name != data_file::kNodes) names.push_back(name);
  }
  if (withPath(path_, [&] { return files_.fileExists(path_ / data_file::kNodes); })) {
    names.emplace_back(data_file::kNodes);
  }
  for (const Path& name : names) move(path_ / name, target_ / name);
  std::error_code reason;
  std::filesystem::remove(path_, reason);
  if (reason) throw Problem::ofFile(path_, "This empty folder cannot be removed.");
}

}  // namespace quorrix
