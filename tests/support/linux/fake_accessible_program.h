// A program with accessible objects, described by the test: a browser, the registry that
// lists the programs, or the session's accessibility service. It is a process of its own,
// so that it can be frozen and killed like a real one. Like Chromium, it says that a
// window is active only to a client that has greeted it.
//
// An object's parent is the object that lists it as a child.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace quorrix::test {

struct FakeObject {
  std::uint32_t role = 0;
  std::uint64_t states = 0;
  std::string name;
  std::string embeds;            // path of the target of its EMBEDS relation, or empty
  std::string addressAttribute;  // "DocURL" or "URI"; empty for no document
  std::string address;
  std::string text;
  std::string description;
  std::map<std::string, std::string> attributes;  // of the object itself, such as "class"
  // Paths in the same program, or "bus name" + path for an object of another program.
  std::vector<std::string> children;
  bool listsChildren = true;  // false: they are counted and returned one by one, but not listed
};

class FakeAccessibleProgram {
 public:
  static constexpr const char* kRoot = "/org/a11y/atspi/accessible/root";

  // The program is on the bus when the constructor returns, under `wellKnownName` if
  // given.
  explicit FakeAccessibleProgram(const std::string& busAddress,
                                 const std::string& wellKnownName = "");
  ~FakeAccessibleProgram();
  FakeAccessibleProgram(const FakeAccessibleProgram&) = delete;
  FakeAccessibleProgram& operator=(const FakeAccessibleProgram&) = delete;

  [[nodiscard]] const std::string& uniqueName() const { return uniqueName_; }
  [[nodiscard]] pid_t process() const { return process_; }

  // What the program calls itself and its toolkit; empty at first.
  void setNames(const std::string& name, const std::string& toolkit);

  // Both return once the change has taken effect.
  void set(const std::string& path, const FakeObject& object);
  void remove(const std::string& path);

  // Gives an object a name of this many bytes.
  void setLongName(const std::string& path, std::size_t bytes);

  // From now on, answers to this method, or for this property, have a type that nobody
  // expects.
  void answerWrongly(const std::string& member);

  // From now on calls of this method fail, although they take effect.
  void refuse(const std::string& member);

  // From now on each answer takes this long, one after the other.
  void setAnswerTime(std::chrono::milliseconds time);

  // The calls received since the last time, as "path member".
  [[nodiscard]] std::vector<std::string> takeCalls();

  // Plays org.a11y.Bus: the answer to GetAddress, and the state of the switch.
  void serveBusAddress(const std::string& address);
  [[nodiscard]] bool isSwitchedOn();

  void freeze();
  void thaw();
  void kill();

 private:
  [[nodiscard]] std::string command(const std::string& line);

  pid_t process_ = -1;
  int channel_ = -1;
  std::string uniqueName_;
};

}  // namespace quorrix::test
