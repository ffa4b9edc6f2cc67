#include "support/linux/fake_accessible_program.h"

#include <atspi/atspi-constants.h>
#include <dbus/dbus.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace quorrix::test {
namespace {

// Ends each line between the test and the program. The fields of a line are separated by
// tabs. Texts are escaped, so that they may contain both.
constexpr char kEnd = '\n';
constexpr char kEscape = '\x1B';

constexpr const char* kNowhere = ATSPI_DBUS_PATH_NULL;

constexpr std::uint64_t kActive = std::uint64_t{1} << ATSPI_STATE_ACTIVE;

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

std::string escaped(const std::string& text) {
  std::string line;
  for (const char c : text) {
    const bool isSpecial = c == '\t' || c == kEnd || c == kEscape;
    if (isSpecial) line += kEscape;
    line += isSpecial ? static_cast<char>(c + '@') : c;
  }
  return line;
}

std::string unescaped(const std::string& line) {
  std::string text;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool isSpecial = line[i] == kEscape;
    text += isSpecial ? static_cast<char>(line[++i] - '@') : line[i];
  }
  return text;
}

bool readLine(int channel, std::string& line) {
  line.clear();
  for (std::array<char, 4096> block; !line.ends_with(kEnd);) {
    const ssize_t seen = recv(channel, block.data(), block.size(), MSG_PEEK);
    if (seen <= 0) return false;
    const std::string_view text(block.data(), static_cast<std::size_t>(seen));
    const std::size_t taken = std::min(text.find(kEnd), text.size() - 1) + 1;
    if (recv(channel, block.data(), taken, 0) != static_cast<ssize_t>(taken)) return false;
    line += text.substr(0, taken);
  }
  line.pop_back();
  return true;
}

void writeLine(int channel, std::string line) {
  line += kEnd;
  if (write(channel, line.data(), line.size()) != static_cast<ssize_t>(line.size())) _exit(1);
}

// The part that runs in the new process.
class Program {
 public:
  Program(const std::string& bus, const std::string& name, int channel) : channel_(channel) {
    connection_ = dbus_connection_open_private(bus.c_str(), nullptr);
    if (!connection_ || !dbus_bus_register(connection_, nullptr)) _exit(1);
    dbus_connection_set_exit_on_disconnect(connection_, FALSE);
    if (!name.empty()) dbus_bus_request_name(connection_, name.c_str(), 0, nullptr);
    writeLine(channel_, dbus_bus_get_unique_name(connection_));
  }

  [[noreturn]] void run() {
    int socket = -1;
    dbus_connection_get_unix_fd(connection_, &socket);
    pollfd sources[] = {{channel_, POLLIN, 0}, {socket, POLLIN, 0}};
    for (;;) {
      poll(sources, 2, -1);
      std::string line;
      if (sources[0].revents != 0) {
        if (!readLine(channel_, line)) _exit(0);
        writeLine(channel_, obey(line));
      }
      dbus_connection_read_write(connection_, 0);
      while (DBusMessage* message = dbus_connection_pop_message(connection_)) {
        if (dbus_message_get_type(message) == DBUS_MESSAGE_TYPE_METHOD_CALL) {
          if (answerTime_ > 0) poll(nullptr, 0, answerTime_);
          answer(message);
          dbus_connection_flush(connection_);
        }
        dbus_message_unref(message);
      }
      dbus_connection_flush(connection_);
      if (!dbus_connection_get_is_connected(connection_)) sources[1].fd = -1;
    }
  }

 private:
  std::string obey(const std::string& line) {
    const std::vector<std::string> words = split(line + '\t' + '.', '\t');
    if (words[0] == "set") {
      FakeObject& object = objects_[words[1]];
      object.role = static_cast<std::uint32_t>(std::stoul(words[2]));
      object.states = std::stoull(words[3]);
      object.name = unescaped(words[4]);
      object.embeds = words[5];
      object.addressAttribute = words[6];
      object.address = unescaped(words[7]);
      object.text = words[8];
      object.description = unescaped(words[9]);
      object.attributes.clear();
      for (const std::string& attribute : split(words[10], ';')) {
        const std::size_t equals = attribute.find('=');
        object.attributes[attribute.substr(0, equals)] = attribute.substr(equals + 1);
      }
      object.children = split(words[11], ' ');
      object.listsChildren = words[12] == "listed";
    } else if (words[0] == "names") {
      programName_ = words[1];
      toolkitName_ = words[2];
    } else if (words[0] == "long") {
      objects_[words[1]].name = std::string(std::stoul(words[2]), 'x');
    } else if (words[0] == "wrong") {
      wrongMembers_.insert(words[1]);
    } else if (words[0] == "refuse") {
      refusedMembers_.insert(words[1]);
    } else if (words[0] == "time") {
      answerTime_ = std::stoi(words[1]);
    } else if (words[0] == "remove") {
      objects_.erase(words[1]);
    } else if (words[0] == "serve") {
      busAddress_ = words[1];
    } else if (words[0] == "switch") {
      return isSwitchedOn_ ? "on" : "off";
    } else if (words[0] == "calls") {
      std::string calls;
      calls.swap(calls_);
      return calls;
    }
    return {};
  }

