#include "platform/linux/accessible_object.h"

#include <atspi/atspi-constants.h>

#include <cstring>

namespace quorrix {
namespace {

constexpr std::size_t kLongestText = std::size_t{64} * 1024;

// Firefox uses the first, Chromium and WebKit the second.
constexpr std::string_view kAddressAttributes[] = {"DocURL", "URI"};

bool isAnswer(const Message& answer, const char* signature) {
  return answer && dbus_message_get_type(answer.get()) == DBUS_MESSAGE_TYPE_METHOD_RETURN &&
         dbus_message_has_signature(answer.get(), signature);
}

bool isObject(const AccessibleId& id) {
  return id.path != ATSPI_DBUS_PATH_NULL && dbus_validate_bus_name(id.peer.c_str(), nullptr);
}

// Iterates over the arguments of a message, or over one of its containers. The signature
// has been checked before, so every step finds the type it expects.
class Reader {
 public:
  explicit Reader(const Message& message) { dbus_message_iter_init(message.get(), &place_); }

  [[nodiscard]] bool atEnd() { return type() == DBUS_TYPE_INVALID; }
  [[nodiscard]] int type() { return dbus_message_iter_get_arg_type(&place_); }

  // Points into the message, which outlives the reader.
  [[nodiscard]] std::string_view text() {
    const char* value = "";
    dbus_message_iter_get_basic(&place_, &value);
    dbus_message_iter_next(&place_);
    return value;
  }
  template <typename Number>
  [[nodiscard]] Number number() {
    Number value = 0;
    dbus_message_iter_get_basic(&place_, &value);
    dbus_message_iter_next(&place_);
    return value;
  }
  [[nodiscard]] Reader inside() {
    Reader inner;
    dbus_message_iter_recurse(&place_, &inner.place_);
    dbus_message_iter_next(&place_);
    return inner;
  }
  [[nodiscard]] AccessibleId accessible() {
    Reader pair = inside();
    AccessibleId id;
    id.peer = pair.text();
    id.path = pair.text();
    return id;
  }
  [[nodiscard]] bool isAtAccessible() {
    if (type() != DBUS_TYPE_STRUCT) return false;
    char* signature = dbus_message_iter_get_signature(&place_);
    const bool isPair = signature && std::strcmp(signature, "(so)") == 0;
    dbus_free(signature);
    return isPair;
  }

 private:
  Reader() = default;
  DBusMessageIter place_{};
};

std::optional<AccessibleId> objectAt(Reader place) {
  AccessibleId id = place.accessible();
  if (!isObject(id)) return std::nullopt;
  return id;
}

std::optional<std::string> keptText(std::string_view text) {
  if (text.size() > kLongestText) return std::nullopt;
  return std::string(text);
}

}  // namespace

AccessibleId registryRoot() { return {ATSPI_DBUS_NAME_REGISTRY, ATSPI_DBUS_PATH_ROOT}; }

std::optional<std::vector<AccessibleId>> childrenIn(const Message& answer, std::size_t limit) {
  if (!isAnswer(answer, "a(so)")) return std::nullopt;
  std::vector<AccessibleId> children;
  for (Reader list = Reader(answer).inside(); !list.atEnd() && children.size() < limit;) {
    AccessibleId child = list.accessible();
    // Some programs list a child that does not exist yet.
    if (isObject(child)) children.push_back(std::move(child));
  }
  return children;
}

std::optional<AccessibleId> childAtIn(const Message& answer) {
  if (!isAnswer(answer, "(so)")) return std::nullopt;
  return objectAt(Reader(answer));
}

std::optional<AccessibleId> parentIn(const Message& answer) {
  if (!isAnswer(answer, "v")) return std::nullopt;
  Reader value = Reader(answer).inside();
  if (!value.isAtAccessible()) return std::nullopt;
  return objectAt(value);
}

std::optional<std::uint32_t> numberIn(const Message& answer) {
  if (!isAnswer(answer, "u")) return std::nullopt;
  return Reader(answer).number<dbus_uint32_t>();
}

std::optional<std::int32_t> countIn(const Message& answer) {
  if (!isAnswer(answer, "v")) return std::nullopt;
  Reader value = Reader(answer).inside();
  if (value.type() != DBUS_TYPE_INT32) return std::nullopt;
  return value.number<dbus_int32_t>();
}

std::optional<std::string> nameIn(const Message& answer) {
  if (!isAnswer(answer, "v")) return std::nullopt;
  Reader value = Reader(answer).inside();
  if (value.type() != DBUS_TYPE_STRING) return std::nullopt;
  return keptText(value.text());
}

std::optional<std::uint64_t> statesIn(const Message& answer) {
  if (!isAnswer(answer, "au")) return std::nullopt;
  Reader words = Reader(answer).inside();
  std::uint64_t states = 0;
  for (unsigned shift = 0; shift < 64 && !words.atEnd(); shift += 32) {
    states |= std::uint64_t{words.number<dbus_uint32_t>()} << shift;
  }
  return states;
}

bool hasState(std::uint64_t states, unsigned state) { return ((states >> state) & 1U) != 0; }

std::optional<AccessibleId> embeddedIn(const Message& answer) {
  if (!isAnswer(answer, "a(ua(so))")) return std::nullopt;
  for (Reader relations = Reader(answer).inside(); !relations.atEnd();) {
    Reader relation = relations.inside();
    const auto type = relation.number<dbus_uint32_t>();
    Reader targets = relation.inside();
    if (type == ATSPI_RELATION_EMBEDS && !targets.atEnd()) return objectAt(targets);
  }
  return std::nullopt;
}

std::optional<std::string> attributeIn(const Message& answer, std::string_view name) {
  if (!isAnswer(answer, "a{ss}")) return std::nullopt;
  for (Reader attributes = Reader(answer).inside(); !attributes.atEnd();) {
    Reader attribute = attributes.inside();
    if (attribute.text() == name) return keptText(attribute.text());
  }
  return std::string();
}

std::optional<std::string> documentAddressIn(const Message& answer) {
  for (const std::string_view name : kAddressAttributes) {
    std::optional<std::string> address = attributeIn(answer, name);
    if (!address || !address->empty()) return address;
  }
  return std::string();
}

}  // namespace quorrix
