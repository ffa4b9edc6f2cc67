#include "platform/percent_encoding.h"

namespace quorrix {

std::string percentEncoded(std::string_view text, bool (*isEncoded)(char)) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string encoded;
  encoded.reserve(text.size());
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (isEncoded(character)) {
      encoded.append({'%', kDigits[byte / 16], kDigits[byte % 16]});
    } else {
      encoded += character;
    }
  }
  return encoded;
}

}  // namespace quorrix
