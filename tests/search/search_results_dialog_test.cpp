#include "search/search_results_dialog.h"

#include <QLocale>
#include <stdexcept>

#include "platform/failure.h"
#include "search/search_stage.h"
#include "shell/plain_text.h"
#include "support/code_pages.h"

namespace quorrix {
namespace {

using Texts = std::vector<std::string>;

class SearchResultsDialogTest : public test::SearchStage {
 protected:
  SearchResultsDialog::Parts parts() {
    return {.codePage = test::westernCodePage(),
            .tree = tree_,
            .messageBox = messageBox_,
            .mainWindow = mainWindow_,
            .locate =
                [this](NodeId node) {
                  located_.emplace_back(tree_.key(node));
                  if (whileLocating_) whileLocating_();
                  tree_.select(node);
                },
            .describe =
                [](const std::string& address) {
                  return QStringLiteral("about ") + toQString(test::westernCodePage(), address);
                },
            .withScheme = QString::fromStdString,
            .newSearch = [this] { ++newSearches_; }};
  }

  void load(const Texts& addresses) {
    dialog_.Form_Load({UserSearchType::Url, "e", "7/9/26"}, addresses);
    dialog_.show();
  }

  void locate(int entry) {
    selectRow(dialog_, entry);
    press(dialog_, "OKButton");
  }

  std::string selected() { return std::string(tree_.key(tree_.selected())); }

  Texts listed() {
    const QAbstractItemModel& model = *control<QListView>(dialog_, "List1").model();
    Texts texts;
    for (int row = 0; row < model.rowCount(); ++row)
      texts.push_back(model.index(row, 0).data().toString().toStdString());
    return texts;
  }

  Texts located_;
  std::function<void()> whileLocating_;
  int newSearches_ = 0;
  SearchResultsDialog dialog_{parts()};
};

TEST_F(SearchResultsDialogTest, ShowsItsCaptions) {
  EXPECT_EQ(dialog_.windowTitle(), QStringLiteral("Search Results"));
  EXPECT_EQ(captionOf(dialog_, "Label1"),
            "Select a web site address  from the list below and then click Locate in Display.");
  EXPECT_EQ(captionOf(dialog_, "Label3"), "Website address contains:");
  EXPECT_EQ(captionOf(dialog_, "Label5"), "Accessed after:");
  EXPECT_EQ(captionOfButton(dialog_, "OKButton"), "Locate in Display");
  EXPECT_EQ(captionOfButton(dialog_, "NewSearchButton"), "New Search");
  EXPECT_EQ(captionOfButton(dialog_, "CancelButton"), "Cancel");
}

TEST_F(SearchResultsDialogTest, ShowsEachCriterionBesideItsName) {
  dialog_.Form_Load({UserSearchType::Both, "e", "7/9/26"}, {});
  dialog_.show();
  const auto placeOf = [this](const char* label) {
    return control<QLabel>(dialog_, label).geometry();
  };
  EXPECT_EQ(placeOf("Label4").center().y(), placeOf("Label3").center().y());
  EXPECT_EQ(placeOf("Label6").center().y(), placeOf("Label5").center().y());
  EXPECT_EQ(placeOf("Label6").left(), placeOf("Label4").left());
}

TEST_F(SearchResultsDialogTest, StaysInFrontAndLetsTheUserGoOnInTheMainWindow) {
  dialog_.show();
  EXPECT_TRUE(dialog_.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
  EXPECT_FALSE(dialog_.isModal());
}

TEST_F(SearchResultsDialogTest, OpensInTheCornerOfTheScreen) {
  load({"one.two.three/a"});
  EXPECT_EQ(dialog_.frameGeometry(), QRect(0, 0, 420, 235));
}

TEST_F(SearchResultsDialogTest, ShowsTheDateUnlessOnlyTheAddressWasSearched) {
  dialog_.Form_Load({UserSearchType::Url, "wick", "11/16/99"}, {});
  EXPECT_EQ(captionOf(dialog_, "Label4"), "wick");
  EXPECT_EQ(captionOf(dialog_, "Label6"), "");
  for (const UserSearchType type : {UserSearchType::Date, UserSearchType::Both}) {
    SearchResultsDialog dialog(parts());
    dialog.Form_Load({type, "caf\u00e9 \u0101", "11/16/99"}, {});
    EXPECT_EQ(captionOf(dialog, "Label4"), "caf\u00e9 \u0101");
    EXPECT_EQ(captionOf(dialog, "Label6"), "11/16/99");
  }
}

TEST_F(SearchResultsDialogTest, ListsWhatWasFoundInItsOrderAndAsOftenAsItWasFound) {
  load({"one.two.three/a", "caf\xE9.fr", "one.two.three/a", "<b>&a</b>"});
  EXPECT_EQ(listed(), (Texts{"one.two.three/a", "caf\u00e9.fr", "one.two.three/a", "<b>&a</b>"}));
}

TEST_F(SearchResultsDialogTest, DescribesAnAddressInItsToolTip) {
  load({"one.two.three/a", "caf\xE9.fr"});
  const QAbstractItemModel& model = *control<QListView>(dialog_, "List1").model();
  EXPECT_TRUE(model.index(1, 0)
                  .data(Qt::ToolTipRole)
                  .toString()
                  .contains(QStringLiteral("about caf\u00e9.fr")));
}

TEST_F(SearchResultsDialogTest, TellsHowManyThereAre) {
  load({"one.two.three/a"});
  EXPECT_EQ(captionOf(dialog_, "Count"), "1 found");
  load(Texts(12345, "one.two.three/a"));
  EXPECT_EQ(captionOf(dialog_, "Count"), QLocale().toString(12345).toStdString() + " found");
}

TEST_F(SearchResultsDialogTest, AsksForASelection) {
  load({"one.two.three/a"});
  messageBox_.expect("You must select an item from the list.", MessageBoxStyle::SystemModal);
  press(dialog_, "OKButton");
  EXPECT_EQ(located_, Texts{});
  EXPECT_EQ(selected(), "ROOT");
  EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor);
  EXPECT_TRUE(dialog_.isVisible());
}

// Moving to the list by keyboard makes its first entry current, but selects nothing.
TEST_F(SearchResultsDialogTest, AsksForASelectionWhenTheListHasTheFocus) {
  load({"one.two.three/a"});
  auto& list = control<QListView>(dialog_, "List1");
  list.selectionModel()->setCurrentIndex(list.model()->index(0, 0), QItemSelectionModel::NoUpdate);
  messageBox_.expect("You must select an item from the list.", MessageBoxStyle::SystemModal);
  press(dialog_, "OKButton");
  EXPECT_EQ(selected(), "ROOT");
}

TEST_F(SearchResultsDialogTest, LocatesOneResultAfterAnother) {
  load({"one.two.three/a", "caf\xE9.fr"});
  whileLocating_ = [this] { EXPECT_EQ(dialog_.cursor().shape(), Qt::WaitCursor); };
  locate(0);
  EXPECT_EQ(selected(), "one.two.three/a");
  EXPECT_TRUE(dialog_.isVisible());
  EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor);
  locate(1);
  EXPECT_EQ(selected(), "caf\xE9.fr");
  EXPECT_EQ(located_, (Texts{"one.two.three/a", "caf\xE9.fr"}));
}

TEST_F(SearchResultsDialogTest, LocatesTheSameSiteFromBothOfItsEntries) {
  load({"one.two.three/a", "caf\xE9.fr", "one.two.three/a"});
  locate(0);
  tree_.select(tree_.root());
  locate(2);
  EXPECT_EQ(selected(), "one.two.three/a");
  EXPECT_EQ(located_, (Texts{"one.two.three/a", "one.two.three/a"}));
}

TEST_F(SearchResultsDialogTest, TellsOfASiteThatIsNoLongerThere) {
  load({"deleted.example/a", "caf\xE9.fr"});
  messageBox_.expect("Unable to find site in display.", MessageBoxStyle::Critical,
                     MessageBoxButton::Ok,
                     [this] { EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor); });
  locate(0);
  EXPECT_EQ(located_, Texts{});
  EXPECT_EQ(selected(), "ROOT");
  EXPECT_TRUE(dialog_.isVisible());
  locate(1);
  EXPECT_EQ(selected(), "caf\xE9.fr");
}

