#include "platform/linux/question.h"

#include <atspi/atspi-constants.h>

#include <new>

namespace quorrix {
namespace {

using Topic = Question::Topic;

// A property is read with Properties.Get and its name, everything else by a method.
enum class Means { Method, Property };

struct Wording {
  Topic topic;
  Means means;
  const char* interface;
  const char* member;
};

constexpr Wording kWordings[] = {
    {Topic::Greeting, Means::Method, ATSPI_DBUS_INTERFACE_APPLICATION, "GetApplicationBusAddress"},
    {Topic::ProcessId, Means::Method, DBUS_INTERFACE_DBUS, "GetConnectionUnixProcessID"},
    {Topic::Name, Means::Property, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "Name"},
    {Topic::Description, Means::Property, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "Description"},
    {Topic::ToolkitName, Means::Property, ATSPI_DBUS_INTERFACE_APPLICATION, "ToolkitName"},
    {Topic::ChildCount, Means::Property, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "ChildCount"},
    {Topic::Parent, Means::Property, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "Parent"},
    {Topic::Role, Means::Method, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "GetRole"},
    {Topic::States, Means::Method, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "GetState"},
    {Topic::Children, Means::Method, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "GetChildren"},
    {Topic::ChildAt, Means::Method, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "GetChildAtIndex"},
    {Topic::Relations, Means::Method, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "GetRelationSet"},
    {Topic::Attributes, Means::Method, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "GetAttributes"},
    {Topic::DocumentAttributes, Means::Method, ATSPI_DBUS_INTERFACE_DOCUMENT, "GetAttributes"},
};

const Wording& wordingOf(Topic topic) {
  const Wording* wording = kWordings;
  while (wording->topic != topic) ++wording;
  return *wording;
}

Message call(const char* peer, const char* path, const char* interface, const char* member) {
  Message message(dbus_message_new_method_call(peer, path, interface, member));
  if (!message) throw std::bad_alloc();
  // A question must never start a program.
  dbus_message_set_auto_start(message.get(), FALSE);
  return message;
}

template <typename... Arguments>
void append(const Message& message, Arguments... typesAndPlaces) {
  if (!dbus_message_append_args(message.get(), typesAndPlaces..., DBUS_TYPE_INVALID)) {
    throw std::bad_alloc();
  }
}

}  // namespace

std::vector<Question> questionsAbout(const std::vector<AccessibleId>& objects, Topic topic) {
  std::vector<Question> questions;
  questions.reserve(objects.size());
  for (const AccessibleId& id : objects) questions.push_back({topic, id});
  return questions;
}

Message messageFor(const Question& question) {
  const Wording& wording = wordingOf(question.topic);
  const char* peer = question.object.peer.c_str();
  const char* path = question.object.path.c_str();
  if (wording.means == Means::Property) {
    Message message = call(peer, path, DBUS_INTERFACE_PROPERTIES, "Get");
    append(message, DBUS_TYPE_STRING, &wording.interface, DBUS_TYPE_STRING, &wording.member);
    return message;
  }
  if (question.topic == Topic::ProcessId) {
    Message message = call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, wording.interface, wording.member);
    append(message, DBUS_TYPE_STRING, &peer);
    return message;
  }
  Message message = call(peer, path, wording.interface, wording.member);
  if (question.topic == Topic::ChildAt) {
    const dbus_int32_t index = question.index;
    append(message, DBUS_TYPE_INT32, &index);
  }
  return message;
}

}  // namespace quorrix
