#include "data_tool/folder_check.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

#include "data_tool/record_check.h"
#include "data_tool/resolved_path.h"
#include "datafiles/record_layouts.h"
#include "datafiles/site_record.h"
#include "datafiles/working_folder.h"
#include "platform/failure.h"
#include "platform/file_replacement.h"
#include "records/record_file.h"
#include "shell/failure_messages.h"

namespace quorrix {
namespace {

constexpr const char* kLoadFile = "load.txt";
constexpr std::size_t kLongestLine = std::size_t{64} * 1024;  // that Quorrix reads, in bytes

enum class Numbers { Any, SixteenBit };
enum class Duplicates { Fine, Remarked };

// Remembers the first record of each site. Only for files with 16-bit numbers, so it stays small.
class FirstRecords {
 public:
  // The number of an earlier record of the same site, or 0.
  std::uint64_t earlier(std::uint64_t number, std::span<const char> record) {
    const auto key = fieldText(fieldOf(record, kSiteKey));
    if (key.empty() || number > kLastRecordNumber) return 0;
    const auto [place, isNew] = numbers_.try_emplace(std::string(key), number);
    return isNew ? 0 : place->second;
  }

 private:
  std::unordered_map<std::string, std::uint64_t> numbers_;
};

}  // namespace

struct FolderCheck::RecordFormat {
  const char* fileName;
  std::size_t recordLength;
  CheckRecord checkRecord;
  Numbers numbers;
  Duplicates duplicates;
};

FolderCheck::FolderCheck(FileSystem& files, RecordReader& reader, Reports reports)
    : files_(files), reader_(reader), reports_(std::move(reports)) {}

void FolderCheck::check(const DataFolder& folder) {
  static constexpr RecordFormat kFormats[] = {
      {data_file::kNodes, site_record::kLength, checkSiteRecord, Numbers::Any, Duplicates::Fine},
      {data_file::kURLNotes, notes_record::kLength, checkNotesRecord, Numbers::SixteenBit,
       Duplicates::Remarked},
      {data_file::kUserIDPassword, user_id_password_record::kLength, checkUserIDPasswordRecord,
       Numbers::SixteenBit, Duplicates::Remarked},
      {data_file::kPurchases, purchase_record::kLength, checkPurchaseRecord, Numbers::SixteenBit,
       Duplicates::Fine},
  };
  for (const RecordFormat& format : kFormats) {
    try {
      checkRecordFile(folder.path / format.fileName, format);
    } catch (const Problem& problem) {
      reports_.problem(problem);
    }
  }
  try {
    checkLoadFile(folder);
    remarkUnfinishedCopies(folder.path);
  } catch (const Problem& problem) {
    reports_.problem(problem);
  }
}

void FolderCheck::checkRecordFile(const Path& path, const RecordFormat& format) {
  std::uint64_t length = 0;
  {
    const auto file = openPatiently(files_, path);
    if (!file) return error(path, {}, {}, "This file is missing.");
    length = withPath(path, [&] { return file->length(); });
  }
  ++filesChecked_;
  checkRecords(path, format, length);
}

void FolderCheck::checkRecords(const Path& path, const RecordFormat& format, std::uint64_t length) {
  const std::uint64_t whole = length / format.recordLength;
  const std::uint64_t rest = length % format.recordLength;
  FirstRecords firsts;
  std::uint64_t start = 0;  // of the record, in the file
  std::uint64_t current = 0;
  const ReportInRecord reportInRecord = [&](FindingKind kind, std::size_t offset,
                                            const std::string& what) {
    reports_.finding(path, {kind, current, start + offset, what});
  };
  const auto begin = [&](std::uint64_t number) {
    current = number;
    start = (number - 1) * format.recordLength;
    if (format.numbers == Numbers::SixteenBit && number == kLastRecordNumber + 1) {
      error(path, number, start, "The file has more than 32,767 records.");
    }
  };
  reader_.forEach(
      path, format.recordLength,
      [&](std::uint64_t number, std::span<const char> record) {
        begin(number);
        if (rest != 0 && number == whole + 1) {
          error(path, number, start,
                "The last record is incomplete: it has " + std::to_string(rest) + " of " +
                    std::to_string(format.recordLength) + " bytes.");
          return true;
        }
        ++recordsChecked_;
        format.checkRecord(record, reportInRecord);
        if (format.duplicates == Duplicates::Fine) return true;
        const std::uint64_t earlier = firsts.earlier(number, record);
        if (earlier != 0) {
          remark(path, number, start,
                 "Record " + std::to_string(earlier) + " belongs to the same site and counts.");
        }
        return true;
      },
      [&](std::uint64_t number, int failureNumber) {
        begin(number);
        error(path, number, start,
              "This record cannot be read. " +
                  failureMessage(FailureFamily::OtherCommand, failureNumber));
        return true;
      });
}

// Quorrix needs the file only where it keeps its data, not in an archive or a copy.
void FolderCheck::checkLoadFile(const DataFolder& folder) {
  const Path path = folder.path / kLoadFile;
  std::string text(kLongestLine, '\0');
  {
    const auto file = openPatiently(files_, path);
    if (!file) {
      const bool isNeeded =
          folder.archive.empty() && absoluteFolder(folder.path).filename() == kDataFolderName;
      if (isNeeded) error(path, {}, {}, "This file is missing.");
      return;
    }
    text.resize(withPath(path, [&] { return file->readAt(0, text); }));
  }
  ++filesChecked_;
  const std::string line = text.substr(0, text.find_first_of("\r\n"));
  if (line.find_first_not_of(' ') == std::string::npos) {
    return error(path, {}, 0, "The first line is empty.");
  }
  if (line.size() == kLongestLine) error(path, {}, kLongestLine, "The first line has no end.");
  const auto control = std::find_if(line.begin(), line.end(), [](char character) {
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
  });
  if (control != line.end()) {
    error(path, {}, static_cast<std::uint64_t>(control - line.begin()),
          "The first line contains a control character.");
  }
}

void FolderCheck::remarkUnfinishedCopies(const Path& folder) {
  for (const Path& name : withPath(folder, [&] { return files_.fileNames(folder); })) {
    if (isReplacementName(name)) remark(folder / name, {}, {}, "This is an unfinished copy.");
  }
}

void FolderCheck::error(const Path& file, std::optional<std::uint64_t> record,
                        std::optional<std::uint64_t> byte, const std::string& what) {
  reports_.finding(file, {FindingKind::Error, record, byte, what});
}

void FolderCheck::remark(const Path& file, std::optional<std::uint64_t> record,
                         std::optional<std::uint64_t> byte, const std::string& what) {
  reports_.finding(file, {FindingKind::Remark, record, byte, what});
}

}  // namespace quorrix
