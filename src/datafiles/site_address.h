// Site addresses: how one read from a browser is checked and cut to the form
// that the tree and the data files keep, and how that form is split into the
// levels of the tree. All comparisons are exact; letter case counts.
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

// What stands before the stored address in a web address: "http://", "https://" or "ftp://";
// "http://" for an unknown scheme.
[[nodiscard]] std::string_view schemePrefix(char protocolFlag);

struct AddressCheck {
  bool isValid;
  char protocolFlag;
};

// Valid is a host with at least two dots, of which neither the first nor the
// second is the last character. "ftp://" is told apart but never valid: ftp
// sites are not recorded.
[[nodiscard]] AddressCheck validateAddress(std::string_view address);

// Cuts an address to its stored form: without one trailing "/" and without the
// scheme. The scheme is looked for anywhere in the address, not only in front,
// and seven characters go for "http://", then eight for "https://".
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

// Keeps empty segments as empty levels. Throws kIndexOutOfRange at a 51st segment, and for an
// address of more than 65,535 characters.
[[nodiscard]] AddressLevels addressLevels(std::string_view storedAddress);

// The key of level k, counted from 1: the address up to and including its k-th segment.
[[nodiscard]] std::string_view levelKey(const AddressLevels& levels, std::size_t k);

// The text of level k, counted from 1: the k-th segment alone.
[[nodiscard]] std::string_view levelText(const AddressLevels& levels, std::size_t k);

}  // namespace quorrix
