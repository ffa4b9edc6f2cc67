// The site file, nodes.dat: one record per recorded address, in the order of first
// visits. The tree is loaded from it at start-up, and each visit writes one record. Every
// method opens the file and closes it again. File errors are thrown as Failure.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "datafiles/fixed_record_file.h"
#include "datafiles/site_record.h"
#include "datafiles/working_folder.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "sitetree/site_tree.h"

namespace quorrix {

class SiteFile {
 public:
  // Each call uses the value that paths.currentNodesFile has at that time.
  SiteFile(FileSystem& files, Clock& clock, const WorkingPaths& paths);

  // Adds the root to the empty tree, then all records.
  void loadNodes(SiteTree& tree);

  // Adds the address of every record to the tree. A record that cannot be read or has too
  // many levels is skipped.
  void readSiteFile(SiteTree& tree);

  // Sets the stamp and the flag of the first record with this address, and returns its
  // number. Returns 0 and writes nothing if there is no such record. `likelyNumber` is
  // the number of that record when it was last read, or 0. If the record is still there,
  // the file is not searched. It is then still the first one, because records are only
  // ever appended after the last one.
  std::uint64_t updateSiteRecord(std::string_view siteAddress, char protocolFlag,
                                 std::uint64_t likelyNumber = 0);

  struct LatestVisit {
    char protocolFlag;
    std::string stamp;  // without its end mark
  };

  // The latest of the records with this address; nullopt if no record has it. A site that
  // was cleared from the display and visited again has two. Reads the whole file and
  // writes no record. A missing file is created.
  [[nodiscard]] std::optional<LatestVisit> latestVisit(std::string_view siteAddress);

  // Appends a record after the last one.
  void appendSiteRecord(std::string_view siteAddress, char protocolFlag);

 private:
  // Creates the file if it is missing. The destructor of the returned object closes it.
  [[nodiscard]] FixedRecordFile openSiteFile();
  void stamp(SiteRecord& record, char protocolFlag);

  FileSystem& files_;
  Clock& clock_;
  const WorkingPaths& paths_;
};

// The number of nodes for which to make room in a tree that is loaded from this many
// records.
[[nodiscard]] std::size_t nodesToReserve(std::uint64_t records);

}  // namespace quorrix
