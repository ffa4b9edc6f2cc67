#include "search/search_dialog.h"

#include <QToolButton>
#include <new>
#include <stdexcept>

#include "platform/failure.h"
#include "search/search_stage.h"

namespace quorrix {
namespace {

using Texts = std::vector<std::string>;

class SearchDialogTest : public test::SearchStage {
 protected:
  SearchDialogTest() { dialog_.Form_Load(); }

  SearchDialog::Parts parts() {
    return {.clock = clock_,
            .messageBox = messageBox_,
            .mainWindow = mainWindow_,
            .search = search(),
            .unloadResults = [this] { steps_.push_back("unload results"); },
            .showResults =
                [this](const SearchCriteria& criteria, const Texts& addresses) {
                  steps_.push_back("show " + std::to_string(addresses.size()) + " for " +
                                   test::describe(criteria));
                  if (whileShowing_) whileShowing_();
                }};
  }

  // The texts of the date boxes after a load on this day.
  std::string presetOn(int year, int month, int day) {
    clock_.set({.year = year, .month = month, .day = day});
    SearchDialog dialog(parts());
    dialog.Form_Load();
    return entered(dialog, "Text2") + ' ' + entered(dialog, "Text1") + ' ' +
           entered(dialog, "Text4");
  }

  // The date that is searched for if the date boxes have these texts.
  std::string dateOf(const char* month, const char* day, const char* year) {
    found_ = {"one.two.three/a"};
    enter(dialog_, "Text2", month);
    enter(dialog_, "Text1", day);
    enter(dialog_, "Text4", year);
    press(dialog_, "OKButton");
    return searches_.back().substr(searches_.back().rfind(' ') + 1);
  }

