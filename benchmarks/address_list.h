// Addresses as years of browsing leave them behind, the same ones in every run:
// all different, of 20,000 hosts, 1 to 6 levels and 20 to 120 characters.
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
  // Afterwards there are at least `count` addresses; those that were there stay
  // the same, but views of them end.
  void growTo(std::size_t count);

  [[nodiscard]] std::string_view operator[](std::size_t index) const {
    return std::string_view(characters_)
        .substr(starts_[index], starts_[index + 1] - starts_[index]);
  }

  // The length of the first `count` addresses together.
  [[nodiscard]] std::size_t bytesOf(std::size_t count) const { return starts_[count]; }

 private:
  void add(std::size_t number);
  [[nodiscard]] std::size_t below(std::size_t bound);

  std::string characters_;
  std::vector<std::size_t> starts_{0};
  std::mt19937_64 random_;
  std::size_t bareHosts_ = 0;  // how many hosts have stood alone as an address
};

}  // namespace quorrix::bench
