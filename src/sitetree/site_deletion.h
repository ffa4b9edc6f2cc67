// Destroys what the four data files keep about sites. Records are blanked in
// their places; only deleting everything makes a file shorter. Failures of the
// files reach the caller as Failure and stop the deletion where it is: what is
// blanked or deleted by then stays so, and the files behind are untouched.
#pragma once

#include <span>
#include <string_view>

#include "datafiles/working_folder.h"
#include "platform/file_system.h"

namespace quorrix {

// In the site file, the purchases, the notes, and the user IDs and passwords, in
// this order: blanks for each key the first record whose address is the key,
// letter case included. Of two records with one address the second stays. No key is
// listed twice, and an empty key has no record. Each file is read once,
// however many keys there are, and wholly before its first record is blanked; it
// is created when it is missing.
void deleteSiteRecords(FileSystem& files, const WorkingPaths& paths,
                       std::span<const std::string_view> deletedKeys);

// Deletes the same four files in the same order, then creates each again, empty.
// A file that is missing fails with kFileNotFound.
void deleteAllRecords(FileSystem& files, const WorkingPaths& paths);

}  // namespace quorrix
