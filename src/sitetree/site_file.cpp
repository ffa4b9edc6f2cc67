#include "sitetree/site_file.h"

#include <algorithm>

#include "platform/failure.h"
#include "sitetree/access_stamp.h"

namespace quorrix {
namespace {

// A file's length can promise more records than it has: it may be one large hole.
constexpr std::uint64_t kMostNodesReserved = 1'000'000;

void addRecordOrPassItOver(SiteTree& tree, std::span<const char> record) {
  try {
    const auto address = fieldText(fieldOf(record, site_record::kSiteAddress));
    if (address.empty()) return;
    addRecordToTree(tree, address, fieldOf(record, site_record::kProtocolFlag).front());
  } catch (...) {
    // One bad record must not cost the user the sites behind it.
  }
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
  tree.reserve(static_cast<std::size_t>(std::min(count, kMostNodesReserved)));
  file.scan(count, FixedRecordFile::ReadFailures::SkipRecord,
            [&tree](std::uint64_t, std::span<const char> record) {
              addRecordOrPassItOver(tree, record);
              return true;
            });
}

void SiteFile::updateSiteRecord(std::string_view siteAddress, char protocolFlag) {
  FixedRecordFile file = openSiteFile();
  std::uint64_t found = 0;
  SiteRecord updated;
  file.scan(file.recordsBegun(), FixedRecordFile::ReadFailures::Throw,
            [&](std::uint64_t number, std::span<const char> record) {
              if (!fieldHolds(fieldOf(record, site_record::kSiteAddress), siteAddress)) return true;
              found = number;
              std::copy(record.begin(), record.end(), updated.begin());
              return false;
            });
  if (found == 0) return;
  stamp(updated, protocolFlag);
  file.put(found, updated);
  file.sync();
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
  return {files_, paths_.currentNodesFile, site_record::kLength};
}

void SiteFile::stamp(SiteRecord& record, char protocolFlag) {
  fillField(record, site_record::kProtocolFlag, {&protocolFlag, 1});
  fillField(record, site_record::kAccessStamp, accessStampText(clock_.now()) + kStampEnd);
}

void addRecordToTree(SiteTree& tree, std::string_view siteAddress, char protocolFlag) {
  tree.addMissingLevels(addressLevels(siteAddress), protocolFlag);
}

}  // namespace quorrix
