#include "archives/archive_operations.h"

#include <vector>

#include "archives/archive_files.h"
#include "datafiles/empty_files.h"
#include "datafiles/fixed_record_file.h"
#include "datafiles/site_record.h"
#include "datafiles/text_field.h"

namespace quorrix {
namespace {

struct DataFile {
  const char* name;
  Path WorkingPaths::*current;
};

// The order determines what a failure halfway leaves behind. Loading has a different
// order.
constexpr DataFile kArchivingOrder[] = {
    {data_file::kNodes, &WorkingPaths::currentNodesFile},
    {data_file::kURLNotes, &WorkingPaths::currentURLNotesFile},
    {data_file::kPurchases, &WorkingPaths::currentPurchasesFile},
    {data_file::kUserIDPassword, &WorkingPaths::currentUserIDPasswordFile},
};

constexpr const char* kLoadingOrder[] = {data_file::kNodes, data_file::kPurchases,
                                         data_file::kURLNotes, data_file::kUserIDPassword};

}  // namespace

bool hasSitesToArchive(FileSystem& files, const WorkingPaths& paths) {
  FixedRecordFile file(files, paths.currentNodesFile, site_record::kLength, FileAccess::ReadWrite);
  bool isAnyFound = false;
  file.scan(file.recordCount(), FixedRecordFile::ReadFailures::Throw,
            [&isAnyFound](std::uint64_t, std::span<const char> record) {
              isAnyFound = fieldHoldsText(fieldOf(record, site_record::kSiteAddress));
              return !isAnyFound;
            });
  return isAnyFound;
}

void moveIntoArchive(FileSystem& files, const WorkingPaths& paths, const Path& folder,
                     EarlierArchive earlier) {
  if (earlier == EarlierArchive::Delete) {
    for (const DataFile& data : kArchivingOrder) {
      const Path archived = folder / data.name;
      if (!files.isSameFile(archived, paths.*data.current)) files.deleteFile(archived);
    }
  }
  for (const DataFile& data : kArchivingOrder) {
    files.copyFile(paths.*data.current, folder / data.name);
  }
  std::vector<Path> emptied;
  for (const DataFile& data : kArchivingOrder) {
    const Path& working = emptied.emplace_back(paths.loadPath / data.name);
    // After a failed load, the current file is another one.
    if (working == paths.*data.current) {
      files.deleteCopiedFile(working, folder / data.name);
    } else {
      files.deleteFile(working);
    }
  }
  createEmptyFiles(files, emptied);
}

void takeOverArchive(FileSystem& files, const AppPaths& appPaths, WorkingPaths& paths,
                     const Path& folder) {
  for (const char* name : kLoadingOrder) {
    files.copyFile(folder / name, appPaths.appPath("Data") / name);
  }
  paths.setFilesFolder(paths.loadPath);
}

bool deleteArchiveFiles(FileSystem& files, const Path& folder, std::span<const Path> names) {
  bool isAnyDeleted = false;
  for (const Path& name : names) {
    if (!isDeletedWithAnArchive(name)) continue;
    files.deleteFile(folder / name);
    isAnyDeleted = true;
  }
  return isAnyDeleted;
}

}  // namespace quorrix
