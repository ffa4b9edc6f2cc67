// One of the three record files, open for one operation: finding, adding, replacing and
// blanking records that belong to a site. Record numbers are 16-bit; a number above
// 32,767 fails with kOverflow.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

#include "datafiles/fixed_record_file.h"
#include "datafiles/record_layouts.h"
#include "platform/file_system.h"

namespace quorrix {

using RecordNumber = int;  // 1 to 32,767, or kNoRecord
inline constexpr RecordNumber kNoRecord = -1;
inline constexpr RecordNumber kLastRecordNumber = 32'767;

// Where the last search ended. A record that still matches there is the first match and
// need not be searched for again, because records are only ever appended after the last
// one. Do not keep it longer than the dialog that searches, because another file may
// replace this one.
struct LikelyRecord {
  Path path;
  RecordNumber number = kNoRecord;
};

class RecordFile {
 public:
  using Record = std::span<const char>;

  // Creates a missing file.
  RecordFile(FileSystem& files, const Path& path, std::size_t recordLength, FileAccess access,
             LikelyRecord& likely);

  // The file's length in records, rounded to the nearest whole number, half to even.
  // Throws kOverflow above 32,767.
  [[nodiscard]] RecordNumber recordCount();

  // The first live record of the site for which `isSought` is true, or kNoRecord.
  [[nodiscard]] RecordNumber find(
      std::string_view siteKey,
      const std::function<bool(Record)>& isSought = [](Record) { return true; });

  // Calls `visit` for every record of the site up to the end of the file, in order.
  void forEach(std::string_view siteKey, const std::function<void(Record)>& visit);

  // `record` has the file's record length.
  void get(RecordNumber number, std::span<char> record);

  // Overwrites record `number`; for kNoRecord, appends the record after the last one.
  // Throws kOverflow if the file already has 32,767 records.
  void putOrAppend(RecordNumber number, Record record);

  // Overwrites every byte with blanks; the file keeps its length. Does nothing for
  // kNoRecord.
  void blank(RecordNumber number);

 private:
  [[nodiscard]] bool isAtLikelyPlace(RecordNumber count, std::string_view siteKey,
                                     const std::function<bool(Record)>& isSought);

  // Writes the whole record at once, and returns when it has reached the disk.
  void put(RecordNumber number, Record record);

  FixedRecordFile file_;
  std::size_t recordLength_;
  const Path& path_;
  LikelyRecord& likely_;
};

// The text before the first "~". Throws kInvalidCall for a field without one.
[[nodiscard]] std::string_view cutAtTilde(std::string_view field);

// The text before the first blank. Throws kInvalidCall for a field without one.
[[nodiscard]] std::string_view cutAtBlank(std::string_view field);

}  // namespace quorrix
