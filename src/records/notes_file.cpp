#include "records/notes_file.h"

#include <array>

#include "records/record_file.h"

namespace quorrix {
namespace {

using namespace notes_record;
using NotesRecord = std::array<char, kLength>;

}  // namespace

std::optional<std::string> NotesFile::read(std::string_view siteKey) {
  RecordFile file(files_, paths_.currentURLNotesFile, kLength, FileAccess::Read, likely_);
  const RecordNumber number = file.find(siteKey);
  if (number == kNoRecord) return std::nullopt;
  NotesRecord record;
  file.get(number, record);
  return std::string(fieldOf(record, kNotesText));
}

void NotesFile::save(std::string_view siteKey, std::string_view notes) {
  RecordFile file(files_, paths_.currentURLNotesFile, kLength, FileAccess::ReadWrite, likely_);
  const RecordNumber number = file.find(siteKey);
  NotesRecord record;
  if (number == kNoRecord) {
    fillField(record, kSiteKey, siteKey);
  } else {
    file.get(number, record);
  }
  fillField(record, kNotesText, notes);
  file.putOrAppend(number, record);
}

void NotesFile::remove(std::string_view siteKey) {
  RecordFile file(files_, paths_.currentURLNotesFile, kLength, FileAccess::ReadWrite, likely_);
  file.blank(file.find(siteKey));
}

}  // namespace quorrix