  void answer(DBusMessage* call) {
    const std::string path = dbus_message_get_path(call);
    const std::string member = dbus_message_get_member(call);
    calls_ += path + ' ' + member + '\t';
    DBusMessage* reply = dbus_message_new_method_return(call);
    DBusMessageIter out;
    dbus_message_iter_init_append(reply, &out);
    const auto object = objects_.find(path);
    const bool known =
        path == "/org/a11y/bus"
            ? answerAsService(call, member, out)
            : object != objects_.end() && answerAsObject(call, path, object->second, out);
    if (!known || refusedMembers_.contains(member)) {
      dbus_message_unref(reply);
      reply = dbus_message_new_error(call, DBUS_ERROR_UNKNOWN_OBJECT, path.c_str());
    }
    dbus_connection_send(connection_, reply, nullptr);
    dbus_message_unref(reply);
  }

  bool answerAsService(DBusMessage* call, const std::string& member, DBusMessageIter& out) {
    const bool isWrong = wrongMembers_.contains(member);
    if (member == "GetAddress") {
      isWrong ? appendWrong(out) : appendText(out, busAddress_);
    } else if (member == "Get") {
      DBusMessageIter variant;
      const dbus_bool_t value = isSwitchedOn_;
      dbus_message_iter_open_container(&out, DBUS_TYPE_VARIANT, isWrong ? "ad" : "b", &variant);
      if (isWrong) {
        appendWrong(variant);
      } else {
        dbus_message_iter_append_basic(&variant, DBUS_TYPE_BOOLEAN, &value);
      }
      dbus_message_iter_close_container(&out, &variant);
    } else if (member == "Set") {
      isSwitchedOn_ = dbus_message_has_signature(call, "ssv") != 0;
    } else {
      return false;
    }
    return true;
  }

  // Appends an answer of a type that no question expects.
  static void appendWrong(DBusMessageIter& out) {
    DBusMessageIter list;
    dbus_message_iter_open_container(&out, DBUS_TYPE_ARRAY, "d", &list);
    const double value = 1.5;
    dbus_message_iter_append_basic(&list, DBUS_TYPE_DOUBLE, &value);
    dbus_message_iter_close_container(&out, &list);
  }

  bool answerAsObject(DBusMessage* call, const std::string& path, const FakeObject& object,
                      DBusMessageIter& out) {
    const std::string member = dbus_message_get_member(call);
    if (wrongMembers_.contains(member)) {
      appendWrong(out);
      return true;
    }
    if (member == "GetApplicationBusAddress") {
      isGreeted_ = true;
      appendText(out, busAddress_);
    } else if (member == "GetChildren") {
      appendReferences(out, object.listsChildren ? object.children : std::vector<std::string>());
    } else if (member == "GetChildAtIndex") {
      dbus_int32_t index = 0;
      dbus_message_get_args(call, nullptr, DBUS_TYPE_INT32, &index, DBUS_TYPE_INVALID);
      const auto place = static_cast<std::size_t>(index);
      appendReference(out, place < object.children.size() ? object.children[place] : kNowhere);
    } else if (member == "GetRole") {
      dbus_message_iter_append_basic(&out, DBUS_TYPE_UINT32, &object.role);
    } else if (member == "GetState") {
      appendStates(out, isGreeted_ ? object.states : object.states & ~kActive);
    } else if (member == "Get") {
      return appendProperty(call, path, object, out);
    } else if (member == "GetText") {
      appendText(out, object.text);
    } else if (member == "GetRelationSet") {
      appendRelations(out, object.embeds);
    } else if (member == "GetAttributes") {
      return appendAttributes(call, object, out);
    } else {
      return false;
    }
    return true;
  }

