#include "datafiles/site_address.h"

#include <algorithm>
#include <limits>

#include "platform/failure.h"

namespace quorrix {
namespace {

constexpr std::string_view kHttpPrefix = "http://";
constexpr std::string_view kHttpsPrefix = "https://";
constexpr std::string_view kFtpPrefix = "ftp://";

bool isValidHost(std::string_view host) {
  const auto firstDot = host.find('.');
  if (firstDot == std::string_view::npos) return false;
  const auto rest = host.substr(firstDot + 1);
  const auto secondDot = rest.find('.');
  return secondDot != std::string_view::npos && secondDot + 1 != rest.size();
}

}  // namespace

std::string_view schemePrefix(char protocolFlag) {
  if (protocolFlag == protocol_flag::kHttps) return kHttpsPrefix;
  if (protocolFlag == protocol_flag::kFtp) return kFtpPrefix;
  return kHttpPrefix;
}

AddressCheck validateAddress(std::string_view address) {
  char flag = protocol_flag::kNone;
  if (address.starts_with(kFtpPrefix)) {
    address = kFtpPrefix;
    flag = protocol_flag::kFtp;
  } else {
    if (address.starts_with(kHttpPrefix)) {
      address.remove_prefix(kHttpPrefix.size());
      flag = protocol_flag::kHttp;
    }
    if (address.starts_with(kHttpsPrefix)) {
      address.remove_prefix(kHttpsPrefix.size());
      flag = protocol_flag::kHttps;
    }
  }
  return {isValidHost(address.substr(0, address.find('/'))), flag};
}

std::string storedAddress(std::string_view address) {
  const bool hasHttp = address.find(kHttpPrefix) != std::string_view::npos;
  const bool hasHttps = address.find(kHttpsPrefix) != std::string_view::npos;
  if (address.ends_with('/')) address.remove_suffix(1);
  if (hasHttp) address.remove_prefix(std::min(kHttpPrefix.size(), address.size()));
  if (hasHttps) address.remove_prefix(std::min(kHttpsPrefix.size(), address.size()));
  return std::string(address);
}

AddressLevels addressLevels(std::string_view storedAddress) {
  AddressLevels levels;
  constexpr auto kFarthestEnd = std::numeric_limits<decltype(levels.ends_)::value_type>::max();
  if (storedAddress.size() > kFarthestEnd) throw Failure(failure::kIndexOutOfRange);
  levels.address_ = storedAddress;
  std::size_t end = 0;
  while (true) {
    if (levels.count_ == kMaxLevels) throw Failure(failure::kIndexOutOfRange);
    end = std::min(storedAddress.find('/', end), storedAddress.size());
    levels.ends_[levels.count_++] = static_cast<std::uint16_t>(end);
    if (end == storedAddress.size()) return levels;
    ++end;
  }
}

std::string_view levelKey(const AddressLevels& levels, std::size_t k) {
  return levels.address_.substr(0, levels.ends_[k - 1]);
}

std::string_view levelText(const AddressLevels& levels, std::size_t k) {
  const std::size_t start = k == 1 ? 0 : levels.ends_[k - 2] + std::size_t{1};
  return levelKey(levels, k).substr(start);
}

}  // namespace quorrix
