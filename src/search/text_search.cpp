#include "search/text_search.h"

#include <algorithm>

#include "platform/case_folding.h"

namespace quorrix {

TextSearch::TextSearch(std::string_view sought) : sought_(sought) {
  for (char& character : sought_) character = folded(character);
  if (sought_.empty()) return;
  first_ = bothCasesOf(sought_.front());
  last_ = bothCasesOf(sought_.back());
}

bool TextSearch::isIn(std::string_view text) const noexcept {
  if (sought_.size() > text.size()) return false;
  if (sought_.empty()) return true;
  if (!endsAreIn(text)) return false;
  return std::search(text.begin(), text.end(), sought_.begin(), sought_.end(),
                     [](char character, char small) { return folded(character) == small; }) !=
         text.end();
}

TextSearch::EitherCase TextSearch::bothCasesOf(char character) {
  EitherCase either{.small = folded(character), .capital = character};
  for (int byte = 0; byte < 256; ++byte) {
    const char other = static_cast<char>(byte);
    if (folded(other) == either.small && other != either.small) either.capital = other;
  }
  return either;
}

// Whether the first and the last character of the text sought appear anywhere in `text`
// at the right distance from each other. Few texts pass this test without containing the
// rest. Most texts fail it, and a loop without a branch rejects them fastest, although it
// checks every position: the compiler handles sixteen positions at a time.
bool TextSearch::endsAreIn(std::string_view text) const noexcept {
  const std::size_t places = text.size() - sought_.size() + 1;
  const char* const firsts = text.data();
  const char* const lasts = firsts + (sought_.size() - 1);
  const EitherCase first = first_;
  const EitherCase last = last_;
  unsigned char isThere = 0;
  for (std::size_t i = 0; i < places; ++i) {
    const auto isFirst =
        static_cast<unsigned char>((firsts[i] == first.small) | (firsts[i] == first.capital));
    const auto isLast =
        static_cast<unsigned char>((lasts[i] == last.small) | (lasts[i] == last.capital));
    isThere = static_cast<unsigned char>(isThere | (isFirst & isLast));
  }
  return isThere != 0;
}

}  // namespace quorrix
