#include "search/text_search.h"

#include "search/case_folding.h"

namespace quorrix {
namespace {

bool holdsAt(const char* text, std::string_view sought) {
  for (const char character : sought) {
    if (folded(*text++) != character) return false;
  }
  return true;
}

}  // namespace

TextSearch::TextSearch(std::string_view sought) : sought_(sought) {
  for (char& character : sought_) character = folded(character);
  for (std::size_t byte = 0; byte < skips_.size(); ++byte) {
    const std::string_view allButLast(sought_.data(), sought_.empty() ? 0 : sought_.size() - 1);
    const auto place = allButLast.rfind(folded(static_cast<char>(byte)));
    skips_[byte] = place == std::string_view::npos ? sought_.size() : allButLast.size() - place;
  }
}

// After Horspool: looks at the byte that the sought text would end with, and most
// bytes of an address rule out more places than one.
bool TextSearch::isIn(std::string_view text) const noexcept {
  const std::size_t length = sought_.size();
  if (length == 0) return true;
  const char last = sought_.back();
  const std::string_view allButLast(sought_.data(), length - 1);
  std::size_t end = length;
  while (end <= text.size()) {
    const char character = text[end - 1];
    if (folded(character) == last && holdsAt(text.data() + (end - length), allButLast)) return true;
    end += skips_[static_cast<unsigned char>(character)];
  }
  return false;
}

}  // namespace quorrix
