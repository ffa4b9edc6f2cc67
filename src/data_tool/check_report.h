// The lines that `check` prints: one for each finding, and a summary.
#pragma once

#include <cstdint>

#include "data_tool/finding.h"
#include "data_tool/output.h"
#include "data_tool/problem.h"
#include "platform/file_system.h"

namespace quorrix {

class CheckReport {
 public:
  explicit CheckReport(Output& output) : output_(output) {}

  // "FILE: record N, byte B: what", as far as the finding has a record and a byte.
  void add(const Path& file, const Finding& finding);

  // A file or folder that cannot be read, as an error.
  void add(const Problem& problem);

  void end(std::uint64_t files, std::uint64_t records);

  // Without remarks.
  [[nodiscard]] std::uint64_t errors() const { return errors_; }

 private:
  Output& output_;
  std::uint64_t errors_ = 0;
};

}  // namespace quorrix
