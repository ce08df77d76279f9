// Strings: owned results, null inputs, numbers.
#include "util/strings.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>

namespace {

std::string Text(char* string) {
  OwnedString owned(string);
  return owned ? owned.get() : "<null>";
}

TEST(Strings, SavesPiecesAndCountsNullAsEmpty) {
  EXPECT_EQ(Strings::save(nullptr), nullptr);
  EXPECT_EQ(Text(Strings::save("a", nullptr, "c", "d", nullptr, "f")), "acdf");
  EXPECT_EQ(Text(Strings::save(nullptr, nullptr)), "");
  Strings::free_string(nullptr);
}

TEST(Strings, ComparesForEqualityOnly) {
  EXPECT_EQ(Strings::compare(nullptr, nullptr), 1U);
  EXPECT_EQ(Strings::compare(nullptr, "a"), 0U);
  EXPECT_EQ(Strings::compare("a", std::string("a").c_str()), 1U);
  EXPECT_EQ(Strings::compare("a", "A"), 0U);
  EXPECT_EQ(Strings::compare_nocase("aZ[", "Az["), 1U);
  EXPECT_EQ(Strings::compare_nocase("[", "{"), 0U);
  EXPECT_EQ(Strings::compare_nocase("a", nullptr), 0U);
}

TEST(Strings, FindsSubstringsAndLengths) {
  EXPECT_EQ(Strings::substring("abc", "bc"), 1U);
  EXPECT_EQ(Strings::substring("abc", ""), 1U);
  EXPECT_EQ(Strings::substring("abc", "cb"), 0U);
  EXPECT_EQ(Strings::substring(nullptr, "a"), 0U);
  EXPECT_EQ(Strings::len(nullptr), 0U);
  EXPECT_EQ(Strings::len("abc"), 3U);
}

TEST(Strings, ResizingKeepsTheTextThatFits) {
  EXPECT_EQ(Text(Strings::resize(Strings::save("abcdef"), 4)), "abc");
  EXPECT_EQ(Text(Strings::resize(Strings::save("abc"), 100)), "abc");
  EXPECT_EQ(Text(Strings::resize(nullptr, 10)), "");
  EXPECT_EQ(Text(Strings::Allocate(0)), "");
}

TEST(Strings, ReadsNumbersAsZeroWhenThereIsNone) {
  unsigned overflow = 7;
  EXPECT_EQ(Strings::atoi(nullptr, &overflow), 0);
  EXPECT_EQ(overflow, 0U);
  EXPECT_EQ(Strings::atoi(" \t+12x", &overflow), 12);
  EXPECT_EQ(Strings::atoi("-2147483648", &overflow), INT_MIN);
  EXPECT_EQ(overflow, 0U);
  EXPECT_EQ(Strings::atoi("2147483648", &overflow), INT_MAX);
  EXPECT_EQ(overflow, 1U);
  EXPECT_EQ(Strings::atoi("+-5"), 0);
  EXPECT_EQ(Strings::atoi64("-9223372036854775808"), LLONG_MIN);
  EXPECT_EQ(Strings::atoi64("99999999999999999999"), LLONG_MAX);
  EXPECT_EQ(Strings::atof(nullptr), 0.0);
  EXPECT_EQ(Strings::atof("x"), 0.0);
  EXPECT_DOUBLE_EQ(Strings::atof(" +2.5e3;"), 2500.0);
  EXPECT_TRUE(std::isinf(Strings::atof("1e999")));
}

TEST(Strings, WritesNumbersThatReadBackAsThemselves) {
  EXPECT_EQ(Text(Strings::itoa(INT_MIN)), "-2147483648");
  for (double value : {0.1, -1e300, 5e-324, 1.0 / 3, 123456789.0}) {
    OwnedString digits(Strings::dtoa(value));
    EXPECT_EQ(Strings::atof(digits.get()), value) << digits.get();
  }
}

TEST(Strings, StripsBlanksAndOneQuoteAtEachEnd) {
  EXPECT_EQ(Text(Strings::strip_and_save(Strings::save(" \t\n\v\f\r a b \r\n"))), "a b");
  EXPECT_EQ(Text(Strings::strip_and_save(Strings::save(" \" a\" \" "), 1)), "a\"");
  EXPECT_EQ(Text(Strings::strip_and_save(Strings::save(" \"a\" "), 0)), "\"a\"");
  EXPECT_EQ(Text(Strings::strip_and_save(Strings::save("\""), 1)), "");
  EXPECT_EQ(Text(Strings::strip_and_save(Strings::save("   "))), "");
  char* empty = Strings::save("");
  EXPECT_EQ(Strings::strip_and_save(empty), empty);
  Strings::free_string(empty);
}

TEST(Strings, ReplacesCharactersByTextAndNeverByNothing) {
  EXPECT_EQ(Text(Strings::replace("a.b.", '.', "::")), "a::b::");
  EXPECT_EQ(Text(Strings::replace("a.b", '.', "")), "a.b");
  EXPECT_EQ(Text(Strings::replace("a.b", '.', nullptr)), "a.b");
  EXPECT_EQ(Strings::replace(nullptr, '.', "x"), nullptr);
  EXPECT_EQ(Strings::replace("a", 0, "x"), nullptr);
}

} // namespace
