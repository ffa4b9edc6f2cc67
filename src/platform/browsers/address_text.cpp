#include "platform/browsers/address_text.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace quorrix {
namespace {

constexpr std::array<std::string_view, 2> kSchemes = {"http://", "https://"};

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

// "user@www.a.test:80/b?c#d" has the host "www.a.test:80" and the rest "/b?c#d".
struct Parts {
  std::string_view host;
  std::string_view rest;
};

Parts partsOf(std::string_view withoutScheme) {
  const std::size_t end = std::min(withoutScheme.find_first_of("/?#"), withoutScheme.size());
  const std::string_view authority = withoutScheme.substr(0, end);
  const std::size_t at = authority.rfind('@');
  const std::size_t begin = at == std::string_view::npos ? 0 : at + 1;
  return {authority.substr(begin), withoutScheme.substr(end)};
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

}  // namespace quorrix
