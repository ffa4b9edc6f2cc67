#include "main_window/unreadable_browser_text.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

using Reason = UnreadableBrowser::Reason;

std::string textFor(const std::vector<UnreadableBrowser>& browsers) {
  return unreadableBrowserText(browsers).toStdString();
}

TEST(UnreadableBrowserText, IsEmptyWhenEveryBrowserCanBeRead) { EXPECT_EQ(textFor({}), ""); }

TEST(UnreadableBrowserText, SaysWhatToDoAboutEachReason) {
  EXPECT_EQ(textFor({{"Chromium", Reason::StartedTooEarly}}),
            "Close Chromium and start it again to have its pages recorded.");
  EXPECT_EQ(
      textFor({{"Chromium", Reason::AccessibilityOff}}),
      "A setting or an environment variable switches accessibility off in Chromium. Remove it "
      "and start Chromium again to have its pages recorded.");
  EXPECT_EQ(textFor({{"Mozilla Firefox", Reason::NoBus}}),
            "The accessibility service of the desktop does not answer. Log out and log in again to "
            "have the pages of Mozilla Firefox recorded.");
  EXPECT_EQ(textFor({{"Mozilla Firefox", Reason::UnknownKind}}),
            "Quorrix cannot tell whether a window of Mozilla Firefox is private. Close that window "
            "and open a new one to have its pages recorded.");
}

TEST(UnreadableBrowserText, NamesSeveralBrowsersInOneSentence) {
  EXPECT_EQ(
      textFor({{"Chromium", Reason::StartedTooEarly}, {"Google Chrome", Reason::StartedTooEarly}}),
      "Close Chromium and Google Chrome and start them again to have their pages recorded.");
  EXPECT_EQ(textFor({{"A", Reason::AccessibilityOff},
                     {"B", Reason::AccessibilityOff},
                     {"C", Reason::AccessibilityOff}}),
            "A setting or an environment variable switches accessibility off in A, B and C. Remove "
            "it and start them again to have their pages recorded.");
  EXPECT_EQ(textFor({{"A", Reason::NoBus}, {"B", Reason::NoBus}}),
            "The accessibility service of the desktop does not answer. Log out and log in again to "
            "have the pages of A and B recorded.");
  EXPECT_EQ(textFor({{"A", Reason::UnknownKind}, {"B", Reason::UnknownKind}}),
            "Quorrix cannot tell whether windows of A and B are private. Close those windows and "
            "open new ones to have their pages recorded.");
}

TEST(UnreadableBrowserText, HasALineForEachReason) {
  EXPECT_EQ(
      textFor({{"Mozilla Firefox", Reason::UnknownKind}, {"Chromium", Reason::StartedTooEarly}}),
      "Close Chromium and start it again to have its pages recorded.\n"
      "Quorrix cannot tell whether a window of Mozilla Firefox is private. Close that window and "
      "open a new one to have its pages recorded.");
}

TEST(UnreadableBrowserText, NamesABrowserOfSeveralWindowsOnce) {
  EXPECT_EQ(textFor({{"Chromium", Reason::StartedTooEarly}, {"Chromium", Reason::StartedTooEarly}}),
            "Close Chromium and start it again to have its pages recorded.");
}

TEST(UnreadableBrowserText, TakesANameAsItStands) {
  EXPECT_EQ(textFor({{"%1 <b>&amp;</b>", Reason::StartedTooEarly}}),
            "Close %1 <b>&amp;</b> and start it again to have its pages recorded.");
  EXPECT_EQ(textFor({{"\xe0\xa4\x95\xe0\xa5\x8d\xe0\xa4\xb0", Reason::StartedTooEarly}}),
            "Close \xe0\xa4\x95\xe0\xa5\x8d\xe0\xa4\xb0 and start it again to have its pages "
            "recorded.");
}

TEST(UnreadableBrowserText, KeepsANameOnOneLineAndShort) {
  EXPECT_EQ(textFor({{"Two\nlines", Reason::StartedTooEarly}}),
            "Close Two lines and start it again to have its pages recorded.");
  EXPECT_EQ(textFor({{std::string(30, 'n'), Reason::StartedTooEarly}}),
            "Close nnnnnnnnnnnnnnnnnnnnnnnnnnnnnn and start it again to have its pages recorded.");
  EXPECT_EQ(textFor({{std::string(31, 'n'), Reason::StartedTooEarly}}),
            "Close nnnnnnnnnnnnnnnnnnnnnnnnnnnnn\xe2\x80\xa6 and start it again to have its pages "
            "recorded.");
}

}  // namespace
}  // namespace quorrix
