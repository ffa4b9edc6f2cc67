#include "platform/linux/accessible_object.h"

#include <atspi/atspi-constants.h>

#include <initializer_list>
#include <new>
#include <string_view>

namespace quorrix {
namespace {

constexpr const char* kDocumentUrlAttribute = "DocURL";
constexpr const char* kUriAttribute = "URI";

Message methodCall(const AccessibleId& object, const char* interface, const char* member) {
  Message call(
      dbus_message_new_method_call(object.peer.c_str(), object.path.c_str(), interface, member));
  if (!call) throw std::bad_alloc();
  // A question must never start a program.
  dbus_message_set_auto_start(call.get(), FALSE);
  return call;
}

Message accessibleCall(const AccessibleId& object, const char* member) {
  return methodCall(object, ATSPI_DBUS_INTERFACE_ACCESSIBLE, member);
}

bool isAnswer(const Message& answer, const char* signature) {
  return answer && dbus_message_get_type(answer.get()) == DBUS_MESSAGE_TYPE_METHOD_RETURN &&
         dbus_message_has_signature(answer.get(), signature);
}

// Walks over the arguments of a message, or into one of its containers. The
// signature has been checked before, so every step finds the type it expects.
class Reader {
 public:
  explicit Reader(const Message& message) { dbus_message_iter_init(message.get(), &place_); }

  [[nodiscard]] bool atEnd() {
    return dbus_message_iter_get_arg_type(&place_) == DBUS_TYPE_INVALID;
  }
  [[nodiscard]] int type() { return dbus_message_iter_get_arg_type(&place_); }

  [[nodiscard]] std::string text() {
    const char* value = "";
    dbus_message_iter_get_basic(&place_, &value);
    dbus_message_iter_next(&place_);
    return value;
  }
  [[nodiscard]] std::uint32_t number() {
    dbus_uint32_t value = 0;
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

 private:
  Reader() = default;
  DBusMessageIter place_{};
};

}  // namespace

AccessibleId registryRoot() { return {ATSPI_DBUS_NAME_REGISTRY, ATSPI_DBUS_PATH_ROOT}; }

Message greetingCall(const AccessibleId& program) {
  return methodCall(program, ATSPI_DBUS_INTERFACE_APPLICATION, "GetApplicationBusAddress");
}

Message childrenCall(const AccessibleId& object) { return accessibleCall(object, "GetChildren"); }
Message roleCall(const AccessibleId& object) { return accessibleCall(object, "GetRole"); }
Message stateCall(const AccessibleId& object) { return accessibleCall(object, "GetState"); }

Message nameCall(const AccessibleId& object) {
  Message call = methodCall(object, DBUS_INTERFACE_PROPERTIES, "Get");
  const char* interface = ATSPI_DBUS_INTERFACE_ACCESSIBLE;
  const char* property = "Name";
  if (!dbus_message_append_args(call.get(), DBUS_TYPE_STRING, &interface, DBUS_TYPE_STRING,
                                &property, DBUS_TYPE_INVALID)) {
    throw std::bad_alloc();
  }
  return call;
}

Message relationsCall(const AccessibleId& object) {
  return accessibleCall(object, "GetRelationSet");
}

Message documentAttributesCall(const AccessibleId& document) {
  return methodCall(document, ATSPI_DBUS_INTERFACE_DOCUMENT, "GetAttributes");
}

Message textCall(const AccessibleId& object) {
  Message call = methodCall(object, ATSPI_DBUS_INTERFACE_TEXT, "GetText");
  const dbus_int32_t start = 0;
  const dbus_int32_t end = -1;  // to the last character
  if (!dbus_message_append_args(call.get(), DBUS_TYPE_INT32, &start, DBUS_TYPE_INT32, &end,
                                DBUS_TYPE_INVALID)) {
    throw std::bad_alloc();
  }
  return call;
}

Message processIdCall(const std::string& peer) {
  Message call = methodCall({DBUS_SERVICE_DBUS, DBUS_PATH_DBUS}, DBUS_INTERFACE_DBUS,
                            "GetConnectionUnixProcessID");
  const char* name = peer.c_str();
  if (!dbus_message_append_args(call.get(), DBUS_TYPE_STRING, &name, DBUS_TYPE_INVALID)) {
    throw std::bad_alloc();
  }
  return call;
}

std::optional<std::vector<AccessibleId>> childrenIn(const Message& answer, std::size_t limit) {
  if (!isAnswer(answer, "a(so)")) return std::nullopt;
  std::vector<AccessibleId> children;
  for (Reader list = Reader(answer).inside(); !list.atEnd() && children.size() < limit;) {
    AccessibleId child = list.accessible();
    // Some programs list a place that holds nothing yet.
    if (child.path != ATSPI_DBUS_PATH_NULL && dbus_validate_bus_name(child.peer.c_str(), nullptr)) {
      children.push_back(std::move(child));
    }
  }
  return children;
}

std::optional<std::uint32_t> numberIn(const Message& answer) {
  if (!isAnswer(answer, "u")) return std::nullopt;
  return Reader(answer).number();
}

std::optional<std::string> nameIn(const Message& answer) {
  if (!isAnswer(answer, "v")) return std::nullopt;
  Reader value = Reader(answer).inside();
  if (value.type() != DBUS_TYPE_STRING) return std::nullopt;
  return value.text();
}

std::optional<std::string> textIn(const Message& answer) {
  if (!isAnswer(answer, "s")) return std::nullopt;
  return Reader(answer).text();
}

std::optional<std::uint64_t> statesIn(const Message& answer) {
  if (!isAnswer(answer, "au")) return std::nullopt;
  Reader words = Reader(answer).inside();
  std::uint64_t states = 0;
  for (unsigned shift = 0; shift < 64 && !words.atEnd(); shift += 32) {
    states |= std::uint64_t{words.number()} << shift;
  }
  return states;
}

bool hasState(std::uint64_t states, unsigned state) { return ((states >> state) & 1U) != 0; }

std::optional<AccessibleId> embeddedIn(const Message& answer) {
  if (!isAnswer(answer, "a(ua(so))")) return std::nullopt;
  for (Reader relations = Reader(answer).inside(); !relations.atEnd();) {
    Reader relation = relations.inside();
    const std::uint32_t type = relation.number();
    Reader targets = relation.inside();
    if (type != ATSPI_RELATION_EMBEDS || targets.atEnd()) continue;
    AccessibleId target = targets.accessible();
    if (target.path == ATSPI_DBUS_PATH_NULL ||
        !dbus_validate_bus_name(target.peer.c_str(), nullptr)) {
      return std::nullopt;
    }
    return target;
  }
  return std::nullopt;
}

std::optional<DocumentAddress> documentAddressIn(const Message& answer) {
  if (!isAnswer(answer, "a{ss}")) return std::nullopt;
  for (Reader attributes = Reader(answer).inside(); !attributes.atEnd();) {
    Reader attribute = attributes.inside();
    const std::string name = attribute.text();
    if (name == kDocumentUrlAttribute) return DocumentAddress{attribute.text(), false};
    if (name == kUriAttribute) return DocumentAddress{attribute.text(), true};
  }
  return std::nullopt;
}

}  // namespace quorrix
