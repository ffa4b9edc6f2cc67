#include "archives/archive_files.h"

#include <algorithm>
#include <iterator>

#include "datafiles/working_folder.h"

namespace quorrix {
namespace {

constexpr const char* kTitles = "titles.txt";

constexpr const char* kDeletedNames[] = {"purchases.dat", "purchases", "info.dat", "info",
                                         "notes.dat",     "notes",     "nodes",    "nodes.dat"};

}  // namespace

bool holdsArchiveFiles(FileSystem& files, const Path& folder) {
  Path besideTheFolder = folder;
  besideTheFolder += data_file::kPurchases;
  return files.fileExists(folder / data_file::kNodes) ||
         files.fileExists(folder / data_file::kURLNotes) || files.fileExists(besideTheFolder) ||
         files.fileExists(folder / data_file::kUserIDPassword) ||
         files.fileExists(folder / kTitles);
}

bool canBeLoaded(FileSystem& files, const Path& folder) {
  return files.fileExists(folder / data_file::kNodes);
}

bool isDeletedWithAnArchive(const Path& name) {
  return std::any_of(
      std::begin(kDeletedNames), std::end(kDeletedNames),
      [&name](const char* deleted) { return name.native() == Path(deleted).native(); });
}

}  // namespace quorrix
