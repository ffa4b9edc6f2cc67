#include "sitetree/site_file.h"

#include <algorithm>

#include "datafiles/access_stamp.h"

namespace quorrix {
namespace {

bool holdsAddress(std::span<const char> record, std::string_view siteAddress) {
  return fieldHolds(fieldOf(record, site_record::kSiteAddress), siteAddress);
}

void addRecordOrPassItOver(SiteTree::Batch& batch, std::uint64_t number,
                           std::span<const char> record) {
  try {
    const auto address = fieldText(fieldOf(record, site_record::kSiteAddress));
    if (address.empty()) return;
    batch.add(address, fieldOf(record, site_record::kProtocolFlag).front(), number);
  } catch (...) {
    // One bad record must not prevent the sites after it from being loaded.
  }
}

// Copies the first record with this address into `record` and returns its number. Returns
// 0 if no record has it.
std::uint64_t findRecord(FixedRecordFile& file, std::string_view siteAddress,
                         std::uint64_t likelyNumber, SiteRecord& record) {
  const std::uint64_t last = file.recordsBegun();
  std::uint64_t found = 0;
  const auto take = [&](std::uint64_t number, std::span<const char> bytes) {
    if (!holdsAddress(bytes, siteAddress)) return true;
    found = number;
    std::copy(bytes.begin(), bytes.end(), record.begin());
    return false;
  };
  if (likelyNumber > 0 && likelyNumber <= last) {
    SiteRecord likely;
    file.get(likelyNumber, likely);
    take(likelyNumber, likely);
  }
  if (found == 0) file.scan(last, FixedRecordFile::ReadFailures::Throw, take);
  return found;
}

}  // namespace

SiteFile::SiteFile(FileSystem& files, Clock& clock, const WorkingPaths& paths)
    : files_(files), clock_(clock), paths_(paths) {}

void SiteFile::loadNodes(SiteTree& tree) {
  tree.addRoot();
  readSiteFile(tree);
}

void SiteFile::readSiteFile(SiteTree& tree) {
  FixedRecordFile file = openSiteFile();
  const SiteTree::BulkChange change(tree);
  const std::uint64_t count = file.recordCount();
  tree.reserve(nodesToReserve(count));
  SiteTree::Batch batch(tree);
  file.scan(count, FixedRecordFile::ReadFailures::SkipRecord,
            [&batch](std::uint64_t number, std::span<const char> record) {
              addRecordOrPassItOver(batch, number, record);
              return true;
            });
  batch.flush();
}

std::uint64_t SiteFile::updateSiteRecord(std::string_view siteAddress, char protocolFlag,
                                         std::uint64_t likelyNumber) {
  FixedRecordFile file = openSiteFile();
  SiteRecord updated;
  const std::uint64_t found = findRecord(file, siteAddress, likelyNumber, updated);
  if (found == 0) return 0;
  stamp(updated, protocolFlag);
  file.put(found, updated);
  file.sync();
  return found;
}

std::optional<SiteFile::LatestVisit> SiteFile::latestVisit(std::string_view siteAddress) {
  FixedRecordFile file(files_, paths_.currentNodesFile, site_record::kLength, FileAccess::Read);
  std::optional<LatestVisit> latest;
  std::optional<StampTime> latestTime;
  file.scan(file.recordsBegun(), FixedRecordFile::ReadFailures::SkipRecord,
            [&](std::uint64_t, std::span<const char> record) {
              if (!holdsAddress(record, siteAddress)) return true;
              const auto field = fieldOf(record, site_record::kAccessStamp);
              const auto stamp = field.substr(0, field.find(kStampEnd));
              const auto time = stampTime(stamp);
              if (latest && time <= latestTime) return true;
              latest = {fieldOf(record, site_record::kProtocolFlag).front(), std::string(stamp)};
              latestTime = time;
              return true;
            });
  return latest;
}

void SiteFile::appendSiteRecord(std::string_view siteAddress, char protocolFlag) {
  FixedRecordFile file = openSiteFile();
  SiteRecord record;
  fillField(record, site_record::kSiteAddress, siteAddress);
  stamp(record, protocolFlag);
  file.put(file.recordCount() + 1, record);
  file.sync();
}

FixedRecordFile SiteFile::openSiteFile() {
  return {files_, paths_.currentNodesFile, site_record::kLength, FileAccess::ReadWrite};
}

void SiteFile::stamp(SiteRecord& record, char protocolFlag) {
  fillField(record, site_record::kProtocolFlag, {&protocolFlag, 1});
  fillField(record, site_record::kAccessStamp, accessStampText(clock_.now()) + kStampEnd);
}

std::size_t nodesToReserve(std::uint64_t records) {
  // A record usually adds two to three nodes, and moving a tree that outgrows its memory
  // costs more than memory that stays unused.
  constexpr std::uint64_t kNodesPerRecord = 3;
  // A file can have fewer records than its length suggests, because it may be sparse.
  constexpr std::uint64_t kMost = 3'000'000;
  return static_cast<std::size_t>(std::min(records, kMost / kNodesPerRecord) * kNodesPerRecord);
}

}  // namespace quorrix
