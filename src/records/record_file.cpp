#include "records/record_file.h"

#include <vector>

#include "platform/failure.h"

namespace quorrix {
namespace {

RecordNumber checked(std::uint64_t number) {
  if (number > static_cast<std::uint64_t>(kLastRecordNumber)) throw Failure(failure::kOverflow);
  return static_cast<RecordNumber>(number);
}

bool belongsTo(RecordFile::Record record, std::string_view siteKey) {
  return !siteKey.empty() && fieldHolds(fieldOf(record, kSiteKey), siteKey);
}

std::string_view cutAt(std::string_view field, char end) {
  const auto place = field.find(end);
  if (place == std::string_view::npos) throw Failure(failure::kInvalidCall);
  return field.substr(0, place);
}

}  // namespace

RecordFile::RecordFile(FileSystem& files, const Path& path, std::size_t recordLength,
                       FileAccess access, LikelyRecord& likely)
    : file_(files, path, recordLength, access),
      recordLength_(recordLength),
      path_(path),
      likely_(likely) {}

RecordNumber RecordFile::recordCount() { return checked(file_.recordCount()); }

RecordNumber RecordFile::find(std::string_view siteKey,
                              const std::function<bool(Record)>& isSought) {
  const RecordNumber count = recordCount();
  if (isAtLikelyPlace(count, siteKey, isSought)) return likely_.number;
  RecordNumber found = kNoRecord;
  file_.scan(static_cast<std::uint64_t>(count), FixedRecordFile::ReadFailures::Throw,
             [&](std::uint64_t number, Record record) {
               if (!belongsTo(record, siteKey) || !isSought(record)) return true;
               found = static_cast<RecordNumber>(number);
               return false;
             });
  likely_ = {.path = path_, .number = found};
  return found;
}

bool RecordFile::isAtLikelyPlace(RecordNumber count, std::string_view siteKey,
                                 const std::function<bool(Record)>& isSought) {
  if (likely_.number == kNoRecord || likely_.number > count || likely_.path != path_) return false;
  std::vector<char> record(recordLength_);
  get(likely_.number, record);
  return belongsTo(record, siteKey) && isSought(record);
}

void RecordFile::forEach(std::string_view siteKey, const std::function<void(Record)>& visit) {
  file_.scan(file_.recordsBegun(), FixedRecordFile::ReadFailures::Throw,
             [&](std::uint64_t number, Record record) {
               checked(number);
               if (belongsTo(record, siteKey)) visit(record);
               return true;
             });
}

void RecordFile::get(RecordNumber number, std::span<char> record) {
  file_.get(static_cast<std::uint64_t>(number), record);
}

void RecordFile::put(RecordNumber number, Record record) {
  file_.put(static_cast<std::uint64_t>(number), record);
  file_.sync();
}

void RecordFile::putOrAppend(RecordNumber number, Record record) {
  const bool isNew = number == kNoRecord;
  put(isNew ? checked(static_cast<std::uint64_t>(recordCount()) + 1) : number, record);
}

void RecordFile::blank(RecordNumber number) {
  if (number == kNoRecord) return;
  put(number, std::vector<char>(recordLength_, ' '));
}

std::string_view cutAtTilde(std::string_view field) { return cutAt(field, '~'); }

std::string_view cutAtBlank(std::string_view field) { return cutAt(field, ' '); }

}  // namespace quorrix
