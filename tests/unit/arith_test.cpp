// The host language's arithmetic and text rules the controls rely on.
#include <gtest/gtest.h>

#include "framework/arith.h"
#include "framework/errors.h"

using namespace korvel;

TEST(Arith, RoundsHalvesToEven) {
  EXPECT_EQ(CLng(0.5), 0);
  EXPECT_EQ(CLng(1.5), 2);
  EXPECT_EQ(CLng(2.5), 2);
  EXPECT_EQ(CLng(3.5), 4);
  EXPECT_EQ(CLng(-0.5), 0);
  EXPECT_EQ(CLng(-1.5), -2);
  EXPECT_EQ(CLng(-2.5), -2);
  EXPECT_EQ(CLng(2.4999), 2);
  EXPECT_EQ(CLng(2.5001), 3);
  EXPECT_EQ(RoundHalfEven(126.5), 126.0);
  EXPECT_EQ(RoundHalfEven(127.5), 128.0);
}

TEST(Arith, CLngOverflowRaisesError6) {
  EXPECT_EQ(CLng(2147483647.0), 2147483647);
  EXPECT_EQ(CLng(-2147483648.0), INT32_MIN);
  try {
    CLng(2147483648.0);
    FAIL() << "no error";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 6);
    EXPECT_EQ(e.Description(), "Overflow");
  }
}

TEST(Arith, CIntKeeps16BitsAndRaisesOverflowOutside) {
  EXPECT_EQ(CInt(32767.0), 32767);
  EXPECT_EQ(CInt(-32768.0), -32768);
  EXPECT_EQ(CInt(32767.4), 32767);
  EXPECT_THROW(CInt(32767.5), RuntimeError);  // rounds to 32768
  EXPECT_THROW(CInt(-32769.0), RuntimeError);
}

TEST(Arith, Store16KeepsLowBitsWithSignExtension) {
  EXPECT_EQ(Store16(0x7FFF), 32767);
  EXPECT_EQ(Store16(0x8000), -32768);
  EXPECT_EQ(Store16(0xFFFF), -1);
  EXPECT_EQ(Store16(65537), 1);
  EXPECT_EQ(Store16(-1), -1);
}

TEST(Arith, IntDivRoundsOperandsThenTruncatesTowardZero) {
  EXPECT_EQ(IntDiv(7, 2), 3);
  EXPECT_EQ(IntDiv(-7, 2), -3);
  EXPECT_EQ(IntDiv(7, -2), -3);
  EXPECT_EQ(IntDiv(2.5, 1), 2);   // 2.5 rounds to 2 first
  EXPECT_EQ(IntDiv(3.5, 1), 4);   // 3.5 rounds to 4 first
  EXPECT_EQ(IntDiv(9, 2.5), 4);   // divisor 2.5 rounds to 2
  EXPECT_EQ(IntDiv(-1, 2), 0);
}

TEST(Arith, DivisionByZeroRaisesError11) {
  try {
    IntDiv(5, 0.4);  // the divisor rounds to 0
    FAIL() << "no error";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 11);
    EXPECT_EQ(e.Description(), "Division by zero");
  }
  EXPECT_THROW(FloatDiv(1, 0), RuntimeError);
  EXPECT_DOUBLE_EQ(FloatDiv(1, 4), 0.25);
}

TEST(Arith, TrimRemovesSpacesOnly) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(Trim("\ta\t"), "\ta\t");
  EXPECT_EQ(LTrim("  x "), "x ");
  EXPECT_EQ(RTrim("  x "), "  x");
  EXPECT_EQ(Trim("   "), "");
}

TEST(Arith, CaseFoldingAndTextComparison) {
  EXPECT_EQ(UCase("Open file"), "OPEN FILE");
  EXPECT_EQ(LCase("MAILTO:Sales"), "mailto:sales");
  EXPECT_EQ(CompareText("open", "OPEN"), 0);
  EXPECT_LT(CompareText("alpha", "Zeta"), 0);
  EXPECT_GT(CompareText("ZETA", "alpha"), 0);
  EXPECT_LT(CompareText("ab", "abc"), 0);
  // Text outside ASCII passes through case folding unchanged.
  EXPECT_EQ(UCase("grün"), "GRüN");
}

TEST(Arith, InStrAndMidAreOneBased) {
  EXPECT_EQ(InStr(1, "A|B|C", "|"), 2);
  EXPECT_EQ(InStr(3, "A|B|C", "|"), 4);
  EXPECT_EQ(InStr(5, "A|B|C", "|"), 0);
  EXPECT_EQ(InStr(1, "abc", ""), 1);
  EXPECT_EQ(InStrText(1, "xxOPEN", "open"), 3);
  EXPECT_EQ(InStr(1, "xxOPEN", "open"), 0);
  EXPECT_EQ(Mid("Hello", 2, 3), "ell");
  EXPECT_EQ(Mid("Hello", 4), "lo");
  EXPECT_EQ(Mid("Hello", 9), "");
  EXPECT_EQ(Left("Hello", 2), "He");
  EXPECT_EQ(Right("Hello", 2), "lo");
  EXPECT_EQ(Left("Hi", 9), "Hi");
}
