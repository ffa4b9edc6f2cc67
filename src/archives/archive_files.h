// An archive folder holds copies of the four data files, under the same names. Archiving,
// loading and deleting each have their own rule for what counts as an archive. The three
// rules look alike but are different.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

// Archiving: whether the folder holds files that an archive would replace, in which case
// the user is asked. Any one of five names is enough. Two of them differ from the other
// rules: "titles.txt" counts although nothing reads or writes it, and "purchases.dat" is
// appended to the folder's path without a separator, so for "Archives/May" the file that
// counts is "Archives/Maypurchases.dat". Correcting this would change which folders raise
// the question.
[[nodiscard]] bool holdsArchiveFiles(FileSystem& files, const Path& folder);

// Loading: only nodes.dat is required. If one of the other three is missing, the load
// fails when it copies that file. The tree shows the archive's sites before the
// files are copied, so the user sees them even if the archive is incomplete.
[[nodiscard]] bool canBeLoaded(FileSystem& files, const Path& folder);

// Deleting: whether a file of this name is deleted with the archive. There are eight
// names, four of them without an extension, compared case-sensitively on every system;
// "titles.txt" is kept. A wider rule would delete files that do not belong to the
// archive.
[[nodiscard]] bool isDeletedWithAnArchive(const Path& name);

}  // namespace quorrix
