// What holds for every window of the program, opened as the user opens it, for a site
// whose address fills its field. Run once as it is and once with everything twice as
// large; see tests/CMakeLists.txt.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QStyleFactory>
#include <QTest>
#include <QTimer>
#include <functional>
#include <ostream>

#include "records/record_file_stage.h"
#include "shell/main_window/load_wait_dialog.h"
#include "shell/main_window/main_form_stage.h"
#include "shell/main_window/splash_screen.h"
#include "shell/qt_message_box.h"
#include "support/form_looks.h"

namespace quorrix {
namespace {

using test::MainFormStage;

using Look = std::function<void(QWidget&)>;

// 300 characters, in four levels.
std::string longAddress() {
  std::string address = "www." + std::string(60, 'w') + ".example/" + std::string(100, 'a') + "/";
  return address + std::string(300 - address.size(), 'b');
}

template <typename Widget>
Widget& control(QWidget& window, const char* name) {
  return *window.findChild<Widget*>(QString::fromLatin1(name));
}

// Whether the look was had, and the window closed after it.
class Photographer {
 public:
  explicit Photographer(Look look) : look_(std::move(look)) {}

  void take(QWidget& window) {
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    isTaken_ = true;
    look_(window);
  }

  // The next modal window, once it is open; it is closed then.
  void takeNextModal() {
    QTimer::singleShot(0, qApp, [this] {
      QWidget* const window = QApplication::activeModalWidget();
      ASSERT_NE(window, nullptr);
      take(*window);
      window->close();
    });
  }

  [[nodiscard]] bool isTaken() const { return isTaken_; }

 private:
  Look look_;
  bool isTaken_ = false;
};

using Opening = void (*)(MainFormStage&, Photographer&);

void ofTheMainWindow(MainFormStage& stage, Photographer& photographer) {
  photographer.take(stage.form);
}

void ofTheSplashScreen(MainFormStage& /*stage*/, Photographer& photographer) {
  SplashScreen window;
  window.show();
  photographer.take(window);
}

void ofTheWaitWindow(MainFormStage& stage, Photographer& photographer) {
  LoadWaitDialog window(stage.form);
  window.show();
  photographer.take(window);
}

void ofAMessage(MainFormStage& /*stage*/, Photographer& photographer) {
  photographer.takeNextModal();
  QtMessageBox().show("Archive current display and associated data to '/" + longAddress() + "'?",
                      MessageBoxStyle::ConfirmQuestion);
}

template <const char* kCommand>
void ofACommand(MainFormStage& stage, Photographer& photographer) {
  photographer.takeNextModal();
  stage.choose(kCommand);
}

constexpr char kAbout[] = "HelpAbout";
constexpr char kArchive[] = "FileArchive";
constexpr char kLoadArchive[] = "FileLoadArchive";
constexpr char kDeleteArchive[] = "FileDeleteArchive";
constexpr char kNotes[] = "PopUpNotes";
constexpr char kPasswords[] = "PopUpPasswords";
constexpr char kNewPurchase[] = "PopUpNewPurchase";
constexpr char kPurchases[] = "PopUpPurchases";

void ofANewArchive(MainFormStage& stage, Photographer& photographer) {
  QTimer::singleShot(0, qApp, [&photographer] {
    QWidget& archive = *QApplication::activeModalWidget();
    photographer.takeNextModal();
    control<QPushButton>(archive, "NewButton").click();
    archive.close();
  });
  stage.choose("FileArchive");
}

QWidget& openedSearch(MainFormStage& stage) {
  stage.choose("FileSearch");
  return *test::openWindow(QStringLiteral("SearchDialog"));
}

void ofTheSearch(MainFormStage& stage, Photographer& photographer) {
  photographer.take(openedSearch(stage));
}

void ofTheSearchResults(MainFormStage& stage, Photographer& photographer) {
  QWidget& search = openedSearch(stage);
  control<QLineEdit>(search, "Text3").setText(QStringLiteral("w"));
  control<QPushButton>(search, "OKButton").click();
  QCoreApplication::processEvents();
  photographer.take(*test::openWindow(QStringLiteral("SearchResultsDialog")));
}

void ofTheHelp(MainFormStage& stage, Photographer& photographer) {
  stage.choose("HelpHelp");
  photographer.take(*test::openWindow(QStringLiteral("HelpWindow")));
}

enum class Keyboard { Works, IsOfNoUse };
enum class Colours { OfThePalette, OfAPicture };

struct Form {
  const char* name;
  Opening open;
  Keyboard keyboard = Keyboard::Works;
  Colours colours = Colours::OfThePalette;
};

void PrintTo(const Form& form, std::ostream* out) { *out << form.name; }

constexpr Form kForms[] = {
    {"MainWindow", ofTheMainWindow},
    {"SplashScreen", ofTheSplashScreen, Keyboard::IsOfNoUse, Colours::OfAPicture},
    {"WaitWindow", ofTheWaitWindow, Keyboard::IsOfNoUse},
    {"Message", ofAMessage},
    {"Notes", ofACommand<kNotes>},
    {"UserIDPassword", ofACommand<kPasswords>},
    {"NewPurchase", ofACommand<kNewPurchase>},
    {"Purchases", ofACommand<kPurchases>},
    {"Search", ofTheSearch},
    {"SearchResults", ofTheSearchResults},
    {"ArchiveSites", ofACommand<kArchive>},
    {"NewArchive", ofANewArchive},
    {"LoadSitesArchive", ofACommand<kLoadArchive>},
    {"DeleteSitesArchive", ofACommand<kDeleteArchive>},
    {"Help", ofTheHelp},
    {"About", ofACommand<kAbout>},
};

QPalette darkPalette() {
  QPalette palette(QColor(45, 45, 48));
  palette.setColor(QPalette::Base, QColor(30, 30, 30));
  palette.setColor(QPalette::Text, Qt::white);
  palette.setColor(QPalette::WindowText, Qt::white);
  palette.setColor(QPalette::ButtonText, Qt::white);
  palette.setColor(QPalette::Link, QColor(130, 180, 255));
  return palette;
}

class EveryForm : public testing::TestWithParam<Form> {
 protected:
  EveryForm() {
    stage_.memory.givenAFolder("/Quorrix/Archives/" + std::string(200, 'f'));
    stage_.memory.givenAFile("/Quorrix/Quorrix.hlp",
                             "<h1 id=\"top\">Quorrix</h1><h2 id=\"a\">Tracking</h2><p>Text.</p>");
    stage_.givenAnInstalledProgram(test::siteRecord(longAddress(), 'N'),
                                   "/home/" + std::string(200, 'f') + "\r\n");
    stage_.memory.givenAFile("/Quorrix/Data/purchases.dat", test::purchaseRecord(longAddress()));
    EXPECT_TRUE(stage_.form.Form_Load());
    stage_.form.tree().select(stage_.node(longAddress()));
    stage_.form.TreeView_MouseUp(mouse_button::kLeft, 0, 0, 0);
    stage_.popupMenu().setSiteSelected(true);
  }

