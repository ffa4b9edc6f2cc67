// Comma-separated values as RFC 4180 has them: lines end with CR LF, and a field with a quote, a
// comma or a line break is in quotes.
#pragma once

#include <string>
#include <vector>

namespace quorrix {

// One line. A field that a spreadsheet would take for a formula gets an apostrophe before its
// first character. Such a field begins with "=", "+", "-", "@", a tab or CR.
[[nodiscard]] std::string csvLine(const std::vector<std::string>& fields);

}  // namespace quorrix
