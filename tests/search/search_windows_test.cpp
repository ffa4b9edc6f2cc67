#include "search/search_windows.h"

#include <QApplication>
#include <new>

#include "platform/failure.h"
#include "search/search_stage.h"
#include "support/code_pages.h"

namespace quorrix {
namespace {

using Texts = std::vector<std::string>;

// A clock that fails when it is asked for the time.
class BrokenClock final : public Clock {
 public:
  [[nodiscard]] LocalDateTime now() override { throw Failure(number); }
  [[nodiscard]] std::chrono::milliseconds elapsed() override { return {}; }
  int number = 0;
};

class SearchWindowsTest : public test::SearchStage {
 protected:
  SearchWindows::Parts parts(Clock& clock) {
    return {.codePage = test::westernCodePage(),
            .tree = tree_,
            .clock = clock,
            .messageBox = messageBox_,
            .mainWindow = mainWindow_,
            .search = search(),
            .locate = [this](NodeId node) { located_.emplace_back(tree_.key(node)); },
            .describe = {},
            .withScheme = {}};
  }

  // The visible dialogs with this name. Dialogs that were unloaded are really deleted
  // first.
  static std::vector<QWidget*> open(const char* name) {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    std::vector<QWidget*> windows;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      if (window->objectName() == QLatin1String(name) && window->isVisible()) {
        windows.push_back(window);
      }
    }
    return windows;
  }

  // The number of loaded dialogs with this name, including hidden ones.
  std::size_t loaded(const char* name) {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return static_cast<std::size_t>(
        mainWindow_.findChildren<QDialog*>(QString::fromLatin1(name)).size());
  }

  static QWidget& theOne(const char* name) {
    const auto windows = open(name);
    if (windows.size() != 1) throw std::logic_error(std::string("not one open ") + name);
    return *windows.front();
  }
  static QWidget& searchDialog() { return theOne("SearchDialog"); }
  static QWidget& results() { return theOne("SearchResultsDialog"); }

  static std::size_t searchesOpen() { return open("SearchDialog").size(); }
  static std::size_t resultsOpen() { return open("SearchResultsDialog").size(); }

  void searchFor(const char* text) {
    enter(searchDialog(), "Text3", text);
    press(searchDialog(), "OKButton");
  }

  void givenResults() {
    found_ = {"one.two.three/a"};
    windows_->openSearch();
    searchFor("one");
  }

