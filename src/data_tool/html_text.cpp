#include "data_tool/html_text.h"

#include "data_tool/shown_text.h"
#include "platform/percent_encoding.h"

namespace quorrix {
namespace {

std::string withEntities(std::string_view text) {
  std::string html;
  html.reserve(text.size());
  for (const char character : text) {
    switch (character) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      case '\'':
        html += "&#39;";
        break;
      default:
        html += character;
    }
  }
  return html;
}

}  // namespace

std::string htmlText(std::string_view utf8) { return withEntities(escapedText(utf8)); }

std::string htmlLines(std::string_view utf8) {
  std::string html;
  while (true) {
    const auto end = utf8.find('\n');
    std::string_view line = utf8.substr(0, end);
    if (end != std::string_view::npos && line.ends_with('\r')) line.remove_suffix(1);
    html += htmlText(line);
    if (end == std::string_view::npos) return html;
    html += '\n';
    utf8.remove_prefix(end + 1);
  }
}

std::string htmlAddress(std::string_view utf8) {
  return withEntities(percentEncoded(utf8, isBlankOrControl));
}

}  // namespace quorrix