  Texts steps_;
  std::function<void()> whileShowing_;
  SearchDialog dialog_{parts()};
};

TEST_F(SearchDialogTest, ShowsItsCaptions) {
  EXPECT_EQ(dialog_.windowTitle(), QStringLiteral("Search Display"));
  EXPECT_EQ(captionOf(dialog_, "Label1"), "Enter search criteria as necessary and then click OK.");
  EXPECT_EQ(captionOf(dialog_, "Label8"), "Search on");
  EXPECT_EQ(captionOfButton(dialog_, "Option1"), "Site address");
  EXPECT_EQ(captionOfButton(dialog_, "Option2"), "Date");
  EXPECT_EQ(captionOfButton(dialog_, "Option3"), "Site address and date");
  EXPECT_EQ(captionOf(dialog_, "Label4"), "Website address contains");
  EXPECT_EQ(captionOf(dialog_, "Label5"), "Accessed after");
  EXPECT_EQ(captionOf(dialog_, "Label6"), "Month");
  EXPECT_EQ(captionOf(dialog_, "Label7"), "Year");
  EXPECT_EQ(captionOfButton(dialog_, "OKButton"), "OK");
  EXPECT_EQ(captionOfButton(dialog_, "CancelButton"), "Cancel");
}

TEST_F(SearchDialogTest, HasTheCaptionOfTheDateBesideItsBoxes) {
  dialog_.show();
  const int caption = control<QLabel>(dialog_, "Label5").geometry().center().y();
  const auto& month = control<QLineEdit>(dialog_, "Text2");
  const int top = month.mapTo(&dialog_, QPoint()).y();
  EXPECT_GT(caption, top);
  EXPECT_LT(caption, top + month.height());
}

TEST_F(SearchDialogTest, LetsTheUserGoOnInTheMainWindow) {
  dialog_.show();
  EXPECT_FALSE(dialog_.isModal());
}

TEST_F(SearchDialogTest, OpensOverTheMiddleOfTheMainWindow) {
  dialog_.show();
  const QPoint apart = dialog_.frameGeometry().center() - mainWindow_.frameGeometry().center();
  EXPECT_LE(apart.manhattanLength(), 2) << "half pixels are cut off";
}

TEST_F(SearchDialogTest, IsPlacedBeforeItShows) {
  const QPoint place = dialog_.pos();
  dialog_.show();
  EXPECT_EQ(dialog_.pos(), place);
}

TEST_F(SearchDialogTest, HasRoomForTwoDigitsOfDayAndMonthAndForFourOfTheYear) {
  const int twoDigits = control<QLineEdit>(dialog_, "Text2").width();
  EXPECT_EQ(control<QLineEdit>(dialog_, "Text1").width(), twoDigits);
  const int digit = dialog_.fontMetrics().horizontalAdvance(QLatin1Char('0'));
  EXPECT_EQ(control<QLineEdit>(dialog_, "Text4").width(), twoDigits + 2 * digit);
}

TEST_F(SearchDialogTest, PresetsASearchOnTheSiteAddress) {
  EXPECT_TRUE(control<QRadioButton>(dialog_, "Option1").isChecked());
  EXPECT_EQ(entered(dialog_, "Text3"), "");
  press(dialog_, "CancelButton");
  EXPECT_EQ(searches_, Texts{});
}

TEST_F(SearchDialogTest, PresetsTodayWithoutLeadingZeros) {
  EXPECT_EQ(presetOn(2026, 7, 9), "7 9 2026");
  EXPECT_EQ(presetOn(2026, 11, 16), "11 16 2026");
}

TEST_F(SearchDialogTest, PresetsTheYearByItsTwoDigits) {
  EXPECT_EQ(presetOn(1999, 12, 31), "12 31 1999");
  EXPECT_EQ(presetOn(2000, 1, 1), "1 1 2000");
  EXPECT_EQ(presetOn(2009, 1, 1), "1 1 2009");
  EXPECT_EQ(presetOn(1998, 1, 1), "1 1 2098");
  EXPECT_EQ(presetOn(2099, 1, 1), "1 1 1999");
}

TEST_F(SearchDialogTest, SearchesForWhatWasEntered) {
  found_ = {"one.two.three/a"};
  enter(dialog_, "Text3", "Caf\u00e9 & Co");
  press(dialog_, "OKButton");
  choose(dialog_, "Option2");
  press(dialog_, "OKButton");
  choose(dialog_, "Option3");
  press(dialog_, "OKButton");
  choose(dialog_, "Option1");
  press(dialog_, "OKButton");
  EXPECT_EQ(searches_, (Texts{"url <Caf\u00e9 & Co> 7/9/26", "date <Caf\u00e9 & Co> 7/9/26",
                              "both <Caf\u00e9 & Co> 7/9/26", "url <Caf\u00e9 & Co> 7/9/26"}));
}

TEST_F(SearchDialogTest, TakesTheLastTwoDigitsOfTheYear) {
  EXPECT_EQ(dateOf("11", "16", "1999"), "11/16/99");
  EXPECT_EQ(dateOf("1", "2", "2001"), "1/2/01");
}

TEST_F(SearchDialogTest, TakesWhatThereIsOfAShortOrLongYear) {
  EXPECT_EQ(dateOf("1", "2", "199"), "1/2/9");
  EXPECT_EQ(dateOf("1", "2", "99"), "1/2/");
  EXPECT_EQ(dateOf("", "", ""), "//");
  EXPECT_EQ(dateOf("1", "2", "19995"), "1/2/99");
}

// Rejecting an invalid date is up to the search, not to the dialog.
TEST_F(SearchDialogTest, PassesOnADateThatIsNone) {
  EXPECT_EQ(dateOf("13", "x", "1999"), "13/x/99");
}

TEST_F(SearchDialogTest, CountsTheDateWithinItsRanges) {
  const auto stepTwice = [this](const char* box, const char* from, Qt::Key key) {
    enter(dialog_, box, from);
    QTest::keyClick(&control<QLineEdit>(dialog_, box), key);
    QTest::keyClick(&control<QLineEdit>(dialog_, box), key);
    return entered(dialog_, box);
  };
  EXPECT_EQ(stepTwice("Text2", "11", Qt::Key_Up), "12");
  EXPECT_EQ(stepTwice("Text2", "2", Qt::Key_Down), "1");
  EXPECT_EQ(stepTwice("Text1", "30", Qt::Key_Up), "31");
  EXPECT_EQ(stepTwice("Text1", "2", Qt::Key_Down), "1");
  EXPECT_EQ(stepTwice("Text4", "2097", Qt::Key_Up), "2098");
  EXPECT_EQ(stepTwice("Text4", "2000", Qt::Key_Down), "1999");
}

TEST_F(SearchDialogTest, HasArrowsBesideEachPartOfTheDate) {
  choose(dialog_, "Option2");
  const std::pair<const char*, const char*> kPairs[] = {
      {"UpDown2", "Text2"}, {"UpDown1", "Text1"}, {"UpDown3", "Text4"}};
  for (const auto& [arrows, box] : kPairs) {
    enter(dialog_, box, "5");
    control<QToolButton>(control<QWidget>(dialog_, arrows), "Up").click();
    EXPECT_NE(entered(dialog_, box), "5") << box;
  }
}

TEST_F(SearchDialogTest, ShowsTheHourglassWhileItSearches) {
  found_ = {"one.two.three/a"};
  whileSearching_ = [this] { EXPECT_EQ(dialog_.cursor().shape(), Qt::WaitCursor); };
  whileShowing_ = [this] { EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor); };
  press(dialog_, "OKButton");
  EXPECT_EQ(searches_.size(), 1U);
  EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(SearchDialogTest, ShowsWhatWasFoundOnceTheOldResultsAreGone) {
  found_ = {"one.two.three/a", "caf\xE9.fr"};
  enter(dialog_, "Text3", "e");
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_, (Texts{"unload results", "show 2 for url <e> 7/9/26"}));
}

TEST_F(SearchDialogTest, GivesTheKeyboardToTheTextWhenNothingMatches) {
  dialog_.show();
  enter(dialog_, "Text3", "tulip");
  control<QPushButton>(dialog_, "OKButton").setFocus();
  messageBox_.expect("No matches found.", MessageBoxStyle::Information);
  press(dialog_, "OKButton");
  EXPECT_EQ(dialog_.focusWidget(), &control<QLineEdit>(dialog_, "Text3"));
  EXPECT_EQ(control<QLineEdit>(dialog_, "Text3").selectedText(), QStringLiteral("tulip"));
}

TEST_F(SearchDialogTest, LeavesTheKeyboardWhereItIsWhenNoDateMatches) {
  dialog_.show();
  choose(dialog_, "Option2");
  control<QLineEdit>(dialog_, "Text2").setFocus();
  messageBox_.expect("No matches found.", MessageBoxStyle::Information);
  press(dialog_, "OKButton");
  EXPECT_EQ(dialog_.focusWidget(), &control<QLineEdit>(dialog_, "Text2"));
}

TEST_F(SearchDialogTest, StaysOpenForAnotherTryWhenNothingMatches) {
  dialog_.show();
  enter(dialog_, "Text3", "tulip");
  messageBox_.expect("No matches found.", MessageBoxStyle::Information, MessageBoxButton::Ok,
                     [this] {
                       EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor);
                       EXPECT_EQ(steps_, Texts{"unload results"});
                     });
  press(dialog_, "OKButton");
  EXPECT_TRUE(messageBox_.isThrough());
  EXPECT_TRUE(dialog_.isVisible());
  EXPECT_EQ(entered(dialog_, "Text3"), "tulip");
  EXPECT_EQ(steps_, Texts{"unload results"}) << "and nothing is shown";
  found_ = {"one.two.three/a"};
  press(dialog_, "OKButton");
  EXPECT_EQ(steps_.back(), "show 1 for url <tulip> 7/9/26");
}

