#include "archives/shown_path.h"

#include <gtest/gtest.h>

#include <QDir>

#include "support/qt_printers.h"
#include "support/slashes.h"

namespace quorrix {
namespace {

TEST(PathText, IsThePath) {
  EXPECT_EQ(textOfPath("/opt/a b & c/<b>[*]"), QStringLiteral("/opt/a b & c/<b>[*]"));
  EXPECT_EQ(textOfPath(Path(u8"/Dépôt/Ж-書")), QStringLiteral("/D\u00e9p\u00f4t/\u0416-\u66f8"));
}

TEST(PathText, ReadsWhatIsNoUtf8AsSingleByteText) {
  EXPECT_EQ(textOfPath("/caf\xE9"), QStringLiteral("/caf\u00e9"));
}

TEST(PathText, ShowsControlCharactersInARow) {
  EXPECT_EQ(rowTextOfPath("a\nb\tc"), QStringLiteral("a\u240ab\u2409c"));
  EXPECT_EQ(rowTextOfPath("a b"), QStringLiteral("a b"));
}

TEST(PathText, IsWholeInAMessage) {
  EXPECT_EQ(messageTextOfPath(Path(u8"/café/Ж")), "/caf\u00e9/\u0416");
}

// In UTF-8 on every system.
std::string written(const Path& path) { return test::withSlashes(path.string()); }

TEST(JoinedPath, HasOneSeparatorAlsoInARoot) {
  EXPECT_EQ(written(joinedPath("/opt", QStringLiteral("May"))), "/opt/May");
  EXPECT_EQ(written(joinedPath("/", QStringLiteral("May"))), "/May");
}

TEST(JoinedPath, TakesTheNameAsItIs) {
  EXPECT_EQ(written(joinedPath("/opt", QStringLiteral("/etc"))), "/opt//etc");
  EXPECT_EQ(written(joinedPath("/opt", QStringLiteral(" a/.. "))), "/opt/ a/.. ");
  EXPECT_EQ(written(joinedPath("/opt", QStringLiteral("\u00e9"))), "/opt/\xC3\xA9");
}

TEST(JoinedPath, HasEveryFolderThatTheNameHas) {
  EXPECT_EQ(written(joinedPath("/opt/a", QStringLiteral("no/July")).parent_path()), "/opt/a/no");
}

TEST(JoinedPath, KeepsTheBytesOfTheFolder) {
  EXPECT_EQ(test::bytesWithSlashes(joinedPath("/caf\xE9", QStringLiteral("May"))), "/caf\xE9/May");
}

TEST(TypedPath, BeginsAtTheFolderUnlessItBeginsAtARoot) {
  EXPECT_EQ(written(typedPath("/opt/a", QStringLiteral("May"))), "/opt/a/May");
  EXPECT_EQ(written(typedPath("/opt/a", QStringLiteral("../b/./c"))), "/opt/b/c");
  EXPECT_EQ(written(typedPath("/opt/a", QStringLiteral("/media/stick"))), "/media/stick");
  EXPECT_EQ(written(typedPath("/opt/a", QStringLiteral("  caf\u00e9 "))), "/opt/a/caf\xC3\xA9");
}

TEST(TypedPath, BeginsAtTheUsersHomeAfterATilde) {
  const std::string home = QDir::homePath().toStdString();
  EXPECT_EQ(written(typedPath("/opt/a", QStringLiteral("~"))), home);
  EXPECT_EQ(written(typedPath("/opt/a", QStringLiteral("~/May"))), written(Path(home) / "May"));
  EXPECT_EQ(written(typedPath("/opt/a", QStringLiteral("~May"))), "/opt/a/~May");
}

#ifdef _WIN32

TEST(PathText, ShowsWhatNoUtf8CanSay) {
  EXPECT_EQ(textOfPath(Path(L"C:\\a\xD800z")),
            QStringLiteral("C:\\a") + QChar(0xD800) + QStringLiteral("z"));
}

TEST(JoinedPath, PutsTheSystemsOwnSeparator) {
  EXPECT_EQ(joinedPath("C:\\Archives", QStringLiteral("May")).native(), L"C:\\Archives\\May");
  EXPECT_EQ(joinedPath("C:\\", QStringLiteral("May")).native(), L"C:\\May");
}

#endif

}  // namespace
}  // namespace quorrix
