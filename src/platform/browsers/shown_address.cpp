#include "platform/browsers/shown_address.h"

#include <algorithm>
#include <cctype>
#include <charconv>

#include "platform/browsers/address_text.h"
#include "platform/percent_encoding.h"

namespace quorrix {
namespace {

constexpr std::string_view kSchemeEnd = "://";
constexpr std::string_view kWww = "www.";

// Whether it is a byte of a character beyond ASCII. The addresses of documents have them encoded.
bool isBeyondAscii(char character) { return static_cast<unsigned char>(character) >= 0x80; }

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

// The text without the scheme; empty if it has another one than the page.
std::string_view withoutScheme(std::string_view shown, std::string_view scheme) {
  const std::size_t end = shown.find(kSchemeEnd);
  if (end == std::string_view::npos || end > shown.find_first_of("/?#")) return shown;
  return shown.starts_with(scheme) ? shown.substr(scheme.size()) : std::string_view();
}

std::string_view schemeOf(std::string_view address) {
  return address.substr(0, address.find(kSchemeEnd) + kSchemeEnd.size());
}

}  // namespace

ShownAddress compareWithBar(std::string_view loaded, std::string_view shown) {
  if (!isWebAddress(loaded) || std::ranges::any_of(shown, isBlankOrControl)) {
    return ShownAddress::Unclear;
  }
  const std::string_view scheme = schemeOf(loaded);
  const std::string_view text = withoutScheme(shown, scheme);
  const std::string_view host = text.substr(0, text.find_first_of("/?#"));
  if (host.empty() || withoutPrefix(hostOf(loaded), kWww) != withoutPrefix(host, kWww)) {
    return ShownAddress::Unclear;
  }
  const bool isSame = decoded(pathOf(loaded.substr(scheme.size()))) == decoded(pathOf(text));
  return isSame ? ShownAddress::Same : ShownAddress::Newer;
}

std::string newerAddress(std::string_view loaded, std::string_view shown) {
  const std::string_view scheme = schemeOf(loaded);
  const std::string_view path = pathOf(withoutScheme(shown, scheme));
  const std::string_view rest = loaded.substr(scheme.size());
  const std::size_t hostEnd = std::min(rest.find_first_of("/?#"), rest.size());
  return std::string(scheme)
      .append(rest.substr(0, hostEnd))
      .append(percentEncoded(path.empty() ? "/" : path, isBeyondAscii));
}

}  // namespace quorrix