  ~EveryForm() override { QApplication::setPalette(palette_); }

  void lookAt(const Look& look) {
    Photographer photographer(look);
    GetParam().open(stage_, photographer);
    EXPECT_TRUE(photographer.isTaken());
  }

  const QPalette palette_ = QApplication::palette();
  MainFormStage stage_;
};

std::string sentences(const QStringList& faults) {
  return faults.join(QLatin1Char('\n')).toStdString();
}

TEST_P(EveryForm, CutsNothingOffAndOverlapsNothing) {
  lookAt([](QWidget& window) { EXPECT_EQ(sentences(test::faultsOfLayout(window)), ""); });
}

TEST_P(EveryForm, CanBeReadInLightColours) {
  if (GetParam().colours == Colours::OfAPicture) GTEST_SKIP() << "a picture has its own colours";
  lookAt([](QWidget& window) { EXPECT_EQ(sentences(test::faultsOfColour(window)), ""); });
}

TEST_P(EveryForm, CanBeReadInDarkColours) {
  if (GetParam().colours == Colours::OfAPicture) GTEST_SKIP() << "a picture has its own colours";
  QApplication::setPalette(darkPalette());
  lookAt([](QWidget& window) { EXPECT_EQ(sentences(test::faultsOfColour(window)), ""); });
}

TEST_P(EveryForm, IsWalkedThroughByTabAndNamesEachStop) {
  if (GetParam().keyboard == Keyboard::IsOfNoUse) GTEST_SKIP() << "there is nothing to do in it";
  lookAt([](QWidget& window) { EXPECT_EQ(sentences(test::faultsOfTabOrder(window)), ""); });
}

INSTANTIATE_TEST_SUITE_P(Is, EveryForm, testing::ValuesIn(kForms),
                         [](const testing::TestParamInfo<Form>& form) {
                           return std::string(form.param.name);
                         });

// --- Commands -----------------------------------------------------------------------

// The letters that choose an entry, of a menu and of what opens from it; an entry
// without one, and a letter twice, is a fault.
void collectMnemonicFaults(const QList<QAction*>& entries, QStringList& faults) {
  QString letters;
  for (const QAction* const entry : entries) {
    if (entry->isSeparator()) continue;
    const auto mark = entry->text().indexOf(QLatin1Char('&'));
    const QChar letter = mark < 0 ? QChar() : entry->text().at(mark + 1).toLower();
    if (letter.isNull()) faults += entry->text() + QStringLiteral(" has no letter");
    if (letters.contains(letter)) faults += entry->text() + QStringLiteral(" shares its letter");
    letters += letter;
    if (entry->menu() != nullptr) collectMnemonicFaults(entry->menu()->actions(), faults);
  }
}

TEST(EveryCommand, OfTheMenuBarHasALetterOfItsOwn) {
  MainFormStage stage;
  QStringList faults;
  collectMnemonicFaults(stage.form.menuBar()->actions(), faults);
  EXPECT_EQ(sentences(faults), "");
}

}  // namespace
}  // namespace quorrix
