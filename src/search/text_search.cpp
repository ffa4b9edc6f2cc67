#include "search/text_search.h"

#include <algorithm>

namespace quorrix {
namespace {

// Has no branch; see endsAreIn().
template <typename Forms>
inline unsigned char isOneOf(char character, const Forms& forms) {
  unsigned found = 0;
  for (const char form : forms) found |= static_cast<unsigned>(character == form);
  return static_cast<unsigned char>(found);
}

}  // namespace

TextSearch::TextSearch(const CodePage& codePage, std::string_view sought)
    : codePage_(codePage), sought_(sought) {
  for (char& character : sought_) character = codePage_.folded(character);
  if (sought_.empty()) return;
  first_ = formsOf(sought_.front());
  last_ = formsOf(sought_.back());
}

bool TextSearch::isIn(std::string_view text) const noexcept {
  if (sought_.size() > text.size()) return false;
  if (sought_.empty()) return true;
  if (!endsAreIn(text)) return false;
  return std::search(text.begin(), text.end(), sought_.begin(), sought_.end(),
                     [this](char character, char folded) {
                       return codePage_.folded(character) == folded;
                     }) != text.end();
}

TextSearch::Forms TextSearch::formsOf(char character) const {
  Forms forms;
  forms.fill(character);
  std::size_t count = 0;
  for (int byte = 0; byte < 256 && count < forms.size(); ++byte) {
    const char other = static_cast<char>(byte);
    if (codePage_.folded(other) == codePage_.folded(character)) forms[count++] = other;
  }
  return forms;
}

// Whether the first and the last character of the text sought appear anywhere in `text`
// at the right distance from each other. Few texts pass this test without containing the
// rest. Most texts fail it, and a loop without a branch rejects them fastest, although it
// checks every position: the compiler handles sixteen positions at a time.
bool TextSearch::endsAreIn(std::string_view text) const noexcept {
  const std::size_t places = text.size() - sought_.size() + 1;
  const char* const firsts = text.data();
  const char* const lasts = firsts + (sought_.size() - 1);
  const Forms first = first_;
  const Forms last = last_;
  unsigned char isThere = 0;
  for (std::size_t i = 0; i < places; ++i) {
    const auto isFirst = isOneOf(firsts[i], first);
    const auto isLast = isOneOf(lasts[i], last);
    isThere = static_cast<unsigned char>(isThere | (isFirst & isLast));
  }
  return isThere != 0;
}

}  // namespace quorrix
