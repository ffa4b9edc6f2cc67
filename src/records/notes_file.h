// notes.dat: one free text per site. Every method opens the file, works and closes it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "datafiles/working_folder.h"
#include "platform/file_system.h"
#include "records/record_file.h"

namespace quorrix {

class NotesFile {
 public:
  NotesFile(FileSystem& files, const WorkingPaths& paths) : files_(files), paths_(paths) {}

  // The whole field of 1,024 characters, padding included; nullopt if the site has no
  // record.
  [[nodiscard]] std::optional<std::string> read(std::string_view siteKey);

  // Replaces the site's record, or appends one.
  void save(std::string_view siteKey, std::string_view notes);

  // Blanks the site's record. Writes nothing if it is missing.
  void remove(std::string_view siteKey);

 private:
  FileSystem& files_;
  const WorkingPaths& paths_;
  LikelyRecord likely_;
};

}  // namespace quorrix
