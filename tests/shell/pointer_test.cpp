#include "shell/pointer.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace quorrix {
namespace {

TEST(Hourglass, IsThePointerForAsLongAsItLives) {
  QWidget form;
  {
    const Hourglass hourglass(form);
    EXPECT_EQ(form.cursor().shape(), Qt::WaitCursor);
  }
  EXPECT_EQ(form.cursor().shape(), Qt::ArrowCursor);
}

TEST(Hourglass, GoesWithAFailure) {
  QWidget form;
  const auto fail = [&form] {
    const Hourglass hourglass(form);
    throw std::runtime_error("in the middle of an operation");
  };
  EXPECT_THROW(fail(), std::runtime_error);
  EXPECT_EQ(form.cursor().shape(), Qt::ArrowCursor);
}

TEST(Hourglass, StaysUntilTheOuterOneGoes) {
  QWidget form;
  {
    const Hourglass outer(form);
    { const Hourglass inner(form); }
    EXPECT_EQ(form.cursor().shape(), Qt::WaitCursor);
  }
  EXPECT_EQ(form.cursor().shape(), Qt::ArrowCursor);
}

TEST(Hourglass, IsOfOneFormOnly) {
  QWidget form;
  QWidget other;
  const Hourglass hourglass(form);
  EXPECT_EQ(other.cursor().shape(), Qt::ArrowCursor);
}

TEST(Hourglass, MayOutliveItsForm) {
  auto form = std::make_unique<QWidget>();
  const Hourglass hourglass(*form);
  form.reset();
}

}  // namespace
}  // namespace quorrix