  bool appendProperty(DBusMessage* call, const std::string& path, const FakeObject& object,
                      DBusMessageIter& out) {
    const char* interface = "";
    const char* property = "";
    dbus_message_get_args(call, nullptr, DBUS_TYPE_STRING, &interface, DBUS_TYPE_STRING, &property,
                          DBUS_TYPE_INVALID);
    const std::string name = property;
    const bool isRoot = path == FakeAccessibleProgram::kRoot;
    DBusMessageIter variant;
    if (wrongMembers_.contains(name)) {
      dbus_message_iter_open_container(&out, DBUS_TYPE_VARIANT, "ad", &variant);
      appendWrong(variant);
    } else if (name == "ChildCount") {
      const auto count = static_cast<dbus_int32_t>(object.children.size());
      dbus_message_iter_open_container(&out, DBUS_TYPE_VARIANT, "i", &variant);
      dbus_message_iter_append_basic(&variant, DBUS_TYPE_INT32, &count);
    } else if (name == "Parent") {
      dbus_message_iter_open_container(&out, DBUS_TYPE_VARIANT, "(so)", &variant);
      appendReference(variant, parentOf(path));
    } else {
      std::string value = name == "Description" ? object.description : object.name;
      if (isRoot && name == "Name") value = programName_;
      if (name == "ToolkitName") value = toolkitName_;
      dbus_message_iter_open_container(&out, DBUS_TYPE_VARIANT, "s", &variant);
      appendText(variant, value);
    }
    dbus_message_iter_close_container(&out, &variant);
    return true;
  }

  std::string parentOf(const std::string& path) {
    for (const auto& [parent, object] : objects_) {
      if (std::ranges::find(object.children, path) != object.children.end()) return parent;
    }
    return kNowhere;
  }

  static void appendText(DBusMessageIter& out, const std::string& text) {
    const char* value = text.c_str();
    dbus_message_iter_append_basic(&out, DBUS_TYPE_STRING, &value);
  }

  void appendReference(DBusMessageIter& out, const std::string& reference) {
    const std::size_t slash = reference.find('/');
    const std::string peer =
        slash == 0 ? dbus_bus_get_unique_name(connection_) : reference.substr(0, slash);
    const std::string path = reference.substr(slash);
    const char* pathText = path.c_str();
    DBusMessageIter pair;
    dbus_message_iter_open_container(&out, DBUS_TYPE_STRUCT, nullptr, &pair);
    appendText(pair, peer);
    dbus_message_iter_append_basic(&pair, DBUS_TYPE_OBJECT_PATH, &pathText);
    dbus_message_iter_close_container(&out, &pair);
  }

  void appendReferences(DBusMessageIter& out, const std::vector<std::string>& references) {
    DBusMessageIter list;
    dbus_message_iter_open_container(&out, DBUS_TYPE_ARRAY, "(so)", &list);
    for (const std::string& reference : references) appendReference(list, reference);
    dbus_message_iter_close_container(&out, &list);
  }

  static void appendStates(DBusMessageIter& out, std::uint64_t states) {
    DBusMessageIter list;
    dbus_message_iter_open_container(&out, DBUS_TYPE_ARRAY, "u", &list);
    for (const unsigned shift : {0U, 32U}) {
      const auto word = static_cast<dbus_uint32_t>(states >> shift);
      dbus_message_iter_append_basic(&list, DBUS_TYPE_UINT32, &word);
    }
    dbus_message_iter_close_container(&out, &list);
  }

  void appendRelations(DBusMessageIter& out, const std::string& embeds) {
    DBusMessageIter list;
    dbus_message_iter_open_container(&out, DBUS_TYPE_ARRAY, "(ua(so))", &list);
    if (!embeds.empty()) {
      const dbus_uint32_t type = ATSPI_RELATION_EMBEDS;
      DBusMessageIter relation;
      dbus_message_iter_open_container(&list, DBUS_TYPE_STRUCT, nullptr, &relation);
      dbus_message_iter_append_basic(&relation, DBUS_TYPE_UINT32, &type);
      appendReferences(relation, {embeds});
      dbus_message_iter_close_container(&list, &relation);
    }
    dbus_message_iter_close_container(&out, &list);
  }

