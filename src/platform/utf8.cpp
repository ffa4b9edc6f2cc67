#include "platform/utf8.h"

#include <array>

namespace quorrix {
namespace {

unsigned sequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

}  // namespace

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

void appendUtf8(std::string& utf8, char16_t character) {
  const unsigned value = character;
  if (value < 0x80) {
    utf8.push_back(static_cast<char>(value));
  } else if (value < 0x800) {
    utf8.push_back(static_cast<char>(0xC0U | (value >> 6U)));
    utf8.push_back(static_cast<char>(0x80U | (value & 0x3FU)));
  } else {
    utf8.push_back(static_cast<char>(0xE0U | (value >> 12U)));
    utf8.push_back(static_cast<char>(0x80U | ((value >> 6U) & 0x3FU)));
    utf8.push_back(static_cast<char>(0x80U | (value & 0x3FU)));
  }
}

bool isUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    if (takeCharacter(bytes) == kMalformed) return false;
  }
  return true;
}

}  // namespace quorrix
