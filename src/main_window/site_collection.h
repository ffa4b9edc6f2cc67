// The document of the main window: the tree of sites and the data files that it is built
// from. The order of steps of each operation on both is defined here. A failure stops the
// operation and reaches the caller as Failure; nothing is rolled back.
#pragma once

#include <string_view>

#include "archives/archive_operations.h"
#include "datafiles/working_folder.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "shell/app_paths.h"
#include "sitetree/site_file.h"
#include "sitetree/site_tree.h"

namespace quorrix {

// Updates of the display that happen between two steps on the files, so that the display
// shows how far an operation got.
class SiteDisplay {
 public:
  virtual ~SiteDisplay() = default;

  // Called after the tree has been read from a file.
  virtual void showHosts() = 0;

  // Shows the archive loaded last, as load.txt names it, in the platform's encoding.
  virtual void showLastArchive(std::string_view name) = 0;

  // The same if its folder is known. The folder's name may not exist in the platform's
  // encoding.
  virtual void showLastArchiveFolder(const Path& folder) = 0;
};

class SiteCollection {
 public:
  // All must outlive this.
  SiteCollection(FileSystem& files, Clock& clock, AppPaths appPaths, SiteDisplay& display);

  [[nodiscard]] SiteTree& tree() { return tree_; }
  [[nodiscard]] SiteFile& siteFile() { return siteFile_; }
  [[nodiscard]] const WorkingPaths& paths() const { return paths_; }
  [[nodiscard]] bool isDisplayEmpty() const { return tree_.size() <= 1; }

  // At start-up: creates the folder "Archives" and missing data files, and fills the
  // tree. Fails with kFileNotFound if load.txt is missing, and with kPathNotFound if
  // "Data" is missing.
  void load();

  // Empties the tree; the files do not change.
  void clear() { tree_.clear(); }

  // Deletes the selected node and everything below it, first from the files and then from
  // the tree, so that after a failure the tree still shows what is left in the files. If
  // the root is selected, deletes everything.
  void deleteSelected();

  // Moves everything into the folder and empties the tree.
  void archiveTo(const Path& folder, EarlierArchive earlier);

  // Replaces everything with the archive in the folder. If a file cannot be copied, the
  // paths keep pointing into the archive, and the tree shows its sites.
  void loadArchive(const Path& folder);

 private:
  FileSystem& files_;
  AppPaths appPaths_;
  SiteDisplay& display_;
  WorkingPaths paths_;
  SiteTree tree_;
  SiteFile siteFile_;
};

}  // namespace quorrix
