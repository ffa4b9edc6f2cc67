#include "platform/linux/accessible_object.h"

#include <atspi/atspi-constants.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace quorrix {
namespace {

using Attributes = std::vector<std::pair<std::string, std::string>>;

constexpr const char* kPeer = ":1.7";

void append(DBusMessageIter& end, const std::string& text, int type = DBUS_TYPE_STRING) {
  const char* const value = text.c_str();
  dbus_message_iter_append_basic(&end, type, &value);
}

template <typename Fill>
void appendContainer(DBusMessageIter& end, int type, const char* contents, const Fill& fill) {
  DBusMessageIter inside;
  dbus_message_iter_open_container(&end, type, contents, &inside);
  fill(inside);
  dbus_message_iter_close_container(&end, &inside);
}

void appendObject(DBusMessageIter& end, const std::string& path) {
  appendContainer(end, DBUS_TYPE_STRUCT, nullptr, [&](DBusMessageIter& pair) {
    append(pair, kPeer);
    append(pair, path, DBUS_TYPE_OBJECT_PATH);
  });
}

// An answer whose arguments `fill` appends.
template <typename Fill>
Message answerWith(const Fill& fill, int type = DBUS_MESSAGE_TYPE_METHOD_RETURN) {
  Message answer(dbus_message_new(type));
  DBusMessageIter end;
  dbus_message_iter_init_append(answer.get(), &end);
  fill(end);
  return answer;
}

// A property of the type `signature`, as Properties.Get returns it.
template <typename Fill>
Message propertyWith(const char* signature, const Fill& fill) {
  return answerWith(
      [&](DBusMessageIter& end) { appendContainer(end, DBUS_TYPE_VARIANT, signature, fill); });
}

template <typename Fill>
Message listWith(const char* signature, const Fill& fill) {
  return answerWith(
      [&](DBusMessageIter& end) { appendContainer(end, DBUS_TYPE_ARRAY, signature, fill); });
}

Message answerWithNumber(std::uint32_t number, int type = DBUS_MESSAGE_TYPE_METHOD_RETURN) {
  return answerWith(
      [&](DBusMessageIter& end) {
        dbus_message_iter_append_basic(&end, DBUS_TYPE_UINT32, &number);
      },
      type);
}

Message propertyWithText(const std::string& text) {
  return propertyWith("s", [&](DBusMessageIter& variant) { append(variant, text); });
}

Message propertyWithCount(std::int32_t count) {
  return propertyWith("i", [&](DBusMessageIter& variant) {
    dbus_message_iter_append_basic(&variant, DBUS_TYPE_INT32, &count);
  });
}

Message propertyWithPairOfTexts() {
  return propertyWith("(ss)", [](DBusMessageIter& variant) {
    appendContainer(variant, DBUS_TYPE_STRUCT, nullptr, [](DBusMessageIter& pair) {
      append(pair, kPeer);
      append(pair, "/one");
    });
  });
}

Message propertyWithObject(const std::string& path) {
  return propertyWith("(so)", [&](DBusMessageIter& variant) { appendObject(variant, path); });
}

Message answerWithAttributes(const Attributes& attributes) {
  return listWith("{ss}", [&](DBusMessageIter& list) {
    for (const auto& attribute : attributes) {
      appendContainer(list, DBUS_TYPE_DICT_ENTRY, nullptr, [&](DBusMessageIter& entry) {
        append(entry, attribute.first);
        append(entry, attribute.second);
      });
    }
  });
}

Message answerWithStates(const std::vector<std::uint32_t>& words) {
  return listWith("u", [&](DBusMessageIter& list) {
    for (const std::uint32_t word : words) {
      dbus_message_iter_append_basic(&list, DBUS_TYPE_UINT32, &word);
    }
  });
}

struct Relation {
  std::uint32_t type;
  std::vector<std::string> targets;
};

Message answerWithRelations(const std::vector<Relation>& relations) {
  return listWith("(ua(so))", [&](DBusMessageIter& list) {
    for (const Relation& relation : relations) {
      appendContainer(list, DBUS_TYPE_STRUCT, nullptr, [&](DBusMessageIter& entry) {
        dbus_message_iter_append_basic(&entry, DBUS_TYPE_UINT32, &relation.type);
        appendContainer(entry, DBUS_TYPE_ARRAY, "(so)", [&](DBusMessageIter& targets) {
          for (const std::string& path : relation.targets) appendObject(targets, path);
        });
      });
    }
  });
}

void expectNothingKnownFrom(const Message& answer) {
  EXPECT_EQ(childrenIn(answer, 10), std::nullopt);
  EXPECT_EQ(childAtIn(answer), std::nullopt);
  EXPECT_EQ(parentIn(answer), std::nullopt);
  EXPECT_EQ(numberIn(answer), std::nullopt);
  EXPECT_EQ(countIn(answer), std::nullopt);
  EXPECT_EQ(nameIn(answer), std::nullopt);
  EXPECT_EQ(statesIn(answer), std::nullopt);
  EXPECT_EQ(embeddedIn(answer), std::nullopt);
  EXPECT_EQ(attributeIn(answer, "id"), std::nullopt);
  EXPECT_EQ(documentAddressIn(answer), std::nullopt);
}

TEST(AccessibleObject, IsNotKnownFromAMissingAnswerOrAnError) {
  expectNothingKnownFrom(nullptr);
  expectNothingKnownFrom(Message(dbus_message_new(DBUS_MESSAGE_TYPE_ERROR)));
  EXPECT_EQ(numberIn(answerWithNumber(7)), 7U);
  EXPECT_EQ(numberIn(answerWithNumber(7, DBUS_MESSAGE_TYPE_ERROR)), std::nullopt);
}

TEST(AccessibleObject, HasNoPropertyOfAnotherType) {
  EXPECT_EQ(countIn(propertyWithCount(3)), 3);
  EXPECT_EQ(countIn(propertyWithText("3")), std::nullopt);
  EXPECT_EQ(nameIn(propertyWithText("News")), "News");
  EXPECT_EQ(nameIn(propertyWithCount(3)), std::nullopt);
  EXPECT_EQ(parentIn(propertyWithObject("/one")), (AccessibleId{kPeer, "/one"}));
  EXPECT_EQ(parentIn(propertyWithPairOfTexts()), std::nullopt);
  EXPECT_EQ(parentIn(propertyWithText("/one")), std::nullopt);
}

TEST(AccessibleObject, HasNoParentWithoutAPath) {
  EXPECT_EQ(parentIn(propertyWithObject("/org/a11y/atspi/null")), std::nullopt);
}

TEST(AccessibleObject, HasNoTextOfMoreThan64KiB) {
  const std::string longest(65'536, 'x');
  EXPECT_EQ(nameIn(propertyWithText(longest)), longest);
  EXPECT_EQ(nameIn(propertyWithText(longest + 'x')), std::nullopt);
  EXPECT_EQ(documentAddressIn(answerWithAttributes({{"URI", longest}})), longest);
  EXPECT_EQ(documentAddressIn(answerWithAttributes({{"URI", longest + 'x'}})), std::nullopt);
}

TEST(AccessibleObject, HasTheStatesOfTwoWords) {
  EXPECT_EQ(statesIn(answerWithStates({})), 0U);
  EXPECT_EQ(statesIn(answerWithStates({5})), 5U);
  EXPECT_EQ(statesIn(answerWithStates({5, 1})), 0x1'0000'0005U);
  EXPECT_EQ(statesIn(answerWithStates({5, 1, 9})), 0x1'0000'0005U);
  EXPECT_TRUE(hasState(0x1'0000'0005U, 32));
  EXPECT_FALSE(hasState(0x1'0000'0005U, 33));
}

TEST(AccessibleObject, EmbedsTheFirstTargetOfThatRelation) {
  const std::uint32_t embeds = ATSPI_RELATION_EMBEDS;
  const std::uint32_t labels = ATSPI_RELATION_LABEL_FOR;
  EXPECT_EQ(embeddedIn(answerWithRelations({})), std::nullopt);
  EXPECT_EQ(embeddedIn(answerWithRelations({{labels, {"/label"}}})), std::nullopt);
  EXPECT_EQ(embeddedIn(answerWithRelations({{embeds, {}}})), std::nullopt);
  EXPECT_EQ(embeddedIn(answerWithRelations({{labels, {"/label"}}, {embeds, {"/page", "/more"}}})),
            (AccessibleId{kPeer, "/page"}));
}

TEST(AccessibleObject, HasAnEmptyAttributeInPlaceOfOneThatIsMissing) {
  EXPECT_EQ(attributeIn(answerWithAttributes({{"id", "nav-bar"}}), "id"), "nav-bar");
  EXPECT_EQ(attributeIn(answerWithAttributes({{"class", "x"}}), "id"), "");
  EXPECT_EQ(attributeIn(answerWithAttributes({}), "id"), "");
}

TEST(AccessibleObject, HasTheAddressOfADocumentInEitherAttribute) {
  EXPECT_EQ(documentAddressIn(answerWithAttributes({{"DocURL", "http://a.test/"}})),
            "http://a.test/");
  EXPECT_EQ(documentAddressIn(
                answerWithAttributes({{"MimeType", "text/html"}, {"URI", "http://b.test/"}})),
            "http://b.test/");
  EXPECT_EQ(documentAddressIn(answerWithAttributes({{"DocURL", ""}, {"URI", "http://c.test/"}})),
            "http://c.test/");
  EXPECT_EQ(documentAddressIn(answerWithAttributes({{"MimeType", "text/html"}})), "");
}

}  // namespace
}  // namespace quorrix
