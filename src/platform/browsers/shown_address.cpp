#include "platform/browsers/shown_address.h"

#include <algorithm>
#include <cctype>
#include <charconv>

#include "platform/browsers/address_text.h"

namespace quorrix {
namespace {

constexpr std::string_view kSchemeEnd = "://";
constexpr std::string_view kWww = "www.";

bool isPlain(char character) { return character > ' ' && character < '\x7F'; }

std::string_view withoutPrefix(std::string_view text, std::string_view prefix) {
  return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

std::string decoded(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned char byte = 0;
    const char* const digits = text.data() + i + 1;
    const bool isCode = text[i] == '%' && i + 2 < text.size() &&
                        std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2;
    result += isCode ? static_cast<char>(byte) : text[i];
    if (isCode) i += 2;
  }
  return result;
}

// What follows the host; a lone "/" counts as nothing.
std::string_view pathOf(std::string_view afterScheme) {
  const std::size_t begin = afterScheme.find_first_of("/?#");
  const std::string_view path =
      begin == std::string_view::npos ? std::string_view() : afterScheme.substr(begin);
  return path == "/" ? std::string_view() : path;
}

}  // namespace

std::optional<std::string> newerAddress(std::string_view loaded, std::string_view shown) {
  if (!isWebAddress(loaded) || shown.empty() || !std::ranges::all_of(shown, isPlain)) {
    return std::nullopt;
  }
  const std::size_t schemeEnd = loaded.find(kSchemeEnd) + kSchemeEnd.size();
  const std::string_view scheme = loaded.substr(0, schemeEnd);
  const std::size_t shownScheme = shown.find(kSchemeEnd);
  const std::size_t shownPath = shown.find_first_of("/?#");
  if (shownScheme != std::string_view::npos && shownScheme < shownPath) {
    if (shown.substr(0, shownScheme + kSchemeEnd.size()) != scheme) return std::nullopt;
    shown = shown.substr(shownScheme + kSchemeEnd.size());
  }
  const std::string_view host = hostOf(loaded);
  const std::string_view shownHost = shown.substr(0, shown.find_first_of("/?#"));
  if (withoutPrefix(host, kWww) != withoutPrefix(shownHost, kWww)) return std::nullopt;
  const std::string_view rest = loaded.substr(schemeEnd);
  const std::string_view path = pathOf(shown);
  if (decoded(pathOf(rest)) == decoded(path)) return std::nullopt;
  const std::size_t hostEnd = std::min(rest.find_first_of("/?#"), rest.size());
  return std::string(scheme).append(rest.substr(0, hostEnd)).append(path.empty() ? "/" : path);
}

}  // namespace quorrix
