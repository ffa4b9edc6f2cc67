// What `check` finds in a data file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace quorrix {

// A remark names something that the format allows, but that the user may want to know about.
enum class FindingKind { Error, Remark };

struct Finding {
  FindingKind kind = FindingKind::Error;
  std::optional<std::uint64_t> record;  // counted from 1
  std::optional<std::uint64_t> byte;    // of the file, counted from 0
  std::string what;
};

}  // namespace quorrix
