#include "shell/plain_text.h"

#include <gtest/gtest.h>

#include <QWidget>
#include <QWindow>

#include "support/code_pages.h"
#include "support/qt_printers.h"

namespace quorrix {
namespace {

TEST(ToQString, ReadsSingleByteText) {
  EXPECT_EQ(toQString(test::westernCodePage(), "one.two.three/a"),
            QStringLiteral("one.two.three/a"));
  EXPECT_EQ(toQString(test::westernCodePage(), "caf\xe9"), QStringLiteral("caf\u00e9"));
  EXPECT_EQ(toQString(test::westernCodePage(), "\x80 \x97 \x99"),
            QStringLiteral("\u20ac \u2014 \u2122"));
  EXPECT_EQ(toQString(test::westernCodePage(), ""), QString());
}

TEST(ToQString, LeavesMarkupAndAmpersandsAlone) {
  EXPECT_EQ(toQString(test::westernCodePage(), "<b>&amp;</b>"), QStringLiteral("<b>&amp;</b>"));
}

TEST(FromQString, WritesSingleByteText) {
  EXPECT_EQ(fromQString(test::westernCodePage(), QStringLiteral("caf\u00e9 \u20ac")),
            "caf\xe9 \x80");
  EXPECT_EQ(fromQString(test::westernCodePage(), QString()), "");
}

TEST(FromQString, PutsAQuestionMarkForWhatTheCodePageLacks) {
  EXPECT_EQ(fromQString(test::westernCodePage(), QStringLiteral("\u03a9-\u65e5")), "?-?");
  EXPECT_EQ(fromQString(test::westernCodePage(), QString::fromUtf8("\xf0\x9f\x98\x80!")), "?!");
}

// Text from a Mac or from dictation has letters and accents apart.
TEST(FromQString, ComposesLettersAndMarksThatTheCodePageHasOnlyTogether) {
  EXPECT_EQ(fromQString(test::westernCodePage(), QStringLiteral("cafe\u0301")), "caf\xe9");
  EXPECT_EQ(fromQString(test::westernCodePage(), QStringLiteral("c\u030C")), "?");
}

TEST(FromQString, LeavesLettersAndMarksThatTheCodePageHasApart) {
  EXPECT_EQ(fromQString(CodePage(1258), QStringLiteral("e\u0301 \u00E9")), "e\xEC \xE9");
}

TEST(FromQString, ComposesOnlyTheLettersThatNeedIt) {
  EXPECT_EQ(fromQString(CodePage(1258), QStringLiteral("e\u0301\u0416")), "e\xEC?");
}

TEST(FromPlatformText, ReadsUtf8) {
  EXPECT_EQ(fromPlatformText(test::westernCodePage(), "/home/Zo\xc3\xab/\xe6\x97\xa5"),
            QStringLiteral("/home/Zo\u00eb/\u65e5"));
}

TEST(FromPlatformText, ReadsSingleByteTextWhereItIsNotUtf8) {
  EXPECT_EQ(fromPlatformText(test::westernCodePage(), "/home/Zo\xeb/x"),
            QStringLiteral("/home/Zo\u00eb/x"));
}

// A single byte at the end might be the beginning of a longer UTF-8 sequence, but here it
// is a character.
TEST(FromPlatformText, LosesNoSingleByteAtTheEnd) {
  EXPECT_EQ(fromPlatformText(test::westernCodePage(), "Caf\xe9"), QStringLiteral("Caf\u00e9"));
  EXPECT_EQ(fromPlatformText(test::westernCodePage(), "Caf\xc3"), QStringLiteral("Caf\u00c3"));
}

TEST(FromPlatformText, KeepsAnEmptyTextEmpty) {
  EXPECT_EQ(fromPlatformText(test::westernCodePage(), ""), QString());
}

TEST(AsToolTip, KeepsLinesOfEightyCharactersWhole) {
  const QString line(80, QLatin1Char('m'));
  EXPECT_EQ(
      asToolTip(line + QStringLiteral("\n<b>")),
      QStringLiteral("<p style='white-space:pre'>") + line + QStringLiteral("\n&lt;b&gt;</p>"));
}

TEST(AsToolTip, BreaksALongerLineWhereItLosesNothing) {
  const QString letters(81, QLatin1Char('m'));
  EXPECT_EQ(asToolTip(letters), QStringLiteral("<p style='white-space:pre'>") +
                                    QString(80, QLatin1Char('m')) + QStringLiteral("\nm</p>"));
  const QString path =
      QString(50, QLatin1Char('a')) + QLatin1Char('/') + QString(40, QLatin1Char('b'));
  EXPECT_EQ(asToolTip(path), QStringLiteral("<p style='white-space:pre'>") +
                                 QString(50, QLatin1Char('a')) + QStringLiteral("/\n") +
                                 QString(40, QLatin1Char('b')) + QStringLiteral("</p>"));
}

// The title that the desktop receives. How Qt treats its marker internally does not
// matter.
QString titleOnTheDesktop(const QString& text) {
  QWidget window;
  window.setWindowTitle(asWindowTitle(text));
  window.show();
  return window.windowHandle()->title();
}

TEST(AsWindowTitle, LeavesAPlainTextAlone) {
  EXPECT_EQ(titleOnTheDesktop(QStringLiteral("Quorrix - one.two.three")),
            QStringLiteral("Quorrix - one.two.three"));
  EXPECT_EQ(titleOnTheDesktop(QStringLiteral("a*b[c]&d<b>e</b>")),
            QStringLiteral("a*b[c]&d<b>e</b>"));
}

TEST(AsWindowTitle, ShowsTheMarkerOfAModifiedWindowAsItStands) {
  for (const QString& text :
       {QStringLiteral("[*]"), QStringLiteral("[*][*]"), QStringLiteral("[*][*][*]"),
        QStringLiteral("a[*]b"), QStringLiteral("[[*]]"), QStringLiteral("x[*]/[*][*]y")}) {
    EXPECT_EQ(titleOnTheDesktop(text), text);
  }
}

}  // namespace
}  // namespace quorrix
