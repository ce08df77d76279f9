// NameSpace: what makes names legal and unique.
#include "util/namespace.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "util/strings.h"

namespace {

std::string Text(char* string) {
  OwnedString owned(string);
  return owned ? owned.get() : "<fine>";
}

TEST(NameSpace, ReplacesAllIllegalCharactersAtOnce) {
  NameSpace space(1);
  space.SetIllegalChars(".[]", '_');
  EXPECT_EQ(Text(space.ReName("a.b[1]")), "a_b_1_");
  EXPECT_EQ(Text(space.ReName("ab")), "<fine>");
  EXPECT_EQ(Text(space.ReName("")), "<fine>");
}

TEST(NameSpace, EscapesWhatHasNoReplacement) {
  NameSpace space(1);
  space.SetIllegalChars(".");
  EXPECT_EQ(Text(space.Escape("a")), "<fine>");
  EXPECT_EQ(Text(space.ReName("a.b")), "<fine>") << "there is no way to mend it";
  space.EscapeWord('\\', ' ');
  EXPECT_EQ(Text(space.ReName("a.b")), "\\a.b ");
  EXPECT_EQ(Text(space.ReName("\\a.b ")), "<fine>") << "an escaped name stays";
}

TEST(NameSpace, MendsStartEndAndSubstring) {
  NameSpace space(1);
  space.SetIllegalStartChars("0123456789_", 'n');
  space.SetIllegalEndChars("_", 'e');
  space.SetIllegalSubstring("__", "_u_");
  EXPECT_EQ(Text(space.ReName("1_")), "ne");
  EXPECT_EQ(Text(space.ReName("a__b__c")), "a_u_b_u_c");
  NameSpace plain(1);
  plain.SetIllegalStartChars("0123456789");
  EXPECT_EQ(Text(plain.ReName("1a")), "1a_c");
  plain.SetIllegalSubstring("__");
  plain.EscapeWord('\\', '\\');
  EXPECT_EQ(Text(plain.ReName("1a")), "\\1a\\");
  EXPECT_EQ(Text(plain.ReName("a__b")), "\\a__b\\");
}

TEST(NameSpace, EndsWhenAReplacementBringsBackWhatItReplaces) {
  NameSpace space(1);
  space.SetIllegalChars("_", '_');
  space.SetIllegalStartChars("x", 'x');
  space.SetIllegalEndChars("y", 'y');
  space.SetIllegalSubstring("ab", "abab");
  EXPECT_EQ(Text(space.ReName("a_b")), "<fine>");
  EXPECT_EQ(Text(space.ReName("xy")), "<fine>");
  EXPECT_EQ(Text(space.ReName("cab")), "cabab");
  space.SetIllegalSubstring("ab", "bba");
  EXPECT_NE(Text(space.ReName("caaab")), "");
}

TEST(NameSpace, ReservedWordsAreReplacedOrEscapedOrChanged) {
  NameSpace space(1);
  space.AddReservedWord("wire");
  space.AddReservedWord("reg", "register");
  EXPECT_EQ(Text(space.ReName("wire")), "wire_c");
  EXPECT_EQ(Text(space.ReName("reg")), "register");
  EXPECT_EQ(Text(space.ReName("Wire")), "<fine>");
  space.EscapeWord('\\', ' ');
  EXPECT_EQ(Text(space.ReName("wire")), "\\wire ");
  NameSpace nocase(0);
  nocase.AddReservedWord("ABS");
  EXPECT_EQ(Text(nocase.ReName("abs")), "abs_c");
}

TEST(NameSpace, InsertedNamesAreUnique) {
  NameSpace space(1);
  space.SetIllegalChars(".", '_');
  EXPECT_STREQ(space.InsertName("a_b"), "a_b");
  EXPECT_STREQ(space.InsertName("a.b"), "a_b_c") << "the mended name is taken";
  EXPECT_STREQ(space.GetName("a.b"), "a_b_c");
  EXPECT_STREQ(space.GetName("a_b"), "a_b");
  EXPECT_STREQ(space.GetName("unknown"), "unknown");
  EXPECT_STREQ(space.InsertName("a_b"), "a_b_c_c");
  EXPECT_EQ(space.InsertName(nullptr), nullptr);
}

TEST(NameSpace, CaseCountsOnlyWhereTheLanguageSaysSo) {
  NameSpace nocase(0);
  nocase.InsertName("Net");
  EXPECT_STREQ(nocase.InsertName("net"), "net_c");
  NameSpace sensitive(1);
  sensitive.InsertName("Net");
  EXPECT_STREQ(sensitive.InsertName("net"), "net");
}

TEST(NameSpace, LinkedSpacesShareTheirNamesUntilOneDies) {
  NameSpace nets(1);
  auto instances = std::make_unique<NameSpace>(1);
  NameSpace ports(1);
  nets.LinkSpace(instances.get());
  ports.LinkSpace(instances.get());
  ports.LinkSpace(&nets);
  nets.LinkSpace(&nets);
  nets.InsertName("a");
  instances->InsertName("b");
  EXPECT_STREQ(ports.InsertName("a"), "a_c");
  EXPECT_STREQ(nets.InsertName("b"), "b_c");
  EXPECT_STREQ(instances->InsertName("a"), "a_c_c");
  instances.reset();
  EXPECT_STREQ(ports.InsertName("a_c_c"), "a_c_c");
  EXPECT_STREQ(nets.InsertName("a_c_c"), "a_c_c_c");
}

TEST(NameSpace, ACopyHasTheLanguageAndTheNamesAndStandsAlone) {
  NameSpace space(0);
  space.SetIllegalChars(".", '_');
  space.AddReservedWord("abs", "absolute");
  space.InsertName("a.b");
  std::unique_ptr<NameSpace> copy(space.Copy());
  EXPECT_STREQ(copy->GetName("A.B"), "a_b");
  EXPECT_EQ(Text(copy->ReName("ABS")), "absolute");
  copy->InsertName("new");
  EXPECT_EQ(space.GetItem("new"), nullptr);
}

} // namespace
