#include "platform/text_encoding.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

namespace quorrix {
namespace {

// The characters of the bytes 0x80 to 0x9F. Every other byte stands for the character
// with the same number.
constexpr std::array<char16_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr char32_t kMalformed = 0xFFFFFFFF;

std::optional<char> byteFor(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) {
    return static_cast<char>(character);
  }
  const auto* const place = std::find(kUpperControls.begin(), kUpperControls.end(), character);
  if (place == kUpperControls.end()) return std::nullopt;
  return static_cast<char>(0x80 + std::distance(kUpperControls.begin(), place));
}

unsigned sequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

// Removes one character from the front of `utf8`. If the sequence is malformed, removes
// only the bytes before the first one that cannot belong to it.
char32_t takeCharacter(std::string_view& utf8) {
  constexpr std::array<char32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
  const auto lead = static_cast<unsigned char>(utf8.front());
  utf8.remove_prefix(1);
  const unsigned length = sequenceLength(lead);
  if (length == 0) return kMalformed;
  if (length == 1) return lead;
  char32_t character = lead & (0xFFU >> (length + 1));
  for (unsigned i = 1; i < length; ++i) {
    if (utf8.empty() || (static_cast<unsigned char>(utf8.front()) & 0xC0U) != 0x80U) {
      return kMalformed;
    }
    character = (character << 6U) | (static_cast<unsigned char>(utf8.front()) & 0x3FU);
    utf8.remove_prefix(1);
  }
  const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
  return character < kSmallest[length] || character > 0x10FFFF || isSurrogate ? kMalformed
                                                                              : character;
}

}  // namespace

std::string windows1252FromUtf8(std::string_view utf8) {
  std::string text;
  text.reserve(utf8.size());
  while (!utf8.empty()) text.push_back(byteFor(takeCharacter(utf8)).value_or('?'));
  return text;
}

std::optional<std::string> exactWindows1252FromUtf8(std::string_view utf8) {
  std::string text;
  while (!utf8.empty()) {
    const std::optional<char> byte = byteFor(takeCharacter(utf8));
    if (!byte) return std::nullopt;
    text.push_back(*byte);
  }
  return text;
}

bool isUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    if (takeCharacter(bytes) == kMalformed) return false;
  }
  return true;
}

std::string utf8FromWindows1252(std::string_view text) {
  std::string utf8;
  utf8.reserve(text.size());
  for (const char byte : text) {
    const auto value = static_cast<unsigned char>(byte);
    const char32_t character =
        value >= 0x80 && value < 0xA0 ? kUpperControls[value - 0x80U] : value;
    if (character < 0x80) {
      utf8.push_back(static_cast<char>(character));
    } else if (character < 0x800) {
      utf8.push_back(static_cast<char>(0xC0U | (character >> 6U)));
      utf8.push_back(static_cast<char>(0x80U | (character & 0x3FU)));
    } else {
      utf8.push_back(static_cast<char>(0xE0U | (character >> 12U)));
      utf8.push_back(static_cast<char>(0x80U | ((character >> 6U) & 0x3FU)));
      utf8.push_back(static_cast<char>(0x80U | (character & 0x3FU)));
    }
  }
  return utf8;
}

}  // namespace quorrix
