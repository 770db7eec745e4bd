#include <gtest/gtest.h>

#include "framework/arith.h"

TEST(Arith, RoundsHalvesToEven) {
  EXPECT_EQ(korvel::CLng(2.5), 2);
  EXPECT_EQ(korvel::CLng(3.5), 4);
}
