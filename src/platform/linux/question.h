// One question about one accessible object, as a value, so that a repeated question is
// recognised and its answer can be kept.
#pragma once

#include <compare>
#include <cstdint>
#include <vector>

#include "platform/linux/accessible_object.h"
#include "platform/linux/dbus_handles.h"

namespace quorrix {

struct Question {
  // In parentheses: the function that reads the answer (accessible_object.h).
  enum class Topic {
    Greeting,     // makes the asker a client of the program with this root; no answer is read
    ProcessId,    // of the program that owns the object; the bus itself answers (numberIn)
    Name,         // (nameIn)
    Description,  // (nameIn)
    ToolkitName,  // of the program with this root (nameIn)
    ChildCount,   // (countIn)
    Parent,       // (parentIn)
    Role,         // (numberIn)
    States,       // (statesIn)
    Children,     // (childrenIn)
    ChildAt,      // the child with the number `index`, from 0 (childAtIn)
    Relations,    // (embeddedIn)
    Attributes,   // of the object itself (attributeIn)
    DocumentAttributes,  // of the page that a document shows (documentAddressIn)
  };

  Topic topic;
  AccessibleId object;
  std::int32_t index = 0;

  auto operator<=>(const Question&) const = default;
};

// The same question about each of several objects.
[[nodiscard]] std::vector<Question> questionsAbout(const std::vector<AccessibleId>& objects,
                                                   Question::Topic topic);

// Throws std::bad_alloc.
[[nodiscard]] Message messageFor(const Question& question);

}  // namespace quorrix