TEST_F(SearchDialogTest, TellsOfASearchThatFails) {
  constexpr const char* kMemory = "Not enough memory available to process search.";
  constexpr const char* kUnknown = "Unknown error. Unable to process search.";
  const std::pair<int, const char*> kSentences[] = {
      {7, kMemory},   {28, kMemory},  {31001, kMemory},
      {53, kUnknown}, {75, kUnknown}, {9, "Subscript out of range. Unable to process search."},
      {5, kUnknown},  {51, kUnknown}};
  dialog_.show();
  for (const auto& [number, sentence] : kSentences) {
    whileSearching_ = [failing = number] { throw Failure(failing); };
    messageBox_.expect(sentence, MessageBoxStyle::Critical, MessageBoxButton::Ok,
                       [this] { EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor); });
    press(dialog_, "OKButton");
    EXPECT_TRUE(messageBox_.isThrough()) << number;
    EXPECT_TRUE(dialog_.isVisible());
  }
  EXPECT_EQ(steps_, Texts{}) << "the old results stay";
}

TEST_F(SearchDialogTest, TellsOfWhatTheLanguageThrows) {
  whileSearching_ = [] { throw std::bad_alloc(); };
  messageBox_.expect("Not enough memory available to process search.", MessageBoxStyle::Critical);
  press(dialog_, "OKButton");
  whileSearching_ = [] { throw std::out_of_range("index"); };
  messageBox_.expect("Subscript out of range. Unable to process search.",
                     MessageBoxStyle::Critical);
  press(dialog_, "OKButton");
}

TEST_F(SearchDialogTest, TellsOfResultsThatCannotBeShown) {
  dialog_.show();
  found_ = {"one.two.three/a"};
  whileShowing_ = [] { throw Failure(31001); };
  messageBox_.expect("Not enough memory available to process search.", MessageBoxStyle::Critical);
  press(dialog_, "OKButton");
  EXPECT_TRUE(dialog_.isVisible());
}

TEST_F(SearchDialogTest, SearchesWhenEnterIsPressedInABox) {
  dialog_.show();
  found_ = {"one.two.three/a"};
  QTest::keyClick(&control<QLineEdit>(dialog_, "Text3"), Qt::Key_Return);
  EXPECT_EQ(searches_, Texts{"url <> 7/9/26"});
}

TEST_F(SearchDialogTest, ClosesWithoutASearch) {
  dialog_.show();
  press(dialog_, "CancelButton");
  EXPECT_FALSE(dialog_.isVisible());
  dialog_.show();
  QTest::keyClick(&control<QLineEdit>(dialog_, "Text1"), Qt::Key_Escape);
  EXPECT_FALSE(dialog_.isVisible());
  EXPECT_EQ(searches_, Texts{});
}

