#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <tuple>

#include "calc/Basic.h"
#include "calc/NumberText.h"
#include "calc/RuntimeError.h"

namespace gandrel {
namespace {

// Texts that read back as the value they were written for, and values
// that only the 15-digit rounding brings to their text.
TEST(FormatNumber, FifteenDigitsNoLeadingZeroAndExponentsOutsideThePlainRange) {
  for (const char* text : {"0", "-2", ".5", "-.25", "1234.5", "999999999999999", "1E+15", "1.5E+20",
                           "-1E+20", "1E+100", ".0001", "1E-05", "-1E-06", "1.25E-07"})
    EXPECT_EQ(FormatNumber(ReadNumber(text)), text);
  const struct {
    double value;
    const char* text;
  } cases[] = {{-0.0, "0"},
               {2.0 / 3.0, ".666666666666667"},
               {999999999999999.9, "1E+15"},
               {0.1 + 0.2, ".3"}};
  for (const auto& c : cases)
    EXPECT_EQ(FormatNumber(c.value), c.text) << c.value;
}

TEST(ReadNumber, Table) {
  const struct {
    const char* text;
    double value;
  } cases[] = {{"", 0},        {"12abc", 12}, {"  3.5", 3.5}, {"-5", -5},      {".5", 0.5},
               {"1E3", 1000},  {"1D3", 1000}, {"1e3", 1},     {"1E-06", 1e-6}, {"1E", 1},
               {"2.5.3", 2.5}, {"-", 0},      {"\t5", 0},     {"1E-400", 0},   {"- 5", 0}};
  for (const auto& c : cases)
    EXPECT_DOUBLE_EQ(ReadNumber(c.text), c.value) << c.text;
}

TEST(NumberText, NotFiniteAndTooLargeAreOverflows) {
  EXPECT_THROW(FormatNumber(1.0 / 0.0 * 1e308 * 10), RuntimeError);
  auto error = TrapRuntimeError([] { ReadNumber("1E400"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->Number(), ErrNo::Overflow);
  EXPECT_EQ(error->Description(), "Overflow");
}

// Under a C locale whose decimal point is a comma, if one is installed; the
// locale in force before comes back at the end.
TEST(NumberText, IgnoresTheCLocale) {
  const std::string saved = std::setlocale(LC_ALL, nullptr);
  const char* comma = nullptr;
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "de_DE"})
    if (!comma && std::setlocale(LC_ALL, name) &&
        std::localeconv()->decimal_point == std::string(","))
      comma = name;
  if (comma) {
    EXPECT_EQ(std::tuple(FormatNumber(2.5), FormatNumber(1.5e20), ReadNumber("2.5")),
              std::tuple("2.5", "1.5E+20", 2.5))
        << comma;
  }
  std::setlocale(LC_ALL, saved.c_str());
  if (!comma)
    GTEST_SKIP() << "no locale with a decimal comma is installed (scripts/deps.sh test makes "
                    "de_DE.UTF-8)";
}

// Positions are 1-based; case and trimming touch only ASCII letters and blanks.
TEST(BasicHelpers, PositionsCaseTrimAndBadArguments) {
  EXPECT_EQ(std::tuple(InStr(4, "abcabc", "c"), InStr(2, "abc", "")), std::tuple(6L, 2L));
  EXPECT_EQ(
      Mid("abcdef", 3, 2) + Left("abc", 9) + "|" + LCase("AbC\xC3\x89z") + "|" + Trim("  a b \t "),
      "cdabc|abc\xC3\x89z|a b \t");
  EXPECT_THROW(InStr(0, "abc", "a"), RuntimeError);
  EXPECT_THROW(Mid("abc", 0), RuntimeError);
  EXPECT_THROW(Mid("abc", 1, -1), RuntimeError);
  EXPECT_THROW(Left("abc", -1), RuntimeError);
}

TEST(BasicHelpers, IntegerConversionRoundsHalfToEvenAndOverflows) {
  const struct {
    double in;
    long out;
  } cases[] = {{2.5, 2}, {3.5, 4}, {-2.5, -2}, {32767.4, 32767}};
  for (const auto& c : cases)
    EXPECT_EQ(CInt(c.in), c.out) << c.in;
  EXPECT_EQ(CLng(2147483647.0), 2147483647);
  EXPECT_EQ(CLng(-2147483648.0), -2147483647 - 1);
  EXPECT_THROW(CInt(32767.5), RuntimeError);  // rounds to 32768
  EXPECT_THROW(CInt(-32769), RuntimeError);
  EXPECT_THROW(CLng(2147483648.0), RuntimeError);
  EXPECT_THROW(CLng(1e300 * 1e300), RuntimeError);
  EXPECT_THROW(Int16(32768), RuntimeError);
}

}  // namespace
}  // namespace gandrel
