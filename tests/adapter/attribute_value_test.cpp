// The texts of synthesis attributes.
#include <gtest/gtest.h>

#include "acf.h"
#include "zelk_attribute_value.h"

namespace {

TEST(AttributeValueTest, AnAssignmentTextLosesItsQuotesAndEscapes) {
  EXPECT_EQ(convert_norvel_attribute_string(R"("-name X \"a b\"")"), R"(-name X "a b")");
  EXPECT_EQ(convert_norvel_attribute_string(R"("")"), R"("")");
  EXPECT_EQ(convert_norvel_attribute_string(R"(a\)"), "a");
}

TEST(AttributeValueTest, TheEncodingOfAStateMachineFollowsItsSizeOnlyByDefault) {
  const struct {
    const char* text;
    int states;
    int encoding;
    bool is_safe;
  } rows[] = {{"\"default\"", 51, ACF_ENUM_GRAY, false},
              {"\"default\"", 50, ACF_ENUM_ONE_HOT, false},
              {"\"default\"", 5, ACF_ENUM_ONE_HOT, false},
              {"\"default\"", 4, ACF_ENUM_SEQUENTIAL, false},
              {"\"default\"", -1, ACF_ENUM_NONE, false},
              {"\"safe, one-hot\"", 4, ACF_ENUM_ONE_HOT, true},
              {"\"SAFE\"", 4, ACF_ENUM_NONE, true},
              {"\"gray\"", 4, ACF_ENUM_GRAY, false},
              {"\"johnson, sequential\"", 4, ACF_ENUM_SEQUENTIAL, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    ZELK_FSM_ENCODING encoding = zelk_parse_fsm_encoding(row.text, row.states);
    EXPECT_EQ(encoding.encoding, row.encoding);
    EXPECT_EQ(encoding.is_safe, row.is_safe);
  }
}

TEST(AttributeValueTest, ARamStyleIsABlockTypeAndAFlag) {
  ZELK_RAMSTYLE style = zelk_parse_ramstyle_attribute("\"no_rw_check, SRB4\"");
  EXPECT_TRUE(style.is_legal && style.has_block_type && style.no_rw_check);
  EXPECT_EQ(style.block_type, CDB_RAM_BLOCK_SRB4);
  EXPECT_FALSE(zelk_parse_ramstyle_attribute("\"srb9\"").is_legal);
  EXPECT_FALSE(zelk_parse_ramstyle_attribute("\"no_rw_check\"").has_block_type);
}

TEST(AttributeValueTest, ListsAreQuotedAsAWholeOrNotAtAllAndPinNumbersGetAPrefix) {
  std::vector<std::string> pins;
  EXPECT_FALSE(parse_chip_pin_attr("\"A1\", B2", pins) || parse_chip_pin_attr("\"\"", pins));
  EXPECT_TRUE(parse_chip_pin_attr("B1", pins));
  ASSERT_TRUE(parse_chip_pin_attr("\" A1 ,12,\"", pins));
  EXPECT_EQ(pins, (std::vector<std::string>{"A1", "Pin_12"}));
  EXPECT_TRUE(is_hdl_msg_id("10999"));
  EXPECT_FALSE(is_hdl_msg_id("11000") || is_hdl_msg_id("10000x") || is_hdl_msg_id("99999999999999"));
}

} // namespace