  // Asked through the document interface, an object returns the attributes of its page.
  static bool appendAttributes(DBusMessage* call, const FakeObject& object, DBusMessageIter& out) {
    std::map<std::string, std::string> attributes = object.attributes;
    if (std::string(dbus_message_get_interface(call)) == ATSPI_DBUS_INTERFACE_DOCUMENT) {
      if (object.addressAttribute.empty()) return false;
      attributes = {{"MimeType", "text/html"}, {object.addressAttribute, object.address}};
    }
    DBusMessageIter list;
    dbus_message_iter_open_container(&out, DBUS_TYPE_ARRAY, "{ss}", &list);
    for (const auto& [name, value] : attributes) {
      DBusMessageIter entry;
      dbus_message_iter_open_container(&list, DBUS_TYPE_DICT_ENTRY, nullptr, &entry);
      appendText(entry, name);
      appendText(entry, value);
      dbus_message_iter_close_container(&list, &entry);
    }
    dbus_message_iter_close_container(&out, &list);
    return true;
  }

  int channel_;
  DBusConnection* connection_ = nullptr;
  std::map<std::string, FakeObject> objects_;
  std::set<std::string> wrongMembers_;
  std::set<std::string> refusedMembers_;
  std::string calls_;
  std::string busAddress_;
  std::string programName_;
  std::string toolkitName_;
  int answerTime_ = 0;  // milliseconds
  bool isSwitchedOn_ = false;
  bool isGreeted_ = false;
};

}  // namespace

FakeAccessibleProgram::FakeAccessibleProgram(const std::string& busAddress,
                                             const std::string& wellKnownName) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
    throw std::runtime_error("no socket pair");
  }
  process_ = fork();
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    close(ends[0]);
    Program(busAddress, wellKnownName, ends[1]).run();
  }
  close(ends[1]);
  channel_ = ends[0];
  if (!readLine(channel_, uniqueName_)) throw std::runtime_error("the program did not start");
}

FakeAccessibleProgram::~FakeAccessibleProgram() {
  kill();
  close(channel_);
}

void FakeAccessibleProgram::set(const std::string& path, const FakeObject& object) {
  std::ostringstream line;
  line << "set\t" << path << '\t' << object.role << '\t' << object.states << '\t'
       << escaped(object.name) << '\t' << object.embeds << '\t' << object.addressAttribute << '\t'
       << escaped(object.address) << '\t' << object.text << '\t' << escaped(object.description)
       << '\t';
  for (const auto& [name, value] : object.attributes) line << name << '=' << value << ';';
  line << '\t';
  for (const std::string& child : object.children) line << child << ' ';
  line << '\t' << (object.listsChildren ? "listed" : "unlisted");
  static_cast<void>(command(line.str()));
}

void FakeAccessibleProgram::setNames(const std::string& name, const std::string& toolkit) {
  static_cast<void>(command("names\t" + name + '\t' + toolkit));
}

void FakeAccessibleProgram::setLongName(const std::string& path, std::size_t bytes) {
  static_cast<void>(command("long\t" + path + '\t' + std::to_string(bytes)));
}

void FakeAccessibleProgram::answerWrongly(const std::string& member) {
  static_cast<void>(command("wrong\t" + member));
}

void FakeAccessibleProgram::refuse(const std::string& member) {
  static_cast<void>(command("refuse\t" + member));
}

void FakeAccessibleProgram::setAnswerTime(std::chrono::milliseconds time) {
  static_cast<void>(command("time\t" + std::to_string(time.count())));
}

void FakeAccessibleProgram::remove(const std::string& path) {
  static_cast<void>(command("remove\t" + path));
}

std::vector<std::string> FakeAccessibleProgram::takeCalls() {
  return split(command("calls"), '\t');
}

void FakeAccessibleProgram::serveBusAddress(const std::string& address) {
  static_cast<void>(command("serve\t" + address));
}

bool FakeAccessibleProgram::isSwitchedOn() { return command("switch") == "on"; }

void FakeAccessibleProgram::freeze() {
  ::kill(process_, SIGSTOP);
  waitpid(process_, nullptr, WUNTRACED);
}

void FakeAccessibleProgram::thaw() { ::kill(process_, SIGCONT); }

void FakeAccessibleProgram::kill() {
  if (process_ <= 0) return;
  ::kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  process_ = -1;
}

std::string FakeAccessibleProgram::command(const std::string& line) {
  writeLine(channel_, line);
  std::string reply;
  if (!readLine(channel_, reply)) throw std::runtime_error("the program is gone");
  return reply;
}

}  // namespace quorrix::test