TEST_F(SearchResultsDialogTest, TellsTheSameOfEveryFailure) {
  load({"one.two.three/a"});
  for (const int number : {5, 7, 9, 28, 53, 61, 75, 31001, 35601}) {
    whileLocating_ = [number] { throw Failure(number); };
    messageBox_.expect("Unable to find site in display.", MessageBoxStyle::Critical);
    locate(0);
    EXPECT_TRUE(messageBox_.isThrough()) << number;
    EXPECT_EQ(selected(), "ROOT");
    EXPECT_EQ(dialog_.cursor().shape(), Qt::ArrowCursor);
    EXPECT_TRUE(dialog_.isVisible());
  }
}

TEST_F(SearchResultsDialogTest, LocatesByDoubleClickAndByEnter) {
  load({"one.two.three/a", "caf\xE9.fr"});
  auto& list = control<QListView>(dialog_, "List1");
  const QPoint second = list.visualRect(list.model()->index(1, 0)).center();
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, second);
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, second);
  EXPECT_EQ(selected(), "caf\xE9.fr");
  selectRow(dialog_, 0);
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_EQ(selected(), "one.two.three/a");
}

TEST_F(SearchResultsDialogTest, GivesWayToANewSearch) {
  load({"one.two.three/a"});
  press(dialog_, "NewSearchButton");
  EXPECT_EQ(newSearches_, 1);
}

TEST_F(SearchResultsDialogTest, ClosesByCancelAndEscape) {
  load({"one.two.three/a"});
  press(dialog_, "CancelButton");
  EXPECT_FALSE(dialog_.isVisible());
  dialog_.show();
  QTest::keyClick(&control<QListView>(dialog_, "List1"), Qt::Key_Escape);
  EXPECT_FALSE(dialog_.isVisible());
}

TEST_F(SearchResultsDialogTest, IsWalkedThroughFromTopToBottom) {
  load({"one.two.three/a"});
  EXPECT_EQ(tabThrough(dialog_), (Texts{"List1", "OKButton", "NewSearchButton", "CancelButton"}));
}

TEST_F(SearchResultsDialogTest, KeepsItsSizeWithALongSearchText) {
  dialog_.Form_Load({UserSearchType::Both, std::string(5000, 'w'), std::string(5000, '1')}, {});
  dialog_.show();
  EXPECT_EQ(dialog_.frameGeometry(), QRect(0, 0, 420, 235));
}

}  // namespace
}  // namespace quorrix
