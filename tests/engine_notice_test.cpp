#include <new>

#include "core/tell.h"
#include "export/save_image.h"
#include "open/attachments.h"
#include "open/no_picture.h"
#include "test_files.h"
#include "view/range_entry.h"

namespace tessa::testing {
namespace {

/// 0 to 39.875 degrees in a scale from 0 to 40.
Bytes Sit() {
  SitFields fields;
  fields.Gain = 0.125;
  fields.ScaleCenter = 20.0;
  fields.ScaleStep = 5.0;
  fields.Counts = Raster(kSitWidth, kSitHeight, [](int column, int) { return column; });
  return EncodeSit(fields);
}

/// Answers with the given paths in turn, then cancels.
class Places : public NoDialogs {
 public:
  std::optional<QString> AskSaveFile(const SaveFileQuestion& question) override {
    Asked.push_back(question);
    return Asked.size() <= static_cast<std::size_t>(Answers.size())
               ? std::optional(Answers[static_cast<qsizetype>(Asked.size()) - 1])
               : std::nullopt;
  }
  Answer AskYesNoCancel(const QString& /*text*/) override {
    ++Questions;
    return Answer::kNo;
  }

  QStringList Answers;
  std::vector<SaveFileQuestion> Asked;
  int Questions = 0;
};

class NoticeTest : public LoadTest {
 protected:
  void SetUp() override { session_.Words.ReadTable(WordTable()); }
  std::string Told() const { return view_.Notice.Text.toStdString(); }
};

TEST_F(NoticeTest, EveryKindOfUselessFileSaysWhatItIsInTheUsersLanguage) {
  const auto expect = [&](const QString& path, const char* english, const char* detail) {
    SCOPED_TRACE(path.toStdString());
    Open("before.sit", Sit());
    OpenAt(path);
    EXPECT_EQ(view_.NoPicture.Reason.toStdString(), english);
    EXPECT_THAT(view_.NoPicture.Detail.toStdString(), ::testing::StartsWith(detail));
    EXPECT_EQ(*detail == '\0', view_.NoPicture.Detail.isEmpty());
    EXPECT_EQ(view_.NoPicture.Folder, QFileInfo(path).absolutePath());
    EXPECT_EQ(Told(), "");
  };
  QDir().mkdir(Path("Ordner.sit"));
  expect(Path("Weg.sit"), "The file is not there.", "");
  expect(Path("Ordner.sit"), "This is a folder, no image.", "");
  expect(Write("Leer.tmp", {}), "The file is empty.", "");
  expect(Write("Fremd.xyz", Sit()), "This is no image that the program reads.",
         "The file's ending");
  expect(Write("Kurz.sit", First(Sit(), 900)), "The file is incomplete.", "The ");
  session_.Words.SetLanguage(1);
  RetellAboutFile(session_);
  EXPECT_EQ(view_.NoPicture.Reason, u"Die Datei ist unvollständig."_s);
  EXPECT_EQ(view_.NoPicture.FileName, u"Kurz.sit"_s) << "in its own case";
}

TEST_F(NoticeTest, WhatBreaksALoadIsAProblemOfTheFileAndNoFormerPictureStays) {
  Open("before.sit", Sit());
  LoadAfresh(session_, [] { throw std::bad_alloc(); });
  TellAboutFile(session_);
  ExpectNothingOfAnImage();
  ASSERT_NE(FindNoImage(session_.Faults), nullptr);
  EXPECT_EQ(FindNoImage(session_.Faults)->Kind, ProblemKind::kTooLarge);
  Open("again.sit", Sit());
  LoadAfresh(session_, [&] {
    session_.Faults.clear();
    session_.Steps.Run("create buffer", [] { throw StepFailure("no room"); });
  });
  TellAboutFile(session_);
  ExpectNothingOfAnImage();
  EXPECT_EQ(view_.NoPicture.Detail, u"No room."_s);
}

TEST_F(NoticeTest, AFaultyPictureIsShownWithAQuietNoticeThatTheNextLoadTakesAway) {
  Open("cut.sit", First(Sit(), 100001));
  EXPECT_TRUE(view_.PictureVisible);
  EXPECT_THAT(Told(), ::testing::StartsWith("The file is incomplete. The"));
  EXPECT_EQ(view_.Notice.Kind, NoticeKind::kQuiet);
  session_.Words.SetLanguage(2);
  RetellAboutFile(session_);
  EXPECT_THAT(Told(), ::testing::StartsWith("El archivo está incompleto. The"));
  session_.Faults.push_back(session_.Faults.front());
  RetellAboutFile(session_);
  EXPECT_EQ(FurtherText(view_.Notice, session_.Words), u"y 1 más"_s);
  session_.View.Notice.AboutFile = false;
  DismissNotice(session_.View);
  RetellAboutFile(session_);
  EXPECT_EQ(Told(), "") << "a closed notice stays closed";
  Open("cut.sit", First(Sit(), 100001));
  Open("good.sit", Sit());
  EXPECT_EQ(Told(), "");
}

TEST_F(NoticeTest, AFailedSaveAsksAgainFromAFolderThatIsThereAndASuccessIsTold) {
  Open("Wand.sit", Sit());
  Places places;
  places.Answers = {Path("no/such/w.jpg"), Path("w.jpg")};
  SaveJpeg(session_, places);
  ASSERT_EQ(places.Asked.size(), 2U);
  EXPECT_EQ(places.Asked[1].Suggestion, Path("w.jpg"));
  EXPECT_EQ(places.Asked[1].Refusal,
            u"Could not save w.jpg: the folder %1 is not there"_s.arg(Path("no/such")));
  EXPECT_EQ(Told(), "Saved w.jpg");
  EXPECT_FALSE(ReadAll(Path("w.jpg")).isEmpty());
  Places cancelled;
  QDir().mkdir(Path("w.bmp"));
  cancelled.Answers = {Path("w.bmp")};
  SaveBmp(session_, cancelled);
  EXPECT_EQ(cancelled.Asked.size(), 2U);
  EXPECT_EQ(Told(), "Could not save w.bmp: Is a directory");
  EXPECT_EQ(view_.Notice.Kind, NoticeKind::kFailed);
}

TEST_F(NoticeTest, WithoutAPictureSavingAndCopyingSayWhyTheyDoNothing) {
  Open("Wand.sit", Sit());
  Places places;
  SaveTxi(session_, places);
  EXPECT_THAT(Told(), ::testing::EndsWith("can be saved as TXI."));
  OpenAt(Path("weg.sit"));
  for (const auto save : {SaveBmp, SaveJpeg, SaveTxi, SaveCompositeBmp, SaveCompositeJpeg}) {
    DismissNotice(session_.View);
    save(session_, places);
    EXPECT_EQ(Told(), "There is no image to save or to copy.");
  }
  for (const auto copy : {CopyImage, CopyPaletteBar, CopyImageWithPaletteBar, CopyComposite}) {
    DismissNotice(session_.View);
    copy(session_);
    EXPECT_EQ(Told(), "There is no image to save or to copy.");
  }
  EXPECT_EQ(places.Questions, 0);
  EXPECT_TRUE(places.Asked.empty());
}

TEST_F(NoticeTest, RefusedEntriesAreToldAndTakenOnesAreNot) {
  Open("Wand.sit", Sit());
  const RenderPieces pieces = PiecesForRendering(session_, *progress_);
  EnterRangeTexts(Name("10"), Name("500"), session_.View);
  ApplyEnteredRange(pieces);
  EXPECT_EQ(Told(),
            "A range from 10.0 to 500.0 \u00B0C cannot be set between the limits -10.0 and "
            "50.0 \u00B0C.");
  EXPECT_EQ(view_.RangeHighText, u"40.0"_s) << "the range in force comes back";
  EnterRangeTexts(Name("10"), Name("30"), session_.View);
  ApplyEnteredRange(pieces);
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(session_.Range.RangeMaxValue(), 30.0);
  EnterLimitTexts(Name("60"), Name("90"), session_.View);
  ApplyEnteredLimits(pieces);
  EXPECT_THAT(Told(), ::testing::StartsWith("Limits from 60.0 to 90.0 \u00B0C cannot be set"));
  EXPECT_EQ(view_.LimitMinText, u"-10.0"_s);
  // What is typed and not entered does not survive the next load, even into the same range.
  EnterRangeTexts(Name("1"), Name("2"), session_.View);
  EnterLimitTexts(Name("3"), Name("4"), session_.View);
  Open("Wand.sit", Sit());
  EXPECT_EQ(view_.RangeLowText + view_.RangeHighText, u"0.040.0"_s);
  EXPECT_EQ(view_.LimitMinText, u"-10.0"_s);
}

TEST_F(NoticeTest, WhatHangsOnAnImageIsLetGoByALoadAndAClose) {
  struct Counter : ImageFollower {
    void ImageLeaves() override { ++Left; }
    void ImageArrived() override {}
    int Left = 0;
  } follower;
  session_.Follower = &follower;
  Open("Wand.sit", Sit());
  EXPECT_EQ(follower.Left, 1);
  session_.Image.VisibleWindowOpen = session_.View.VisibleImageEntries = true;
  session_.Image.SoundFile = Name("x.wav");
  CloseImage(session_, *progress_);
  EXPECT_EQ(follower.Left, 2);
  EXPECT_FALSE(image_.VisibleWindowOpen || view_.VisibleImageEntries);
  EXPECT_TRUE(image_.SoundFile.isEmpty());
}

}  // namespace
}  // namespace tessa::testing
