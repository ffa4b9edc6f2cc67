// Letter case in the program's single-byte text (Windows-1252), the same in every
// locale.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace quorrix {

namespace case_folding {

// Maps each capital letter to its small letter, and every other byte to itself. Letters
// without a partner in the code page (such as the sharp s) map to themselves, and so do
// the two signs among the letters, 0xD7 and 0xF7.
constexpr std::array<char, 256> makeTable() {
  constexpr unsigned kToSmallLetter = 0x20;
  std::array<unsigned char, 256> small{};
  for (unsigned byte = 0; byte < 256; ++byte) small[byte] = static_cast<unsigned char>(byte);
  for (unsigned byte = 'A'; byte <= 'Z'; ++byte) small[byte] += kToSmallLetter;
  for (unsigned byte = 0xC0; byte <= 0xDE; ++byte) small[byte] += kToSmallLetter;
  small[0xD7] = 0xD7;  // the multiplication sign
  small[0x8A] = 0x9A;  // S with caron
  small[0x8C] = 0x9C;  // the ligature of O and E
  small[0x8E] = 0x9E;  // Z with caron
  small[0x9F] = 0xFF;  // Y with diaeresis
  std::array<char, 256> table{};
  for (std::size_t byte = 0; byte < 256; ++byte) table[byte] = static_cast<char>(small[byte]);
  return table;
}

inline constexpr std::array<char, 256> kTable = makeTable();

}  // namespace case_folding

// Two characters are equal except for case if and only if this is the same for both.
[[nodiscard]] constexpr char folded(char character) {
  return case_folding::kTable[static_cast<unsigned char>(character)];
}

[[nodiscard]] constexpr bool beginsWithIgnoringCase(std::string_view text,
                                                    std::string_view beginning) {
  return text.size() >= beginning.size() &&
         std::equal(beginning.begin(), beginning.end(), text.begin(),
                    [](char a, char b) { return folded(a) == folded(b); });
}

}  // namespace quorrix
