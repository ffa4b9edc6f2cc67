#include "datafiles/text_field.h"

#include <algorithm>

namespace quorrix {

std::string_view fieldOf(std::span<const char> record, FieldLayout layout) {
  const auto bytes = record.subspan(layout.offset, layout.width);
  return {bytes.data(), bytes.size()};
}

std::string_view fieldText(std::string_view field) {
  if (field.starts_with(' ')) return {};
  const auto nul = field.find('\0');
  return field.substr(0, nul != std::string_view::npos ? nul : field.find(' '));
}

bool fieldHoldsText(std::string_view field) {
  return !field.empty() && field.front() != ' ' && field.front() != '\0';
}

bool fieldHolds(std::string_view field, std::string_view text) {
  return field.starts_with(text) && fieldText(field) == text;
}

void fillField(std::span<char> record, FieldLayout layout, std::string_view text) {
  const auto field = record.subspan(layout.offset, layout.width);
  const auto copied = text.substr(0, layout.width);
  const auto padding = std::copy(copied.begin(), copied.end(), field.begin());
  std::fill(padding, field.end(), ' ');
}

}  // namespace quorrix
