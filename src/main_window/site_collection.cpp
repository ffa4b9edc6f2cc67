#include "main_window/site_collection.h"

#include <array>
#include <utility>

#include "archives/last_archive.h"
#include "datafiles/empty_files.h"
#include "sitetree/site_deletion.h"

namespace quorrix {
namespace {

std::string_view withoutOuterBlanks(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

SiteCollection::SiteCollection(FileSystem& files, Clock& clock, AppPaths appPaths,
                               SiteDisplay& display)
    : files_(files),
      appPaths_(std::move(appPaths)),
      display_(display),
      siteFile_(files, clock, paths_) {}

void SiteCollection::load() {
  const Path archives = appPaths_.appPath("Archives");
  if (!files_.folderExists(archives)) files_.makeFolder(archives);
  paths_.setFolder(appPaths_.appPath("Data"));
  siteFile_.loadNodes(tree_);
  createMissingFiles(files_,
                     std::array{paths_.currentURLNotesFile, paths_.currentUserIDPasswordFile,
                                paths_.currentPurchasesFile});
  display_.showHosts();
  const std::string lastArchive = files_.readFirstLine(appPaths_.appPath("Data") / "load.txt");
  display_.showLastArchive(withoutOuterBlanks(lastArchive));
}

void SiteCollection::deleteSelected() {
  const NodeId selected = tree_.selected();
  if (selected == tree_.root()) {
    deleteAllRecords(files_, paths_);
    clear();
  } else {
    deleteSiteRecords(files_, paths_, tree_.collectSubtreeKeys(selected));
    tree_.remove(selected);
  }
}

void SiteCollection::archiveTo(const Path& folder, EarlierArchive earlier) {
  moveIntoArchive(files_, paths_, folder, earlier);
  clear();
  display_.showLastArchive("none");
  rememberNoArchive(files_, appPaths_);
}

void SiteCollection::loadArchive(const Path& folder) {
  paths_.setFilesFolder(folder);
  clear();
  siteFile_.readSiteFile(tree_);
  display_.showHosts();
  takeOverArchive(files_, appPaths_, paths_, folder);
  tree_.select(tree_.root());
  display_.showLastArchiveFolder(folder);
  rememberArchive(files_, appPaths_, folder);
}

}  // namespace quorrix
