#include "platform/system_errors.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "support/temporary_folder.h"

namespace quorrix {
namespace {

TEST(FailureNumberOfErrno, TellsWhatIsMissing) {
  EXPECT_EQ(failureNumberOfErrno(ENOENT), 53);
  EXPECT_EQ(failureNumberOfErrno(ENOTDIR), 76);
}

TEST(FailureNumberOfErrno, CallsEveryRefusalAnAccessError) {
  EXPECT_EQ(failureNumberOfErrno(EACCES), 75);
  EXPECT_EQ(failureNumberOfErrno(EPERM), 75);
  EXPECT_EQ(failureNumberOfErrno(EROFS), 75);
  EXPECT_EQ(failureNumberOfErrno(EEXIST), 75);
  EXPECT_EQ(failureNumberOfErrno(EISDIR), 75);
  EXPECT_EQ(failureNumberOfErrno(ENOTEMPTY), 75);
  EXPECT_EQ(failureNumberOfErrno(EBUSY), 75);
  EXPECT_EQ(failureNumberOfErrno(ENAMETOOLONG), 75);
  EXPECT_EQ(failureNumberOfErrno(EILSEQ), 75);
}

TEST(FailureNumberOfErrno, TellsWhatRanOut) {
  EXPECT_EQ(failureNumberOfErrno(ENOMEM), 7);
  EXPECT_EQ(failureNumberOfErrno(ENOSPC), 61);
  EXPECT_EQ(failureNumberOfErrno(EFBIG), 61);
  EXPECT_EQ(failureNumberOfErrno(EMFILE), 67);
  EXPECT_EQ(failureNumberOfErrno(ENFILE), 67);
}

TEST(FailureNumberOfErrno, TellsWhatIsWrongWithTheDevice) {
  EXPECT_EQ(failureNumberOfErrno(EIO), 57);
  EXPECT_EQ(failureNumberOfErrno(ENODEV), 68);
  EXPECT_EQ(failureNumberOfErrno(ENXIO), 68);
}

#ifdef __linux__
TEST(FailureNumberOfErrno, KnowsQuotaMediumAndServer) {
  EXPECT_EQ(failureNumberOfErrno(EDQUOT), 61);
  EXPECT_EQ(failureNumberOfErrno(ENOMEDIUM), 71);
  EXPECT_EQ(failureNumberOfErrno(ESTALE), 68);
}
#endif

TEST(FailureNumberOfErrno, IsUnknownForWhateverElse) {
  EXPECT_EQ(failureNumberOfErrno(0), 51);
  EXPECT_EQ(failureNumberOfErrno(EDOM), 51);
  EXPECT_EQ(failureNumberOfErrno(-1), 51);
  EXPECT_EQ(failureNumberOfErrno(99999), 51);
}

struct WindowsCase {
  std::uint32_t code;
  int number;
};

class FailureNumberOfWindowsError : public testing::TestWithParam<WindowsCase> {};

TEST_P(FailureNumberOfWindowsError, IsTheOneOfItsFamily) {
  EXPECT_EQ(failureNumberOfWindowsError(GetParam().code), GetParam().number)
      << "Windows error " << GetParam().code;
}

INSTANTIATE_TEST_SUITE_P(Missing, FailureNumberOfWindowsError,
                         testing::Values(WindowsCase{2, 53}, WindowsCase{3, 76},
                                         WindowsCase{53, 76}, WindowsCase{67, 76},
                                         WindowsCase{267, 76}, WindowsCase{161, 76}));
INSTANTIATE_TEST_SUITE_P(Refused, FailureNumberOfWindowsError,
                         testing::Values(WindowsCase{5, 75}, WindowsCase{19, 75},
                                         WindowsCase{32, 75}, WindowsCase{33, 75},
                                         WindowsCase{80, 75}, WindowsCase{123, 75},
                                         WindowsCase{145, 75}, WindowsCase{183, 75},
                                         WindowsCase{206, 75}, WindowsCase{65, 75},
                                         WindowsCase{82, 75}, WindowsCase{108, 75},
                                         WindowsCase{110, 75}, WindowsCase{148, 75},
                                         WindowsCase{170, 75}, WindowsCase{303, 75}));
INSTANTIATE_TEST_SUITE_P(UsedUp, FailureNumberOfWindowsError,
                         testing::Values(WindowsCase{4, 67}, WindowsCase{8, 7}, WindowsCase{14, 7},
                                         WindowsCase{39, 61}, WindowsCase{112, 61},
                                         WindowsCase{1295, 61}, WindowsCase{1450, 7},
                                         WindowsCase{1455, 7}));
INSTANTIATE_TEST_SUITE_P(
    Device, FailureNumberOfWindowsError,
    testing::Values(WindowsCase{15, 68}, WindowsCase{20, 68}, WindowsCase{21, 71},
                    WindowsCase{23, 57}, WindowsCase{29, 57}, WindowsCase{55, 68},
                    WindowsCase{1112, 71}, WindowsCase{1117, 57}, WindowsCase{1167, 68},
                    WindowsCase{27, 57}, WindowsCase{34, 71}, WindowsCase{1005, 71},
                    WindowsCase{1110, 71}, WindowsCase{1392, 57}, WindowsCase{1393, 57}));
INSTANTIATE_TEST_SUITE_P(ShareThatWentAway, FailureNumberOfWindowsError,
                         testing::Values(WindowsCase{51, 68}, WindowsCase{58, 68},
                                         WindowsCase{59, 68}, WindowsCase{64, 68},
                                         WindowsCase{121, 68}, WindowsCase{1006, 68},
                                         WindowsCase{1231, 68}, WindowsCase{1232, 68}));
INSTANTIATE_TEST_SUITE_P(Unknown, FailureNumberOfWindowsError,
                         testing::Values(WindowsCase{0, 51}, WindowsCase{1, 51},
                                         WindowsCase{4294967295U, 51}));

TEST(FailureNumberForPath, StaysFileNotFoundInAFolderThatIsThere) {
  const test::TemporaryFolder folder;
  EXPECT_EQ(failureNumberForPath(53, folder / "missing.dat"), 53);
}

TEST(FailureNumberForPath, IsPathNotFoundWhenTheFolderIsMissingToo) {
  const test::TemporaryFolder folder;
  EXPECT_EQ(failureNumberForPath(53, folder / "missing" / "missing.dat"), 76);
}

TEST(FailureNumberForPath, IsPathNotFoundBelowAFile) {
  const test::TemporaryFolder folder;
  folder.givenAFile("file", "");
  EXPECT_EQ(failureNumberForPath(53, folder / "file" / "missing.dat"), 76);
}

TEST(FailureNumberForPath, TakesANameAloneForOneOfThePresentFolder) {
  EXPECT_EQ(failureNumberForPath(53, "missing.dat"), 53);
}

TEST(FailureNumberForPath, LeavesEveryOtherNumberAlone) {
  const test::TemporaryFolder folder;
  EXPECT_EQ(failureNumberForPath(75, folder / "missing" / "missing.dat"), 75);
  EXPECT_EQ(failureNumberForPath(61, folder / "missing" / "missing.dat"), 61);
}

// ERROR_SHARING_VIOLATION, ERROR_FILE_EXISTS, ERROR_DELETE_PENDING
TEST(WindowsErrors, MayEndSoonWhereAnotherProgramUsesTheFile) {
  for (const unsigned code : {32U, 80U, 303U}) {
    EXPECT_TRUE(mayEndSoon(code, false)) << code;
    EXPECT_TRUE(mayEndSoon(code, true)) << code;
  }
}

TEST(WindowsErrors, MayEndSoonWhereAccessIsDeniedBecauseTheFileIsBeingDeleted) {
  EXPECT_TRUE(mayEndSoon(5, true));
  EXPECT_FALSE(mayEndSoon(5, false));
}

TEST(WindowsErrors, DoNotEndSoonWhenNoOtherProgramCausesThem) {
  for (const unsigned code : {2U, 3U, 19U, 21U, 112U}) EXPECT_FALSE(mayEndSoon(code, true)) << code;
}

}  // namespace
}  // namespace quorrix
