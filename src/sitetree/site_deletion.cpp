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

// The address is the same field in all four files.
static_assert(site_record::kSiteAddress.offset == kSiteKey.offset);
static_assert(site_record::kSiteAddress.width == kSiteKey.width);

using Keys = std::span<const std::string_view>;
using RecordNumbers = std::vector<std::uint64_t>;

// Returns the first record of each site, in the order of `keys`. If blanking then fails
// part-way, the records of the later keys are unchanged.
RecordNumbers recordsToBlank(FixedRecordFile& file, Keys keys) {
  constexpr std::uint64_t kNone = 0;
  std::unordered_map<std::string_view, std::uint64_t> firstRecords;
  firstRecords.reserve(keys.size());
  for (const std::string_view key : keys) {
    if (!key.empty()) firstRecords.emplace(key, kNone);
  }
  file.scan(file.recordCount(), FixedRecordFile::ReadFailures::Throw,
            [&firstRecords](std::uint64_t number, std::span<const char> record) {
              const auto site = firstRecords.find(fieldText(fieldOf(record, kSiteKey)));
              if (site != firstRecords.end() && site->second == kNone) site->second = number;
              return true;
            });
  RecordNumbers numbers;
  for (const std::string_view key : keys) {
    const auto site = firstRecords.find(key);
    if (site != firstRecords.end() && site->second != kNone) numbers.push_back(site->second);
  }
  return numbers;
}

void blankRecords(FileSystem& files, const Path& path, std::size_t recordLength, Keys keys) {
  // A file that the user may not write to fails only if it has a record to blank.
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
