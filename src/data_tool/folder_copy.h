// Copies a data folder and its archives while Quorrix may be using them.
#pragma once

#include "data_tool/data_folder.h"
#include "data_tool/lock_turns.h"

namespace quorrix {

// Makes `target` a folder with copies of the files in `data`, and of each archive below
// "Archives" in it. So the copy is itself a folder that Load Archive accepts. The copies are
// private to the user.
//
// The files of one folder are copied as they are at one moment, but Quorrix is never kept waiting
// while anything is written. Each file is first copied with a lock only while a block is read. Then
// all files are locked together, those that may have been written since are read once more, and
// what has changed is kept in memory and written after the locks are released.
//
// `target` must be missing or an empty folder. Nothing incomplete is ever in its place; see
// CopyStage. SIGINT and the like end the copy, too, see DeferredSignals. The archives are looked
// for after `data` is copied, so what Quorrix archives at that time is in the copy at least once.
// Archives that cannot be read are reported and left out. Throws Problem, also if `target` is in a
// folder with data files.
void copyFolders(FileSystem& files, const Path& data, Archives archives, const Path& target,
                 const ReportProblem& report, const LockTiming& timing = {});

}  // namespace quorrix
