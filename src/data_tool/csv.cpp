#include "data_tool/csv.h"

#include <string_view>

#include "data_tool/shown_text.h"

namespace quorrix {
namespace {

// A text that begins with an apostrophe gets another one, so that the added one can be told apart.
constexpr std::string_view kGuardedBeginnings = "=+-@\t\r\n'";
// Spreadsheets may also split lines at semicolons and tabs.
constexpr std::string_view kQuotedCharacters = "\",;\t\r\n";
constexpr char kQuote = '"';

void append(std::string& line, std::string_view text) {
  const std::string field = escapedControls(text);
  const bool isGuarded = !field.empty() && kGuardedBeginnings.find(field[0]) != std::string::npos;
  const bool isQuoted = field.find_first_of(kQuotedCharacters) != std::string::npos;
  if (isQuoted) line += kQuote;
  if (isGuarded) line += '\'';
  if (isQuoted) {
    for (const char character : field) {
      if (character == kQuote) line += kQuote;
      line += character;
    }
    line += kQuote;
  } else {
    line += field;
  }
}

}  // namespace

std::string csvLine(const std::vector<std::string>& fields) {
  std::string line;
  for (const std::string& field : fields) {
    if (&field != &fields.front()) line += ',';
    append(line, field);
  }
  return line += "\r\n";
}

}  // namespace quorrix
