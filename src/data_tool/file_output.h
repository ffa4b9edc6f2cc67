// Writes a whole file. It is written beside its place and renamed, so a file of that name is
// always complete. It is private to the user.
#pragma once

#include <functional>

#include "data_tool/output.h"
#include "platform/deferred_signals.h"
#include "platform/file_system.h"

namespace quorrix {

// Replaces or creates the file at `path` with what `write` writes. The content has reached the
// disk on return. If anything is thrown, or if a signal ends the process (see DeferredSignals), the
// file is as it was. Throws Problem.
void writeFile(FileSystem& files, const Path& path,
               const std::function<void(Output&, const DeferredSignals&)>& write);

}  // namespace quorrix
