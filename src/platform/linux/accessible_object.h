// Accessible objects on the accessibility bus: how they are identified, and how the
// answers to questions about them are parsed. Answers come from other programs: one that
// is missing or does not have the expected type yields nullopt.
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

// At most `limit` of them, so that no program can prolong a pass.
[[nodiscard]] std::optional<std::vector<AccessibleId>> childrenIn(const Message& answer,
                                                                  std::size_t limit);
[[nodiscard]] std::optional<AccessibleId> childAtIn(const Message& answer);
[[nodiscard]] std::optional<AccessibleId> parentIn(const Message& answer);
[[nodiscard]] std::optional<std::uint32_t> numberIn(const Message& answer);
[[nodiscard]] std::optional<std::int32_t> countIn(const Message& answer);

// UTF-8. nullopt for a text of more than 64 KiB: no title or address is that long.
[[nodiscard]] std::optional<std::string> nameIn(const Message& answer);

// Bit n is set when the object is in the state with the number n.
[[nodiscard]] std::optional<std::uint64_t> statesIn(const Message& answer);
[[nodiscard]] bool hasState(std::uint64_t states, unsigned state);

// What a frame embeds: the document of its selected tab.
[[nodiscard]] std::optional<AccessibleId> embeddedIn(const Message& answer);

// The value of the attribute `name`; empty if the object does not have it, nullopt if its
// attributes are not known.
[[nodiscard]] std::optional<std::string> attributeIn(const Message& answer, std::string_view name);

// The address of a document, whichever attribute the browser uses for it. Empty while the
// document has none yet.
[[nodiscard]] std::optional<std::string> documentAddressIn(const Message& answer);

}  // namespace quorrix
