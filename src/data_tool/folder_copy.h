// Copies a data folder and its archives while Quorrix may be using them.
#pragma once

#include <chrono>

#include "data_tool/data_folder.h"
#include "data_tool/record_reader.h"

namespace quorrix {

// Makes `target` a folder with copies of the files in `data`, and of each archive below
// "Archives" in it. So the copy is itself a folder that Load Archive accepts. The copies are
// private to the user.
//
// The files of one folder are copied as they are at one moment: all are locked against writing
// together. Each is unlocked as soon as it is copied, nodes.dat last. Copies are synced later.
//
// `target` must be missing or empty. The copy is made beside it and renamed, so there is never an
// incomplete copy of that name. `patience` is how long to try while another program writes a file.
// The archives are looked for after `data` is copied, so what Quorrix archives at that time is in
// the copy at least once. Throws Problem, also if `target` is in a folder with data files.
void copyFolders(FileSystem& files, const Path& data, Archives archives, const Path& target,
                 std::chrono::milliseconds patience = kReadPatience);

}  // namespace quorrix
