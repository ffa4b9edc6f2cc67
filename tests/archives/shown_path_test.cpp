#include "archives/shown_path.h"

#include <gtest/gtest.h>

#include "support/qt_printers.h"

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

TEST(PathText, IsSingleByteTextInAMessage) {
  EXPECT_EQ(messageTextOfPath(Path(u8"/café/Ж")), "/caf\xE9/?");
}

TEST(JoinedPath, HasOneSeparatorAlsoInARoot) {
  EXPECT_EQ(joinedPath("/opt", QStringLiteral("May")).string(), "/opt/May");
  EXPECT_EQ(joinedPath("/", QStringLiteral("May")).string(), "/May");
}

TEST(JoinedPath, TakesTheNameAsItIs) {
  EXPECT_EQ(joinedPath("/opt", QStringLiteral("/etc")).string(), "/opt//etc");
  EXPECT_EQ(joinedPath("/opt", QStringLiteral(" a/.. ")).string(), "/opt/ a/.. ");
  EXPECT_EQ(joinedPath("/opt", QStringLiteral("\u00e9")).string(), "/opt/\xC3\xA9");
}

TEST(JoinedPath, HasEveryFolderThatTheNameHas) {
  EXPECT_EQ(joinedPath("/opt/a", QStringLiteral("no/July")).parent_path().string(), "/opt/a/no");
}

TEST(JoinedPath, KeepsTheBytesOfTheFolder) {
  EXPECT_EQ(joinedPath("/caf\xE9", QStringLiteral("May")).string(), "/caf\xE9/May");
}

}  // namespace
}  // namespace quorrix
