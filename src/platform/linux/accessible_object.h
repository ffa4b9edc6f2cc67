// The vocabulary of the accessibility bus: who an accessible object is, and how
// the answers to questions about it are read. Answers come from other programs:
// one that is missing or not of the expected shape reads as "not known".
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/dbus_handles.h"

namespace quorrix {

struct AccessibleId {
  std::string peer;  // the unique bus name of the program that owns the object
  std::string path;

  auto operator<=>(const AccessibleId&) const = default;
};

// The object whose children are the programs on the bus.
[[nodiscard]] AccessibleId registryRoot();

// At most `limit` of them, so that no program can make a pass long.
[[nodiscard]] std::optional<std::vector<AccessibleId>> childrenIn(const Message& answer,
                                                                  std::size_t limit);
[[nodiscard]] std::optional<AccessibleId> childAtIn(const Message& answer);
[[nodiscard]] std::optional<AccessibleId> parentIn(const Message& answer);
[[nodiscard]] std::optional<std::uint32_t> numberIn(const Message& answer);
[[nodiscard]] std::optional<std::int32_t> countIn(const Message& answer);

// UTF-8. A text of more than 64 KiB is not known: no title or address is as long.
[[nodiscard]] std::optional<std::string> nameIn(const Message& answer);

// Bit n is set when the object is in the state with the number n.
[[nodiscard]] std::optional<std::uint64_t> statesIn(const Message& answer);
[[nodiscard]] bool hasState(std::uint64_t states, unsigned state);

// What a frame embeds: the document of its selected tab.
[[nodiscard]] std::optional<AccessibleId> embeddedIn(const Message& answer);

// The value of one of the attributes; empty when the object does not have it,
// nullopt when its attributes are not known.
[[nodiscard]] std::optional<std::string> attributeIn(const Message& answer, std::string_view name);

// The address of a document, under whichever of the names that browsers give it.
// Empty while the document has none yet.
[[nodiscard]] std::optional<std::string> documentAddressIn(const Message& answer);

}  // namespace quorrix
