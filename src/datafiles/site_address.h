// Site addresses: checks an address read from a browser, reduces it to the form that the
// tree and the data files store, and splits that form into the levels of the tree. All
// comparisons are exact and case-sensitive.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quorrix {

inline constexpr std::size_t kMaxAddressLength = 300;  // characters of a stored address
inline constexpr std::size_t kMaxLevels = 50;          // the host is one of them

// The scheme of an address, as kept in the site record and in the tree's tags.
namespace protocol_flag {
inline constexpr char kHttp = 'N';
inline constexpr char kHttps = 'S';
inline constexpr char kFtp = 'F';
inline constexpr char kNone = 'U';
}  // namespace protocol_flag

// The prefix that makes a stored address a web address: "http://", "https://" or
// "ftp://". It is "http://" for an unknown scheme.
[[nodiscard]] std::string_view schemePrefix(char protocolFlag);

struct AddressCheck {
  bool isValid;
  char protocolFlag;
};

// An address is valid if its host has at least two dots and the second dot is not its
// last character. "ftp://" is recognized but never valid, because ftp sites are not
// recorded.
[[nodiscard]] AddressCheck validateAddress(std::string_view address);

// Reduces an address to its stored form, without one trailing "/" and without the scheme.
// The scheme is searched for anywhere in the address, not only at its beginning. If
// "http://" is found, the first seven characters are removed. Then, if "https://" is
// found, the first eight of the rest are removed.
[[nodiscard]] std::string storedAddress(std::string_view address);

// A stored address split at every "/"; level 1 is the host. Refers to the
// address it was made from, which must outlive it.
class AddressLevels {
 public:
  [[nodiscard]] std::size_t count() const { return count_; }
  [[nodiscard]] std::string_view address() const { return address_; }

 private:
  friend AddressLevels addressLevels(std::string_view storedAddress);
  friend std::string_view levelKey(const AddressLevels& levels, std::size_t k);
  friend std::string_view levelText(const AddressLevels& levels, std::size_t k);

  std::string_view address_;
  std::size_t count_ = 0;
  std::array<std::uint16_t, kMaxLevels> ends_{};  // where each segment ends in address_
};

// Empty segments become empty levels. Throws kIndexOutOfRange for more than 50 segments
// and for more than 65,535 characters.
[[nodiscard]] AddressLevels addressLevels(std::string_view storedAddress);

// The key of level k, counted from 1: the address up to and including its k-th segment.
[[nodiscard]] std::string_view levelKey(const AddressLevels& levels, std::size_t k);

// The text of level k, counted from 1: the k-th segment alone.
[[nodiscard]] std::string_view levelText(const AddressLevels& levels, std::size_t k);

}  // namespace quorrix
