#include "platform/linux/address_text.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace quorrix {
namespace {

constexpr std::array<std::string_view, 2> kSchemes = {"http://", "https://"};
constexpr std::string_view kWww = "www.";

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, lower, lower);
}

bool beginsIgnoringCase(std::string_view text, std::string_view beginning) {
  return equalsIgnoringCase(text.substr(0, beginning.size()), beginning);
}

std::size_t schemeLength(std::string_view address) {
  for (const std::string_view scheme : kSchemes) {
    if (beginsIgnoringCase(address, scheme)) return scheme.size();
  }
  return 0;
}

bool isBlankOrControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte <= ' ' || byte == 0x7F;
}

// "user@www.a.test:80/b?c#d" as "user@", "www.a.test:80" and "/b?c#d".
struct Parts {
  std::string_view user;
  std::string_view host;
  std::string_view rest;
};

Parts partsOf(std::string_view withoutScheme) {
  const std::size_t end = std::min(withoutScheme.find_first_of("/?#"), withoutScheme.size());
  const std::string_view authority = withoutScheme.substr(0, end);
  const std::size_t at = authority.rfind('@');
  const std::size_t begin = at == std::string_view::npos ? 0 : at + 1;
  return {authority.substr(0, begin), authority.substr(begin), withoutScheme.substr(end)};
}

std::string_view withoutWww(std::string_view host) {
  return beginsIgnoringCase(host, kWww) ? host.substr(kWww.size()) : host;
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char letter = lower(c);
  return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

// For comparing only: two paths that differ in nothing but percent codes are equal.
std::string percentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isCode = text[i] == '%' && i + 2 < text.size() && hexDigit(text[i + 1]) >= 0 &&
                        hexDigit(text[i + 2]) >= 0;
    if (!isCode) {
      decoded += text[i];
      continue;
    }
    decoded += static_cast<char>(hexDigit(text[i + 1]) * 16 + hexDigit(text[i + 2]));
    i += 2;
  }
  return decoded;
}

std::string percentEncoded(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      encoded += c;
      continue;
    }
    encoded += {'%', kDigits[byte / 16], kDigits[byte % 16]};
  }
  return encoded;
}

std::string withSlash(std::string_view rest) {
  return rest.starts_with('/') ? std::string(rest) : "/" + std::string(rest);
}

}  // namespace

std::string withoutUser(std::string_view webAddress) {
  const std::size_t scheme = schemeLength(webAddress);
  const Parts parts = partsOf(webAddress.substr(scheme));
  std::string address(webAddress.substr(0, scheme));
  return address.append(parts.host).append(parts.rest);
}

bool isWebAddress(std::string_view address) {
  const std::size_t scheme = schemeLength(address);
  return scheme > 0 && address.size() > scheme && std::ranges::none_of(address, isBlankOrControl);
}

std::string_view hostOf(std::string_view webAddress) {
  return partsOf(webAddress.substr(schemeLength(webAddress))).host;
}

std::optional<std::string> addressFromBar(std::string_view documentAddress, std::string_view bar) {
  if (bar.empty() || std::ranges::any_of(bar, isBlankOrControl)) return std::nullopt;
  const std::size_t scheme = schemeLength(documentAddress);
  const std::size_t barScheme = schemeLength(bar);
  if (barScheme > 0 && barScheme != scheme) return std::nullopt;
  const Parts document = partsOf(documentAddress.substr(scheme));
  const Parts shown = partsOf(bar.substr(barScheme));
  if (!equalsIgnoringCase(withoutWww(document.host), withoutWww(shown.host))) return std::nullopt;
  const std::string rest = withSlash(shown.rest);
  if (percentDecoded(rest) == percentDecoded(withSlash(document.rest))) {
    return std::string(documentAddress);
  }
  std::string address(documentAddress.substr(0, scheme));
  address += document.user;
  address += document.host;
  return address + percentEncoded(rest);
}

}  // namespace quorrix
