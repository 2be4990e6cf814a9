#include "export/composite.h"
#include "export/save_image.h"
#include "test_main_window.h"
#include "windows/visible_window.h"

namespace tessa::testing {
namespace {

/// Answers with fixed texts and remembers the questions.
class SaveScript : public NoDialogs {
 public:
  std::optional<QString> AskSaveFile(const SaveFileQuestion& question) override {
    Asked = question;
    return Path;
  }
  Answer AskYesNoCancel(const QString& /*text*/) override { return Reply; }

  std::optional<QString> Path;
  Answer Reply = Answer::kNo;
  SaveFileQuestion Asked;
};

class ExportTest : public ::testing::Test {
 protected:
  ExportTest()
      : session_(ApplicationFolder{folder_.Path(u"app"_s), QStringLiteral(TESSA_BINARY_FOLDER)}) {
    PrepareSession(session_);
    session_.Image.DisplayUnits = 'C';
  }

  void Open(const QString& name, const Bytes& file) {
    OpenPath(folder_.Write(name, file), session_, progress_);
    ASSERT_EQ(FindNoImage(session_.Faults), nullptr);
  }
  void OpenSit(const Bytes& attachment = {}) {
    SitFields fields = SoundSit("SIT 3.00  ");
    fields.Offset = 0.0;
    fields.Gain = 0.125;
    fields.ScaleCenter = 20.0;
    fields.ScaleStep = 5.0;  // 0 to 40
    fields.Counts = Raster(kSitWidth, kSitHeight, [](int column, int) { return column; });
    if (!attachment.empty()) {
      fields.SoundExt = "  \x02";
      fields.Attachment = Joined(Bytes(8), attachment);
    }
    Open(u"Wand.sit"_s, EncodeSit(fields));
  }
  void OpenFrames(int width, int height) {
    auto tenths = Raster(width, height, [](int, int) { return 2932; });
    tenths[1] = 3132;
    SnapshotFields fields = SnapshotOf(width, height, {tenths});
    fields.Header.ScaleMin = -20.0F;
    fields.Header.ScaleMax = 60.0F;
    Open(u"Takes.rti"_s, EncodeSnapshot(fields));
  }
  QSize Composite() const {
    return {session_.Buffers.Picbuf3.BufWidth(), session_.Buffers.Picbuf3.BufHeight()};
  }

