// The vocabulary of the accessibility bus: who an accessible object is, the calls
// that ask about it, and how their answers are read. Answers come from other
// programs: one that is missing or not of the expected shape reads as "not known".
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
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

// Makes the asker a client of the program whose root `program` is.
[[nodiscard]] Message greetingCall(const AccessibleId& program);
[[nodiscard]] Message childrenCall(const AccessibleId& object);
[[nodiscard]] Message roleCall(const AccessibleId& object);
[[nodiscard]] Message nameCall(const AccessibleId& object);
[[nodiscard]] Message stateCall(const AccessibleId& object);
[[nodiscard]] Message relationsCall(const AccessibleId& object);
[[nodiscard]] Message documentAttributesCall(const AccessibleId& document);
[[nodiscard]] Message textCall(const AccessibleId& object);
[[nodiscard]] Message processIdCall(const std::string& peer);

// At most `limit` of them, so that no program can make a pass long.
[[nodiscard]] std::optional<std::vector<AccessibleId>> childrenIn(const Message& answer,
                                                                  std::size_t limit);
[[nodiscard]] std::optional<std::uint32_t> numberIn(const Message& answer);  // roles, process ids
[[nodiscard]] std::optional<std::string> nameIn(const Message& answer);      // UTF-8
[[nodiscard]] std::optional<std::string> textIn(const Message& answer);      // UTF-8

// Bit n is set when the object is in the state with the number n.
[[nodiscard]] std::optional<std::uint64_t> statesIn(const Message& answer);
[[nodiscard]] bool hasState(std::uint64_t states, unsigned state);

// What a frame embeds: the document of its selected tab.
[[nodiscard]] std::optional<AccessibleId> embeddedIn(const Message& answer);

// The two names under which browsers give a document's address tell their kinds
// apart: one whose attribute is `URI` does not update it after history.pushState.
struct DocumentAddress {
  std::string address;
  bool mayBeStale = false;
};
[[nodiscard]] std::optional<DocumentAddress> documentAddressIn(const Message& answer);

}  // namespace quorrix
