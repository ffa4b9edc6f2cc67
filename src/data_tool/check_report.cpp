#include "data_tool/check_report.h"

#include <string>

#include "data_tool/shown_text.h"
#include "platform/command_line.h"

namespace quorrix {
namespace {

std::string counted(std::uint64_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace

void CheckReport::add(const Path& file, const Finding& finding) {
  std::string line = escapedText(shownPath(file)) + ": ";
  if (finding.record) line += "record " + std::to_string(*finding.record);
  if (finding.record && finding.byte) line += ", ";
  if (finding.byte) line += "byte " + std::to_string(*finding.byte);
  if (finding.record || finding.byte) line += ": ";
  if (finding.kind == FindingKind::Remark) {
    line += "remark: ";
  } else {
    ++errors_;
  }
  output_.write(line + finding.what + "\n");
}

void CheckReport::add(const Problem& problem) {
  ++errors_;
  output_.write(escapedText(problem.what()) + "\n");
}

void CheckReport::end(std::uint64_t files, std::uint64_t records) {
  output_.write(counted(files, "file", "files") + ", " + counted(records, "record", "records") +
                ", " + counted(errors_, "error", "errors") + "\n");
}

}  // namespace quorrix
