// The fixed-width text fields of all data files: single-byte characters,
// left-aligned, padded on the right with blanks, cut at the field's width.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace quorrix {

// Where a field stands in its record, in bytes.
struct FieldLayout {
  std::size_t offset;
  std::size_t width;

  [[nodiscard]] constexpr std::size_t end() const { return offset + width; }
};

// The bytes of a field, padding included.
[[nodiscard]] std::string_view fieldOf(std::span<const char> record, FieldLayout layout);

// The text of a field: empty if it begins with a blank, else cut before the
// first NUL or, where the field has no NUL at all, before the first blank.
// A field with neither is text from end to end.
[[nodiscard]] std::string_view fieldText(std::string_view field);

// Whether fieldText(field) is not empty, which its first byte decides.
[[nodiscard]] bool fieldHoldsText(std::string_view field);

// Whether fieldText(field) is `text`; decides most fields by their first bytes.
[[nodiscard]] bool fieldHolds(std::string_view field, std::string_view text);

// Writes `text` into the field of `record`, cut at the width, padded with blanks.
void fillField(std::span<char> record, FieldLayout layout, std::string_view text);

}  // namespace quorrix
