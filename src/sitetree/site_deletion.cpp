#include "sitetree/site_deletion.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "datafiles/empty_files.h"
#include "datafiles/fixed_record_file.h"
#include "datafiles/record_layouts.h"
#include "datafiles/site_record.h"
#include "datafiles/text_field.h"

namespace quorrix {
namespace {

struct DataFile {
  Path WorkingPaths::*path;
  std::size_t recordLength;
};

constexpr DataFile kDataFiles[] = {
    {&WorkingPaths::currentNodesFile, site_record::kLength},
    {&WorkingPaths::currentPurchasesFile, purchase_record::kLength},
    {&WorkingPaths::currentURLNotesFile, notes_record::kLength},
    {&WorkingPaths::currentUserIDPasswordFile, user_id_password_record::kLength},
};

// In all four the address is the same field.
static_assert(site_record::kSiteAddress.offset == kSiteKey.offset);
static_assert(site_record::kSiteAddress.width == kSiteKey.width);

using Keys = std::span<const std::string_view>;
using RecordNumbers = std::vector<std::uint64_t>;

// The sites to delete and, once the file's records are taken, which of them those have.
class SoughtSites {
 public:
  explicit SoughtSites(Keys keys) {
    sites_.reserve(keys.size());
    for (const std::string_view key : keys) {
      if (!key.empty()) ++sites_[key].timesListed;
    }
  }

  // To be called for the records in the file's order: of a site's records as many
  // of the first are kept in mind as the site is listed.
  void take(std::string_view address, std::uint64_t number) {
    const auto site = sites_.find(address);
    if (site == sites_.end()) return;
    auto& [timesListed, records, timesAsked] = site->second;
    if (records.size() < timesListed) records.push_back(number);
  }

  // The site's first record, when asked again its second; 0 when there is none.
  [[nodiscard]] std::uint64_t nextRecordOf(std::string_view key) {
    const auto site = sites_.find(key);
    if (site == sites_.end()) return 0;
    auto& [timesListed, records, timesAsked] = site->second;
    return timesAsked < records.size() ? records[timesAsked++] : 0;
  }

 private:
  struct Site {
    std::size_t timesListed = 0;
    RecordNumbers records;
    std::size_t timesAsked = 0;
  };

  std::unordered_map<std::string_view, Site> sites_;
};

// In the order of `keys`, so that a failure half-way leaves what the later keys have.
RecordNumbers recordsToBlank(FixedRecordFile& file, Keys keys) {
  SoughtSites sought(keys);
  file.scan(file.recordCount(), FixedRecordFile::ReadFailures::Throw,
            [&sought](std::uint64_t number, std::span<const char> record) {
              sought.take(fieldText(fieldOf(record, kSiteKey)), number);
              return true;
            });
  RecordNumbers numbers;
  for (const std::string_view key : keys) {
    if (const std::uint64_t number = sought.nextRecordOf(key); number > 0) {
      numbers.push_back(number);
    }
  }
  return numbers;
}

void blankRecords(FileSystem& files, const Path& path, std::size_t recordLength, Keys keys) {
  // A file that may not be written is no obstacle while it has nothing to blank.
  FixedRecordFile file(files, path, recordLength, FileAccess::AsPermitted);
  const RecordNumbers numbers = recordsToBlank(file, keys);
  if (numbers.empty()) return;
  const std::vector<char> blank(recordLength, ' ');
  for (const std::uint64_t number : numbers) file.put(number, blank);
  file.sync();
}

}  // namespace

void deleteSiteRecords(FileSystem& files, const WorkingPaths& paths, Keys deletedKeys) {
  for (const DataFile& data : kDataFiles) {
    blankRecords(files, paths.*data.path, data.recordLength, deletedKeys);
  }
}

void deleteAllRecords(FileSystem& files, const WorkingPaths& paths) {
  std::vector<Path> inOrder;
  for (const DataFile& data : kDataFiles) inOrder.push_back(paths.*data.path);
  emptyFiles(files, inOrder);
}

}  // namespace quorrix