TEST_F(SearchDialogTest, IsWalkedThroughFromTopToBottom) {
  dialog_.show();
  dialog_.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog_));
  choose(dialog_, "Option3");
  control<QRadioButton>(dialog_, "Option3").setFocus();
  control<QLineEdit>(dialog_, "Text3").setFocus();
  EXPECT_EQ(tabThrough(dialog_),
            (Texts{"Text3", "Text2", "Text1", "Text4", "OKButton", "CancelButton", "Option3"}));
}

TEST_F(SearchDialogTest, GreysWhatDoesNotCountForTheChosenOption) {
  const auto enabled = [this] {
    Texts names;
    for (const char* const name : {"Label4", "Text3", "Label5", "Label6", "Text2", "UpDown2",
                                   "Text1", "UpDown1", "Label7", "Text4", "UpDown3"}) {
      if (control<QWidget>(dialog_, name).isEnabled()) names.emplace_back(name);
    }
    return names;
  };
  const Texts address{"Label4", "Text3"};
  const Texts date{"Label5",  "Label6", "Text2", "UpDown2", "Text1",
                   "UpDown1", "Label7", "Text4", "UpDown3"};
  EXPECT_EQ(enabled(), address);
  choose(dialog_, "Option2");
  EXPECT_EQ(enabled(), date);
  choose(dialog_, "Option3");
  Texts both = address;
  both.insert(both.end(), date.begin(), date.end());
  EXPECT_EQ(enabled(), both);
  choose(dialog_, "Option1");
  EXPECT_EQ(enabled(), address);
}

TEST_F(SearchDialogTest, LeavesTheKeyboardInTheDatePartThatIsWrong) {
  dialog_.show();
  choose(dialog_, "Option2");
  whileSearching_ = [] { throw Failure(13); };
  struct Case {
    const char* month;
    const char* day;
    const char* year;
    const char* wrong;
  };
  for (const Case& each : {Case{"13", "5", "2026", "Text2"}, Case{"may", "5", "2026", "Text2"},
                           Case{"2", "30", "2026", "Text1"}, Case{"2", "", "2026", "Text1"},
                           Case{"12", "32", "2026", "Text1"}, Case{"2", "3", "20", "Text4"},
                           Case{"2", "3", "20xx", "Text4"}}) {
    enter(dialog_, "Text2", each.month);
    enter(dialog_, "Text1", each.day);
    enter(dialog_, "Text4", each.year);
    control<QRadioButton>(dialog_, "Option2").setFocus();
    messageBox_.expect("Unknown error. Unable to process search.", MessageBoxStyle::Critical);
    press(dialog_, "OKButton");
    EXPECT_EQ(dialog_.focusWidget()->objectName().toStdString(), each.wrong);
    EXPECT_TRUE(control<QLineEdit>(dialog_, each.wrong).text().isEmpty() ||
                control<QLineEdit>(dialog_, each.wrong).hasSelectedText());
  }
}

TEST_F(SearchDialogTest, LeavesTheKeyboardWhereItIsWhenTheDateIsNotAtFault) {
  dialog_.show();
  whileSearching_ = [] { throw Failure(13); };
  for (const char* const option : {"Option1", "Option3"}) {
    choose(dialog_, option);
    control<QLineEdit>(dialog_, "Text3").setFocus();
    messageBox_.expect("Unknown error. Unable to process search.", MessageBoxStyle::Critical);
    press(dialog_, "OKButton");
    EXPECT_EQ(dialog_.focusWidget()->objectName().toStdString(), "Text3");
  }
}

TEST_F(SearchDialogTest, MovesBetweenTheOptionsByArrowKeys) {
  dialog_.show();
  dialog_.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog_));
  auto& first = control<QRadioButton>(dialog_, "Option1");
  first.setFocus();
  QTest::keyClick(&first, Qt::Key_Down);
  EXPECT_TRUE(control<QRadioButton>(dialog_, "Option2").isChecked());
  QTest::keyClick(dialog_.focusWidget(), Qt::Key_Down);
  EXPECT_TRUE(control<QRadioButton>(dialog_, "Option3").isChecked());
  EXPECT_FALSE(first.isChecked());
}

TEST_F(SearchDialogTest, NamesEveryBoxForAScreenReader) {
  const std::pair<const char*, const char*> kNames[] = {{"Text3", "Website address contains"},
                                                        {"Text2", "Month"},
                                                        {"Text1", "Day"},
                                                        {"Text4", "Year"}};
  for (const auto& [box, name] : kNames) {
    EXPECT_EQ(control<QLineEdit>(dialog_, box).accessibleName().toStdString(), name);
  }
}

}  // namespace
}  // namespace quorrix
