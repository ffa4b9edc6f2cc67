// The document of the main window: the tree of sites and the data files that it is
// built from. Each operation on both has its order of steps here. Failures reach the
// caller as Failure and stop an operation where it is; nothing is rolled back.
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

// The steps of the display that come between two steps on the files, so that it shows
// how far an operation got.
class SiteDisplay {
 public:
  virtual ~SiteDisplay() = default;

  // The tree has been read from a file.
  virtual void showHosts() = 0;

  // The archive loaded last, as load.txt names it, in the platform's encoding.
  virtual void showLastArchive(std::string_view name) = 0;

  // The same while its folder is known, whose name the platform's encoding may lack.
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

  // At start-up: makes the folder "Archives" and missing data files, and fills the tree.
  // Fails with kFileNotFound without load.txt, with kPathNotFound without "Data".
  void load();

  // Empties the tree; the files keep everything.
  void clear() { tree_.clear(); }

  // Deletes the selected node, with all that is below it, from the files and then from
  // the tree: after a failure the tree still shows what is left in the files. The root
  // stands for everything.
  void deleteSelected();

  // Moves everything into the folder; the tree is empty then.
  void archiveTo(const Path& folder, EarlierArchive earlier);

  // Replaces everything by the archive in the folder. If a file cannot be copied, the
  // paths go on leading into the archive, whose sites the tree then shows.
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
