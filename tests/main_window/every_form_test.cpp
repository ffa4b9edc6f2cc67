// What holds for every window of the program. Each is opened as the user opens it, for a
// site whose address fills its field. The tests run once at normal size and once with
// everything twice as large; see tests/CMakeLists.txt.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QStyleFactory>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <iterator>
#include <ostream>
#include <vector>

#include "main_window/load_wait_dialog.h"
#include "main_window/main_form_stage.h"
#include "main_window/splash_screen.h"
#include "records/record_file_stage.h"
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

// Runs the look on a window, and records that it did.
class Photographer {
 public:
  explicit Photographer(Look look) : look_(std::move(look)) {}

  void take(QWidget& window) {
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    isTaken_ = true;
    look_(window);
  }

  // Takes the next modal window once it is open, then closes it.
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

void ofTheMainWindowWithANotice(MainFormStage& stage, Photographer& photographer) {
  stage.windows.setUnreadable({{"Chromium", UnreadableBrowser::Reason::StartedTooEarly},
                               {"Mozilla Firefox", UnreadableBrowser::Reason::UnknownKind}});
  stage.events.atPump(1, [&] {
    ASSERT_TRUE(control<QWidget>(stage.form, "UnreadableBrowserNotice").isVisible());
    photographer.take(stage.form);
    stage.choose("FileStopTrack");
  });
  stage.track();
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

using Texts = std::vector<std::string>;

struct Form {
  const char* name;
  Opening open;
  Texts texts;  // that the user reads, of labels and buttons, in any order
  Keyboard keyboard = Keyboard::Works;
  Colours colours = Colours::OfThePalette;
};

const std::string kLongName(200, 'f');

void PrintTo(const Form& form, std::ostream* out) { *out << form.name; }

const Form kForms[] = {
    {"MainWindow",
     ofTheMainWindow,
     {"Last archive loaded: /home/" + kLongName, "Right click site address for site menu."}},
    {"MainWindowWithANotice",
     ofTheMainWindowWithANotice,
     {"Close Chromium and start it again to have its pages recorded.\n"
      "Quorrix cannot tell whether a window of Mozilla Firefox is private. Close that window and "
      "open "
      "a new one to have its pages recorded.",
      "Last archive loaded: /home/" + kLongName, "Tracking websites.", "Dismiss"}},
    {"SplashScreen", ofTheSplashScreen, {}, Keyboard::IsOfNoUse, Colours::OfAPicture},
    {"WaitWindow", ofTheWaitWindow, {"Loading data. Please wait..."}, Keyboard::IsOfNoUse},
    {"Message",
     ofAMessage,
     {"Archive current display and associated data to '/" + longAddress() + "'?", "OK", "Cancel"}},
    {"Notes",
     ofACommand<kNotes>,
     {"Enter notes for this website location.", "OK", "Cancel", "Delete"}},
    {"UserIDPassword",
     ofACommand<kPasswords>,
     {"User ID", "Password", "Enter your user ID and password for this website location.", "OK",
      "Cancel", "Delete"}},
    {"NewPurchase",
     ofACommand<kNewPurchase>,
     {"Item", "Price", "Quantity", "Payment \nMethod", "Description", "Date",
      "Enter information about a purchase made on this website location.", "OK", "Cancel",
      "Delete"}},
    {"Purchases",
     ofACommand<kPurchases>,
     {"To view a purchase information record for this web location, select an item from the list, "
      "then click OK.",
      "OK", "Cancel"}},
    {"Search",
     ofTheSearch,
     {"Enter search criteria as necessary and then click OK.", "Website address contains", "Month",
      "Year", "Search on", "Accessed after", "Site address", "Date", "Site address and date", "OK",
      "Cancel"}},
    {"SearchResults",
     ofTheSearchResults,
     {"Select a web site address  from the list below and then click Locate in Display.",
      "Website address contains:", "w", "Accessed after:", "Locate in Display", "New Search",
      "Cancel", "1 found"}},
    {"ArchiveSites",
     ofACommand<kArchive>,
     {"Open the folder to archive the current display and its data to, or make a new one, and "
      "then click OK.",
      "Drive", "Folder", "Files", "Archive folder", "OK", "Cancel", "New"}},
    {"NewArchive",
     ofANewArchive,
     {"Open the folder to make the new one in, enter its name and then click OK.", "Drive",
      "Folder", "Name of the new folder", "OK", "Cancel"}},
    {"LoadSitesArchive",
     ofACommand<kLoadArchive>,
     {"Open the folder of the archive to load and then click OK.", "Drive", "Folder", "Files",
      "Archive folder", "OK", "Cancel"}},
    {"DeleteSitesArchive",
     ofACommand<kDeleteArchive>,
     {"Open the folder to delete the archive files from and then click OK.", "Drive", "Folder",
      "Files", "Archive folder", "OK", "Cancel"}},
    {"Help", ofTheHelp, {"Find", "Back", "Forward", "Next", "Previous"}},
    {"About",
     ofACommand<kAbout>,
     {"Quorrix", "Version 1.0.0", "Stores text in code page 1252 (Western).",
      "Made with Qt " + std::string(qVersion()) +
          ", which is used under the GNU Lesser General\nPublic License, version 3. The manual "
          "names "
          "what else is\ninside, and where the licences are.",
      "OK"}},
};

// All forms except those that leave the main window usable.
const std::vector<std::string> kModalForms = {
    "Message",      "Notes",      "UserIDPassword",   "NewPurchase",        "Purchases",
    "ArchiveSites", "NewArchive", "LoadSitesArchive", "DeleteSitesArchive", "About"};

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
    stage_.memory.givenAFolder("/Quorrix/Archives/" + kLongName);
    stage_.memory.givenAFile("/Quorrix/Quorrix.hlp",
                             "<h1 id=\"top\">Quorrix</h1><h2 id=\"a\">Tracking</h2><p>Text.</p>");
    stage_.givenAnInstalledProgram(test::siteRecord(longAddress(), 'N'),
                                   "/home/" + kLongName + "\r\n");
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

class EveryModalForm : public EveryForm {};
class EveryFormInThePalette : public EveryForm {};    // all that use the palette's colours
class EveryFormForTheKeyboard : public EveryForm {};  // all that have something to operate

std::string sentences(const QStringList& faults) {
  return faults.join(QLatin1Char('\n')).toStdString();
}

TEST_P(EveryForm, CutsNothingOffAndOverlapsNothing) {
  lookAt([](QWidget& window) { EXPECT_EQ(sentences(test::faultsOfLayout(window)), ""); });
}

TEST_P(EveryForm, IsArrangedInTheOrderOfReading) {
  lookAt([](QWidget& window) { EXPECT_EQ(sentences(test::faultsOfArrangement(window)), ""); });
}

template <typename Widget>
void collectTexts(const QWidget& window, Texts& texts) {
  for (const Widget* const widget : window.findChildren<Widget*>()) {
    if (!widget->isVisible() || widget->text().isEmpty()) continue;
    texts.push_back(widget->text().remove(QLatin1Char('&')).toStdString());
  }
}

TEST_P(EveryForm, ShowsItsTexts) {
  lookAt([](QWidget& window) {
    Texts shown;
    collectTexts<QLabel>(window, shown);
    collectTexts<QAbstractButton>(window, shown);
    Texts expected = GetParam().texts;
    // Whether their positions are right is for a person to judge.
    std::ranges::sort(shown);
    std::ranges::sort(expected);
    EXPECT_EQ(shown, expected);
  });
}

// The search results stay on top of other windows, and take no clicks while a modal
// window is open.
TEST_P(EveryModalForm, LiesInFrontOfTheSearchResults) {
  QWidget& search = openedSearch(stage_);
  control<QLineEdit>(search, "Text3").setText(QStringLiteral("w"));
  control<QPushButton>(search, "OKButton").click();
  ASSERT_NE(test::openWindow(QStringLiteral("SearchResultsDialog")), nullptr);
  lookAt([](QWidget& window) {
    EXPECT_TRUE(window.isModal());
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
  });
}

TEST_P(EveryFormInThePalette, CanBeReadInLightColours) {
  lookAt([](QWidget& window) { EXPECT_EQ(sentences(test::faultsOfColour(window)), ""); });
}

TEST_P(EveryFormInThePalette, CanBeReadInDarkColours) {
  QApplication::setPalette(darkPalette());
  lookAt([](QWidget& window) { EXPECT_EQ(sentences(test::faultsOfColour(window)), ""); });
}

TEST_P(EveryFormForTheKeyboard, IsWalkedThroughByTabAndNamesEachStop) {
  lookAt([](QWidget& window) { EXPECT_EQ(sentences(test::faultsOfTabOrder(window)), ""); });
}

std::vector<Form> formsWhere(bool (*isMeant)(const Form&)) {
  std::vector<Form> forms;
  std::copy_if(std::begin(kForms), std::end(kForms), std::back_inserter(forms), isMeant);
  return forms;
}

std::string nameOf(const testing::TestParamInfo<Form>& form) { return form.param.name; }

INSTANTIATE_TEST_SUITE_P(Is, EveryForm, testing::ValuesIn(kForms), nameOf);

INSTANTIATE_TEST_SUITE_P(Is, EveryModalForm, testing::ValuesIn(formsWhere([](const Form& form) {
                           return std::ranges::find(kModalForms, form.name) != kModalForms.end();
                         })),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(Is, EveryFormInThePalette,
                         testing::ValuesIn(formsWhere([](const Form& form) {
                           return form.colours == Colours::OfThePalette;
                         })),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(Is, EveryFormForTheKeyboard,
                         testing::ValuesIn(formsWhere([](const Form& form) {
                           return form.keyboard == Keyboard::Works;
                         })),
                         nameOf);

// --- Commands -----------------------------------------------------------------------

// Checks the letters that choose the entries of a menu and of its submenus. An entry
// without a letter is a fault, and so is a letter used twice in one menu.
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