  TestFolder folder_;
  Session session_;
  Progress progress_;
  SaveScript dialogs_;
};

TEST_F(ExportTest, DrawingsHaveTheSizesThatImageAndTextsAskFor) {
  using Case = std::tuple<int, int, int, int, int>;
  // 255 x 223 is small in both directions; 400 x 303 becomes 317 wide, which is not quite the same
  // shape, so a row is left out.
  for (const auto& [width, height, shownWidth, shownHeight, drawingHeight] :
       {Case{320, 240, 320, 240, 240}, Case{160, 120, 160, 120, 120}, Case{640, 480, 320, 240, 240},
        Case{255, 223, 255, 223, 223}, Case{400, 303, 317, 240, 239}}) {
    OpenFrames(width, height);
    const int text = std::max(MeasureText(u"60.0 "_s).width(), MeasureText(u"-20.0 "_s).width());
    BuildPaletteView(session_);
    EXPECT_EQ(Composite(), QSize(shownWidth + 25 + text, drawingHeight)) << width;
    EXPECT_EQ(session_.Buffers.PicBuf6.BufWidth(), 20 + text);
    EXPECT_EQ(session_.Buffers.PicBuf6.BufHeight(), shownHeight);
    BuildCompositeView(session_);
    EXPECT_EQ(Composite(), QSize(shownWidth + 25 + text + 325, drawingHeight));
  }
}

TEST_F(ExportTest, TheBarHasItsFrameTicksAndColoursWhereTheyBelong) {
  OpenSit();
  BuildPaletteView(session_);
  const QImage drawing = session_.Buffers.Picbuf3.ViewPicture();
  const int textHeight = MeasureText(u"40.0 "_s).height();
  const double top = textHeight / 2.0 - 2.0;
  const double height = std::nearbyint(240 - textHeight - textHeight / 2.0);
  const auto black = [&](int x, double y) {
    return drawing.pixel(x, static_cast<int>(std::nearbyint(y))) == qRgb(0, 0, 0);
  };
  EXPECT_TRUE(black(324, std::nearbyint(top - 1)));  // Corner of the frame.
  EXPECT_TRUE(black(339, std::nearbyint(top - 1)));
  EXPECT_TRUE(black(324, std::nearbyint(top - 1) + height - 3));
  const double low = top + height - 3;
  const double middle = height / 2.0 + top - 1;
  for (const double tick : {low, middle, top}) {
    EXPECT_TRUE(black(342, tick)) << tick;
    EXPECT_TRUE(black(345, tick)) << tick;
  }
  for (int i = 1; i <= 4; ++i) {
    EXPECT_TRUE(black(343, low - i * (low - middle) / 5.0)) << i;
    EXPECT_TRUE(black(343, middle - i * (middle - top) / 5.0)) << i;
  }
  // White (hot) at the top of a grey bar, dark at its foot, the image at the left.
  EXPECT_GT(qRed(drawing.pixel(330, static_cast<int>(top) + 3)), 240);
  EXPECT_LT(qRed(drawing.pixel(330, static_cast<int>(top + height) - 6)), 15);
  const int index = session_.Buffers.Picbuf1.Pixels()[100 * kSitWidth + 200];
  EXPECT_EQ(drawing.pixel(200, 100), qRgb(index, index, index));
}

TEST_F(ExportTest, ASmallImageKeepsAllOfItsBar) {
  for (const auto& [width, height] : {std::pair{160, 120}, std::pair{64, 64}}) {
    OpenFrames(width, height);
    BuildPaletteView(session_);
    const QImage drawing = session_.Buffers.Picbuf3.ViewPicture();
    for (int x = width + 6; x < width + 19; ++x) {
      EXPECT_EQ(drawing.pixel(x, height / 2), drawing.pixel(width + 6, height / 2)) << x;
    }
    EXPECT_LT(qRed(drawing.pixel(width + 18, height / 2)), 250) << "white paper";
  }
}

TEST_F(ExportTest, ASmallCompositeCutsTheVisiblePictureAtItsFoot) {
  OpenFrames(160, 120);
  Picbuf& visible = session_.Visible.Picbuf3;
  visible.CreateBuffer(0, 480, 640, 24);
  for (int row = 0; row < 480; ++row) {
    const std::vector<std::int32_t> line(640, row < 240 ? 0x0000FF : 0xFF0000);
    visible.PutRow(line, row);
  }
  BuildCompositeView(session_);
  const QImage drawing = session_.Buffers.Picbuf3.ViewPicture();
  EXPECT_EQ(drawing.pixel(drawing.width() - 10, 119), qRgb(255, 0, 0))
      << "the upper half at half size fills all 120 rows";
}

TEST_F(ExportTest, SavedBitmapsHoldIndicesAndPaletteAndKeepFolderAndStem) {
  OpenSit();
  dialogs_.Path = folder_.Path(u"out.BMP"_s);
  SaveBmp(session_, dialogs_);
  EXPECT_EQ(dialogs_.Asked.Suggestion, folder_.Path(u"Wand.BMP"_s));
  const QByteArray file = ReadAll(*dialogs_.Path);
  ASSERT_EQ(file.size(), 54 + 1024 + kSitWidth * kSitHeight);
  EXPECT_EQ(static_cast<std::uint8_t>(file[54 + 4 * 255]), 255);
  EXPECT_EQ(static_cast<std::uint8_t>(file[54 + 1024 + 100]),
            session_.Buffers.Picbuf1.Pixels()[239 * kSitWidth + 100]);
  dialogs_.Reply = Answer::kYes;
  SaveBmp(session_, dialogs_);
  EXPECT_EQ(QImage(*dialogs_.Path).width(), Composite().width());
  dialogs_.Reply = Answer::kCancel;
  dialogs_.Path.reset();
  dialogs_.Asked = {};
  SaveBmp(session_, dialogs_);
  EXPECT_TRUE(dialogs_.Asked.Suggestion.isEmpty()) << "cancel asks for no name";
}

TEST_F(ExportTest, ATxiFileOpensAgainInItsRange) {
  OpenFrames(160, 120);
  dialogs_.Path = folder_.Path(u"yes.TXI"_s);
  SaveTxi(session_, dialogs_);
  EXPECT_TRUE(dialogs_.Asked.Suggestion.endsWith(u"/Frame1.TXI"_s));
  const QByteArray file = ReadAll(*dialogs_.Path);
  EXPECT_EQ(file.mid(6, 4), QByteArray::fromHex("38ff5802"));  // -200 and 600
  OpenPath(*dialogs_.Path, session_, progress_);
  EXPECT_EQ(session_.Image.ScaleMin, -20.0F);
  EXPECT_EQ(session_.Image.ScaleMax, 60.0F);
}

TEST_F(ExportTest, TheVisiblePictureHasItsWindowAndGoesWithTheImage) {
  OpenSit(VisibleJpeg());
  ASSERT_TRUE(session_.Image.HasVisibleImage);
  VisibleWindow window(session_, dialogs_, nullptr);
  window.show();
  EXPECT_TRUE(session_.Image.VisibleWindowOpen);
  auto* const picture = window.findChild<PicbufWidget*>(u"Picbuf1"_s);
  EXPECT_EQ(picture->size(), QSize(320, 240));
  // The whole picture at half size: red and blue meet in the middle.
  const QImage half = picture->grab().toImage();
  EXPECT_GT(qRed(half.pixel(150, 120)), 200);
  EXPECT_GT(qBlue(half.pixel(170, 120)), 200);
  window.findChild<QAction*>(u"mnuzoom1"_s)->trigger();
  EXPECT_EQ(picture->size(), QSize(640, 480));
  window.findChild<QAction*>(u"mnucopy"_s)->trigger();
  EXPECT_EQ(QApplication::clipboard()->image().size(), QSize(640, 480));
  dialogs_.Path = folder_.Path(u"v.bmp"_s);
  window.findChild<QAction*>(u"mnuSaveBMP"_s)->trigger();
  EXPECT_TRUE(dialogs_.Asked.Suggestion.endsWith(u"/Wand-VIS.BMP"_s));
  EXPECT_EQ(QImage(*dialogs_.Path).size(), QSize(640, 480));
  dialogs_.Path = folder_.Path(u"c.jpg"_s);
  window.findChild<QAction*>(u"mnuSaveCompJPG"_s)->trigger();
  EXPECT_TRUE(dialogs_.Asked.Suggestion.endsWith(u"/Wand-COMP.JPG"_s));
  EXPECT_EQ(QImage(*dialogs_.Path).size(), Composite());
  window.findChild<QAction*>(u"mnuClose"_s)->trigger();
  EXPECT_FALSE(session_.Image.VisibleWindowOpen);
}

}  // namespace
}  // namespace tessa::testing
