#include "platform/path_text.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

TEST(PathText, IsThePathAsItIsWritten) {
  EXPECT_EQ(pathText(Path(" Archives/May 2026 ")), " Archives/May 2026 ");
  EXPECT_EQ(pathText(Path()), "");
}

#ifdef _WIN32

TEST(PathText, IsInTheSystemsCharacterSet) {
  EXPECT_EQ(pathText(Path(L"C:\\Archives\\\u00C9t\u00E9")), "C:\\Archives\\\xC9t\xE9");
}

TEST(PathText, HasAMarkForWhatTheCharacterSetLacks) {
  EXPECT_EQ(pathText(Path(L"a\u66F8b")), "a?b");
  // Not the similar "a", which would name another folder.
  EXPECT_EQ(pathText(Path(L"\u0101")), "?");
}

#else

TEST(PathText, IsInTheEncodingOfThePath) {
  EXPECT_EQ(pathText(Path("/Archives/\xC3\x89t\xC3\xA9")), "/Archives/\xC3\x89t\xC3\xA9");
  EXPECT_EQ(pathText(Path("/Archives/\xC9t\xE9")), "/Archives/\xC9t\xE9");
}

#endif

}  // namespace
}  // namespace quorrix
