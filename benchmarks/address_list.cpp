#include "address_list.h"

#include <algorithm>
#include <array>

namespace quorrix::bench {
namespace {

constexpr std::size_t kHosts = 20'000;
constexpr std::size_t kMostLevels = 6;
constexpr std::size_t kShortest = 20;
constexpr std::size_t kLongest = 120;

// Twelve folder names per level. As on real sites, the pages of a site share folders near
// its top and have their own further down.
constexpr std::array<std::string_view, 12> kFolders{"news",    "articles", "products", "en",
                                                    "archive", "2024",     "gallery",  "support",
                                                    "user",    "forum",    "docs",     "category"};
constexpr std::array<std::string_view, 4> kEndings{".com", ".org", ".net", ".info"};

// 22 to 23 characters.
std::string hostName(std::size_t number) {
  std::string digits = std::to_string(number);
  digits.insert(0, 5 - digits.size(), '0');
  return "www.site-no-" + digits + "x" + std::string(kEndings[number % kEndings.size()]);
}

std::string pageName(std::size_t number) {
  constexpr std::string_view kDigits = "0123456789abcdefghijklmnopqrstuvwxyz";
  std::string name;
  for (; number > 0 || name.empty(); number /= kDigits.size()) {
    name.push_back(kDigits[number % kDigits.size()]);
  }
  return name;
}

}  // namespace

void AddressList::growTo(std::size_t count) {
  for (std::size_t number = starts_.size() - 1; number < count; ++number) add(number);
}

// The name of the last level contains the number, which makes the address unique. Each
// host is used only once without further levels.
void AddressList::add(std::size_t number) {
  std::size_t levels = 1 + below(kMostLevels);
  if (levels == 1 && bareHosts_ == kHosts) levels = 2 + below(kMostLevels - 1);
  const std::size_t length = kShortest + below(kLongest - kShortest + 1);
  std::string address = hostName(levels == 1 ? bareHosts_++ : below(kHosts));
  for (std::size_t level = 2; level < levels; ++level) {
    address += '/';
    address += kFolders[below(kFolders.size())];
  }
  if (levels > 1) {
    address += '/' + pageName(number);
    if (address.size() < length) {
      address += '-';
      address.append(length - std::min(length, address.size()), 'p');
    }
  }
  characters_ += address;
  starts_.push_back(characters_.size());
}

std::size_t AddressList::below(std::size_t bound) {
  return static_cast<std::size_t>(random_() % bound);
}

}  // namespace quorrix::bench