  Texts located_;
  std::unique_ptr<SearchWindows> windows_ = std::make_unique<SearchWindows>(parts(clock_));
};

TEST_F(SearchWindowsTest, OpensTheSearchDialogOverTheMainWindow) {
  windows_->openSearch();
  const QPoint apart =
      searchDialog().frameGeometry().center() - mainWindow_.frameGeometry().center();
  EXPECT_LE(apart.manhattanLength(), 2);
  EXPECT_EQ(entered(searchDialog(), "Text4"), "2026");
}

TEST_F(SearchWindowsTest, BringsUpTheSearchDialogThatIsOpenAsItIs) {
  windows_->openSearch();
  enter(searchDialog(), "Text3", "wick");
  searchDialog().showMinimized();
  windows_->openSearch();
  EXPECT_EQ(entered(searchDialog(), "Text3"), "wick");
  EXPECT_FALSE(searchDialog().isMinimized());
  EXPECT_EQ(loaded("SearchDialog"), 1U);
}

TEST_F(SearchWindowsTest, StartsAnewAfterCancel) {
  windows_->openSearch();
  enter(searchDialog(), "Text3", "wick");
  press(searchDialog(), "CancelButton");
  EXPECT_EQ(loaded("SearchDialog"), 0U);
  clock_.set({.year = 2027, .month = 1, .day = 2});
  windows_->openSearch();
  EXPECT_EQ(entered(searchDialog(), "Text3"), "");
  EXPECT_EQ(entered(searchDialog(), "Text4"), "2027");
}

TEST_F(SearchWindowsTest, ShowsTheResultsInTheCornerInsteadOfTheSearchDialog) {
  found_ = {"one.two.three/a", "caf\xE9.fr"};
  windows_->openSearch();
  choose(searchDialog(), "Option3");
  searchFor("e");
  EXPECT_EQ(loaded("SearchDialog"), 0U);
  EXPECT_EQ(results().frameGeometry(), QRect(0, 0, 511, 220));
  EXPECT_EQ(captionOf(results(), "Label4"), "e");
  EXPECT_EQ(captionOf(results(), "Label6"), "7/9/26");
  EXPECT_EQ(control<QListView>(results(), "List1").model()->rowCount(), 2);
}

TEST_F(SearchWindowsTest, LocatesInTheTree) {
  givenResults();
  selectRow(results(), 0);
  press(results(), "OKButton");
  EXPECT_EQ(located_, Texts{"one.two.three/a"});
}

TEST_F(SearchWindowsTest, ReplacesTheResultsByThoseOfANewSearch) {
  givenResults();
  windows_->openSearch();
  EXPECT_EQ(resultsOpen(), 1U) << "until the search has run";
  found_ = {"caf\xE9.fr"};
  searchFor("caf");
  EXPECT_EQ(captionOf(results(), "Label4"), "caf");
  EXPECT_EQ(control<QListView>(results(), "List1").model()->rowCount(), 1);
  EXPECT_EQ(loaded("SearchResultsDialog"), 1U);
}

TEST_F(SearchWindowsTest, UnloadsTheResultsWhenANewSearchFindsNothing) {
  givenResults();
  windows_->openSearch();
  found_ = {};
  messageBox_.expect("No matches found.", MessageBoxStyle::Information, MessageBoxButton::Ok,
                     [] { EXPECT_EQ(resultsOpen(), 0U); });
  searchFor("tulip");
  EXPECT_EQ(loaded("SearchResultsDialog"), 0U);
  EXPECT_EQ(searchesOpen(), 1U);
}

TEST_F(SearchWindowsTest, KeepsTheResultsWhenANewSearchFails) {
  givenResults();
  windows_->openSearch();
  whileSearching_ = [] { throw Failure(75); };
  messageBox_.expect("Unknown error. Unable to process search.", MessageBoxStyle::Critical);
  searchFor("tulip");
  EXPECT_EQ(captionOf(results(), "Label4"), "one");
  EXPECT_EQ(searchesOpen(), 1U);
}

TEST_F(SearchWindowsTest, HidesTheResultsForANewSearch) {
  givenResults();
  press(results(), "NewSearchButton");
  EXPECT_EQ(resultsOpen(), 0U);
  EXPECT_EQ(entered(searchDialog(), "Text3"), "");
  found_ = {"caf\xE9.fr"};
  searchFor("caf");
  EXPECT_EQ(captionOf(results(), "Label4"), "caf");
  EXPECT_EQ(loaded("SearchResultsDialog"), 1U);
}

TEST_F(SearchWindowsTest, LeavesNothingOpenAfterANewSearchThatIsCancelled) {
  givenResults();
  press(results(), "NewSearchButton");
  press(searchDialog(), "CancelButton");
  EXPECT_EQ(searchesOpen() + resultsOpen(), 0U);
}

TEST_F(SearchWindowsTest, UnloadsTheResultsOnCancel) {
  givenResults();
  press(results(), "CancelButton");
  EXPECT_EQ(loaded("SearchResultsDialog"), 0U);
}

TEST_F(SearchWindowsTest, UnloadsADialogThatIsClosedByItsFrame) {
  givenResults();
  windows_->openSearch();
  results().close();
  searchDialog().close();
  EXPECT_EQ(loaded("SearchResultsDialog"), 0U);
  EXPECT_EQ(loaded("SearchDialog"), 0U);
}

TEST_F(SearchWindowsTest, TellsOfASearchDialogThatCannotOpen) {
  constexpr const char* kMemory = "Not enough memory available to open Search Display window.";
  constexpr const char* kUnknown = "Unknown error. Unable to open Search Display window.";
  const std::pair<int, const char*> kSentences[] = {{7, kMemory},  {28, kMemory}, {31001, kMemory},
                                                    {6, kUnknown}, {9, kUnknown}, {53, kUnknown}};
  BrokenClock clock;
  SearchWindows windows(parts(clock));
  for (const auto& [number, sentence] : kSentences) {
    clock.number = number;
    messageBox_.expect(sentence, MessageBoxStyle::Critical);
    windows.openSearch();
    EXPECT_TRUE(messageBox_.isThrough()) << number;
    EXPECT_EQ(loaded("SearchDialog"), 0U);
  }
}

TEST_F(SearchWindowsTest, UnloadsBothWhenTheMainWindowGoes) {
  givenResults();
  windows_->openSearch();
  windows_->unloadAll();
  EXPECT_EQ(loaded("SearchDialog"), 0U);
  EXPECT_EQ(loaded("SearchResultsDialog"), 0U);
}

TEST_F(SearchWindowsTest, UnloadsResultsThatAreHiddenForANewSearch) {
  givenResults();
  press(results(), "NewSearchButton");
  windows_->unloadAll();
  EXPECT_EQ(loaded("SearchResultsDialog"), 0U);
}

TEST_F(SearchWindowsTest, TakesBothAlongWhenItEnds) {
  givenResults();
  windows_->openSearch();
  ASSERT_EQ(loaded("SearchDialog") + loaded("SearchResultsDialog"), 2U);
  windows_.reset();
  EXPECT_EQ(mainWindow_.findChildren<QDialog*>().size(), 0);
}

TEST_F(SearchWindowsTest, MayOutliveTheMainWindow) {
  auto mainWindow = std::make_unique<QWidget>();
  SearchWindows windows({.codePage = test::westernCodePage(),
                         .tree = tree_,
                         .clock = clock_,
                         .messageBox = messageBox_,
                         .mainWindow = *mainWindow,
                         .search = search(),
                         .locate = [](NodeId) {},
                         .describe = {},
                         .withScheme = {}});
  windows.openSearch();
  EXPECT_EQ(searchesOpen(), 1U);
  mainWindow.reset();
  EXPECT_EQ(searchesOpen(), 0U);
}

// The session may end the program while a message box waits for an answer.
TEST_F(SearchWindowsTest, SurvivesItsEndUnderAnOpenMessageBox) {
  windows_->openSearch();
  messageBox_.expect("No matches found.", MessageBoxStyle::Information, MessageBoxButton::Ok,
                     [this] {
                       windows_->unloadAll();
                       EXPECT_EQ(loaded("SearchDialog"), 0U);
                     });
  searchFor("tulip");
  EXPECT_EQ(searchesOpen(), 0U);
}

TEST_F(SearchWindowsTest, ClosesWithAllWindows) {
  givenResults();
  windows_->openSearch();
  QApplication::closeAllWindows();
  EXPECT_EQ(loaded("SearchDialog"), 0U);
  EXPECT_EQ(loaded("SearchResultsDialog"), 0U);
}

}  // namespace
}  // namespace quorrix
