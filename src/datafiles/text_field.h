// The fixed-width text fields of all data files: single-byte characters,
// left-aligned, padded on the right with blanks, cut at the field's width.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace quorrix {

// The position of a field in its record, in bytes.
struct FieldLayout {
  std::size_t offset;
  std::size_t width;

  [[nodiscard]] constexpr std::size_t end() const { return offset + width; }
};

// The bytes of a field, padding included.
[[nodiscard]] std::string_view fieldOf(std::span<const char> record, FieldLayout layout);

// The text of a field: empty if the field begins with a blank. Otherwise it ends before
// the first NUL or, if the field has no NUL, before the first blank. A field with neither
// is all text.
[[nodiscard]] std::string_view fieldText(std::string_view field);

// Whether fieldText(field) is not empty. Looks only at the first byte.
[[nodiscard]] bool fieldHoldsText(std::string_view field);

// Whether fieldText(field) equals `text`. The first bytes rule out most fields.
[[nodiscard]] bool fieldHolds(std::string_view field, std::string_view text);

// Writes `text` into the field of `record`, truncated to the width and padded with
// blanks.
void fillField(std::span<char> record, FieldLayout layout, std::string_view text);

}  // namespace quorrix
