// LineFile: the packing of places in source files.
#include "util/linefile.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class LineFileTest : public testing::Test {
protected:
  void TearDown() override { LineFile::FreeLineFileMaps(); }
};

TEST_F(LineFileTest, ALocationWithoutFileIsItsLine) {
  EXPECT_EQ(LineFile::GetFileName(7), nullptr) << "before any file is known";
  EXPECT_EQ(LineFile::EncodeLineFile(nullptr, 7), 7U);
  LineFile::EncodeLineFile("a.v", 1);
  EXPECT_EQ(LineFile::GetFileName(7), nullptr);
  EXPECT_EQ(LineFile::GetFileId(7), 0U);
  EXPECT_EQ(LineFile::GetLineNo(7), 7U);
}

TEST_F(LineFileTest, EqualNamesShareAnIdAndPathsAreNotNormalised) {
  linefile_type first = LineFile::EncodeLineFile("dir/a.v", 10);
  linefile_type again = LineFile::EncodeLineFile(std::string("dir/a.v").c_str(), 11);
  linefile_type other = LineFile::EncodeLineFile("./dir/a.v", 10);
  EXPECT_EQ(LineFile::GetFileId(first), LineFile::GetFileId(again));
  EXPECT_NE(LineFile::GetFileId(first), LineFile::GetFileId(other));
  EXPECT_STREQ(LineFile::GetFileName(other), "./dir/a.v");
  EXPECT_EQ(LineFile::GetLineNo(again), 11U);
}

TEST_F(LineFileTest, LinesSaturateAtTheirMaximum) {
  linefile_type last = LineFile::EncodeLineFile("a.v", 0xFFFFF);
  EXPECT_EQ(LineFile::IncrLineNo(last), last);
  EXPECT_EQ(LineFile::GetLineNo(LineFile::IncrLineNo(last - 1)), 0xFFFFFU);
  EXPECT_EQ(LineFile::IncrLineNo(0), 1U);
}

TEST_F(LineFileTest, ALineBeyondItsBitsSpillsIntoTheFileId) {
  linefile_type location = LineFile::EncodeLineFile("a.v", 0);
  unsigned id = LineFile::GetFileId(location);
  EXPECT_EQ(LineFile::GetFileId(LineFile::EncodeLineFile("a.v", 0x100000)), id | 1U);
}

TEST_F(LineFileTest, IdsStartAgainAtTwentyWhenTheyRunOut) {
  unsigned id = 0;
  for (unsigned i = 0; id != 4095; i++) {
    id = LineFile::GetFileId(LineFile::EncodeLineFile(("file" + std::to_string(i)).c_str(), 1));
    ASSERT_LT(i, 4096U);
  }
  linefile_type newest = LineFile::EncodeLineFile("newest.v", 3);
  EXPECT_EQ(LineFile::GetFileId(newest), 20U);
  EXPECT_STREQ(LineFile::GetFileName(newest), "newest.v");
  linefile_type next = LineFile::EncodeLineFile("next.v", 3);
  EXPECT_EQ(LineFile::GetFileId(next), 21U);
  EXPECT_EQ(LineFile::EncodeLineFile("newest.v", 3), newest);
}

TEST_F(LineFileTest, FreeingForgetsNamesAndGoesOnCounting) {
  unsigned id = LineFile::GetFileId(LineFile::EncodeLineFile("a.v", 1));
  LineFile::FreeLineFileMaps();
  EXPECT_EQ(LineFile::GetFileName(id << 20), nullptr);
  EXPECT_EQ(LineFile::GetFileId(LineFile::EncodeLineFile("a.v", 1)), id + 1);
}

} // namespace
