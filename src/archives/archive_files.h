// What an archive folder holds: copies of the four data files, under the same names.
// Archiving, loading and deleting each have a rule of their own for what they take
// for an archive. The rules look like one rule written three times and are not.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

// Archiving: whether the folder holds what an archive would replace, which the user
// is then asked about. Of five names one is enough. Two of them keep this apart from
// the other rules: "titles.txt" counts although nothing reads or writes it, and
// "purchases.dat" follows the folder's path without a separator, so that for
// "Archives/May" it is "Maypurchases.dat" in "Archives" that counts. Put right, it
// would raise the question for other folders than users of archives know.
[[nodiscard]] bool holdsArchiveFiles(FileSystem& files, const Path& folder);

// Loading: nodes.dat alone decides. The other three are found missing only when they
// are copied; asked for here, they would keep a user from the sites of an archive
// that lacks one of them, which now show in the tree all the same.
[[nodiscard]] bool canBeLoaded(FileSystem& files, const Path& folder);

// Deleting: whether a file of this name goes with the archive. Eight names, letter
// case included on every system, the four without an extension among them;
// "titles.txt" stays. A wider rule would delete files that are not the archive's.
[[nodiscard]] bool isDeletedWithAnArchive(const Path& name);

}  // namespace quorrix
