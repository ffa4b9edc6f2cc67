// Deletes the records of sites from the four data files. Records are blanked in place;
// only deleting everything makes a file shorter. A file error is thrown as Failure and
// stops the deletion: records already blanked and files already deleted stay so, and the
// remaining files are untouched.
#pragma once

#include <span>
#include <string_view>

#include "datafiles/working_folder.h"
#include "platform/file_system.h"

namespace quorrix {

// For each key, blanks the first record whose address equals the key, letter case
// included. If two records have the same address, the second one stays. The files are
// processed in this order: the site file, the purchases, the notes, and the user IDs and
// passwords. No key may be listed twice; an empty key matches no record. Each file is
// read once, however many keys there are, and completely before its first record is
// blanked. A missing file is created.
void deleteSiteRecords(FileSystem& files, const WorkingPaths& paths,
                       std::span<const std::string_view> deletedKeys);

// Deletes the same four files in the same order, then creates each again, empty. Throws
// kFileNotFound if a file is missing.
void deleteAllRecords(FileSystem& files, const WorkingPaths& paths);

}  // namespace quorrix
