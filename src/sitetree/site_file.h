// The site file, nodes.dat: a record per recorded address, in order of first
// visit. It brings the tree back at start-up and takes one record per visit.
// Every method opens, works and closes; failures of the file reach the caller
// as Failure.
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
  // Works on paths.currentNodesFile as it is at the moment of each call.
  SiteFile(FileSystem& files, Clock& clock, const WorkingPaths& paths);

  // Adds the root to the empty tree, then all records.
  void loadNodes(SiteTree& tree);

  // Adds every record's address to the tree. A record that cannot be read or
  // has too many levels is passed over, and the next one taken.
  void readSiteFile(SiteTree& tree);

  // Sets stamp and flag of the first record with this address; without such a
  // record nothing is written. Returns its number, 0 for none. `likelyNumber`
  // is where that record was when last seen. The file is not searched when the record
  // is still there. It is then still the first one, because records are only ever
  // appended after the last one.
  std::uint64_t updateSiteRecord(std::string_view siteAddress, char protocolFlag,
                                 std::uint64_t likelyNumber = 0);

  struct LatestVisit {
    char protocolFlag;
    std::string stamp;  // without its end mark
  };

  // The latest of the records with this address; nullopt without any. After a site was
  // cleared from the display and visited again it has two. Reads the whole file and writes
  // nothing.
  [[nodiscard]] std::optional<LatestVisit> latestVisit(std::string_view siteAddress);

  // Appends a record after the last one.
  void appendSiteRecord(std::string_view siteAddress, char protocolFlag);

 private:
  // Creates the file when it is missing; the file closes with the object.
  [[nodiscard]] FixedRecordFile openSiteFile();
  void stamp(SiteRecord& record, char protocolFlag);

  FileSystem& files_;
  Clock& clock_;
  const WorkingPaths& paths_;
};

// The room to make in a tree for so many records.
[[nodiscard]] std::size_t nodesToReserve(std::uint64_t records);

}  // namespace quorrix
