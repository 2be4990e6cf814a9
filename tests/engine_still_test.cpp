#include <algorithm>
#include <thread>

#include "formats/bin_raster.h"
#include "open/still.h"
#include "test_files.h"

namespace tessa::testing {
namespace {

class StillRead : public LoadTest {
 protected:
  /// What the open image took is what the reader gives.
  void ExpectSameAsOpened(const Still& still) const {
    const auto read = still.Grid.Cells();
    const auto taken = image_.TempGrid.Cells();
    EXPECT_TRUE(std::equal(read.begin(), read.end(), taken.begin(), taken.end()));
    EXPECT_EQ(still.Grid.Width(), image_.ImageWidth);
    EXPECT_EQ(still.Kind, image_.ImageKind);
    const bool isSit = still.Kind == KindSit;
    EXPECT_EQ(still.Extremes.Maximum, isSit ? image_.SitTempMax : image_.TempMax);
    EXPECT_EQ(still.StoredScale.Minimum, isSit ? image_.SitScaleMin : image_.ScaleMin);
    EXPECT_EQ(still.CalibratedRange.Maximum, image_.CalRangeMax);
    EXPECT_EQ(still.Comment, view_.Comment);
    EXPECT_EQ(still.Date, image_.ImageDate);
  }
};

TEST_F(StillRead, NeedsNoSessionAndMayRunInSeveralThreads) {
  SitFields sit;
  sit.Comment = "HOUSE";
  for (int i = 0; i < 320 * 240; ++i) {
    sit.Counts.push_back(static_cast<std::int16_t>(i % 2000));
  }
  TmpFields tmp;
  tmp.Counts.assign(255 * 223, 500);
  LegacyFields legacy;
  legacy.Comment = "OLD";
  legacy.Values.assign(255 * 207, 140);
  const std::vector<std::int16_t> bin(320 * 240, 3000);
  const std::vector<QString> paths = {folder_.Write(Name("a.SIT"), EncodeSit(sit)),
                                      folder_.Write(Name("b.tmp"), EncodeTmp(tmp)),
                                      folder_.Write(Name("c.Tmp"), EncodeLegacyTmp(legacy)),
                                      folder_.Write(Name("d.bin"), EncodeBin(bin))};
  std::vector<Still> stills(paths.size());
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < paths.size(); ++i) {
      threads.emplace_back([&, i] { stills[i] = ReadStill(paths[i]); });
    }
  }
  for (std::size_t i = 0; i < paths.size(); ++i) {
    SCOPED_TRACE(paths[i].toStdString());
    EXPECT_TRUE(stills[i].Faults.empty());
    OpenAt(paths[i]);
    ExpectSameAsOpened(stills[i]);
  }
  EXPECT_EQ(std::get<SitHeader>(stills[0].Header).Comment.substr(0, 6), std::string("HOUSE\0", 6));
  EXPECT_TRUE(std::get_if<TmpHeader>(&stills[1].Header));
  EXPECT_TRUE(stills[2].IsLegacy8Bit && std::get_if<LegacyHeader>(&stills[2].Header));
  EXPECT_TRUE(std::get_if<std::monostate>(&stills[3].Header));
  EXPECT_FALSE(stills[3].Camera);
}

TEST_F(StillRead, OtherFilesAreAFaultAndNoStill) {
  for (const char* name : {"a.bmp", "missing.sit", ""}) {
    const Still still = ReadStill(folder_.Path(Name(name)));
    EXPECT_NE(FindNoImage(still.Faults), nullptr) << name;
  }
}

}  // namespace
}  // namespace tessa::testing
