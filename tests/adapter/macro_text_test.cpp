// Macros as the project's settings spell them.
#include <gtest/gtest.h>

#include "zelk_macro_text.h"

namespace {

struct GOOD_MACRO {
  const char* setting;
  const char* name;
  const char* parameters; // null: none
  const char* text;       // null: none
};

TEST(MacroText, NameParametersAndTextAreSplit) {
  constexpr GOOD_MACRO cases[] = {
      {"A", "A", nullptr, nullptr},      {"A=", "A", nullptr, ""},    {"_a$1=x = y", "_a$1", nullptr, "x = y"},
      {"A \t\v= 1", "A", nullptr, " 1"}, {"F(a)", "F", "a", nullptr}, {"F ( a , $b_2 )=a+b", "F", "a,$b_2", "a+b"},
      {"F(a b)=x", "F", "ab", "x"}, // white space is dropped, wherever it stands
  };
  for (const GOOD_MACRO& test : cases) {
    ZELK_MACRO_TEXT macro = zelk_parse_macro_text(test.setting);
    EXPECT_EQ(macro.problem, ZELK_MACRO_TEXT::NONE) << test.setting;
    EXPECT_EQ(macro.name, test.name) << test.setting;
    EXPECT_EQ(macro.has_parameters, test.parameters != nullptr) << test.setting;
    EXPECT_EQ(macro.parameters, test.parameters ? test.parameters : "") << test.setting;
    EXPECT_EQ(macro.has_text, test.text != nullptr) << test.setting;
    EXPECT_EQ(macro.text, test.text ? test.text : "") << test.setting;
  }
}

TEST(MacroText, BadParametersAreRefusedWithTheirText) {
  for (const char* setting : {"F()=x", "F(a,)=x", "F(,a)", "F(a,,b)", "F(1a)", "F(a", "F(a)b", "F(a)(b)", "F(a+b)"}) {
    ZELK_MACRO_TEXT macro = zelk_parse_macro_text(setting);
    EXPECT_EQ(macro.problem, ZELK_MACRO_TEXT::BAD_PARAMETERS) << setting;
    EXPECT_EQ(macro.name, "F") << setting;
  }
}

TEST(MacroText, BadCharacterOfTheNameIsTold) {
  struct {
    const char* setting;
    char bad;
  } cases[] = {{"1name=x", '1'}, {"a-b", '-'}, {"a b", ' '}, {"a.b(c)=d", '.'}};
  for (const auto& test : cases) {
    ZELK_MACRO_TEXT macro = zelk_parse_macro_text(test.setting);
    EXPECT_EQ(macro.problem, ZELK_MACRO_TEXT::BAD_CHARACTER) << test.setting;
    EXPECT_EQ(macro.bad_character, test.bad) << test.setting;
  }
}

} // namespace
