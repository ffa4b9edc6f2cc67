// Addresses like those recorded in years of browsing, the same ones in every run. All are
// different; they have 20,000 hosts, 1 to 6 levels and 22 to 120 characters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace quorrix::bench {

class AddressList {
 public:
  // Grows the list to at least `count` addresses. Existing addresses do not change, but
  // views of them become invalid.
  void growTo(std::size_t count);

  [[nodiscard]] std::string_view operator[](std::size_t index) const {
    return std::string_view(characters_)
        .substr(starts_[index], starts_[index + 1] - starts_[index]);
  }

  // The total length of the first `count` addresses.
  [[nodiscard]] std::size_t bytesOf(std::size_t count) const { return starts_[count]; }

 private:
  void add(std::size_t number);
  [[nodiscard]] std::size_t below(std::size_t bound);

  std::string characters_;
  std::vector<std::size_t> starts_{0};
  std::mt19937_64 random_;
  std::size_t bareHosts_ = 0;  // how many addresses are a host alone
};

}  // namespace quorrix::bench
