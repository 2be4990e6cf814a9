#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <csignal>
#include <span>

#include "core/dialogs.h"
#include "export/image_report.h"
#include "open/load_image.h"
#include "open/load_steps.h"
#include "test_images.h"

namespace tessa::testing {

using namespace Qt::StringLiterals;

/// A folder of its own for one test, gone with it.
class TestFolder {
 public:
  QString Path(const QString& name) const { return folder_.filePath(name); }

  /// Writes a file into the folder and returns its path.
  QString Write(const QString& name, std::span<const std::uint8_t> bytes) const {
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
    return file.fileName();
  }

  QStringList Names() const {
    return QDir(folder_.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  }

 private:
  QTemporaryDir folder_;
};

inline QByteArray ReadAll(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline Bytes ReadBytes(const QString& path) {
  const QByteArray file = ReadAll(path);
  return {file.begin(), file.end()};
}

/// The texts of all languages.
inline QByteArray WordTable() {
  return ReadAll(u"" TESSA_SOURCE_FOLDER "/resources/strings.tsv"_s);
}

inline Bytes EncodedJpeg(const QImage& picture, int quality = 95) {
  QBuffer buffer;
  EXPECT_TRUE(picture.save(&buffer, "JPEG", quality));
  return {buffer.data().begin(), buffer.data().end()};
}

/// A photograph of 64 x 48: the left half red, the right half blue.
inline Bytes VisibleJpeg() {
  QImage picture(64, 48, QImage::Format_RGB32);
  picture.fill(Qt::blue);
  for (int i = 0; i < 32 * 48; ++i) {
    picture.setPixel(i % 32, i / 32, qRgb(255, 0, 0));
  }
  return EncodedJpeg(picture);
}

/// For as long as it lives no file can grow beyond `size` bytes.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t size) {
    std::signal(SIGXFSZ, SIG_IGN);
    EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &before_), 0);
    const rlimit limit{size, before_.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

/// Acts as a user whom file permissions bind, also where the tests run as root.
class OrdinaryUser {
 public:
  OrdinaryUser() { EXPECT_TRUE(!wasRoot_ || ::setresuid(kNobody, kNobody, 0) == 0); }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
  ~OrdinaryUser() { EXPECT_TRUE(!wasRoot_ || ::setresuid(0, 0, 0) == 0); }
  static constexpr uid_t kNobody = 65534;

 private:
  bool wasRoot_ = ::getuid() == 0;
};

/// Cancels whatever is asked.
class NoDialogs : public Dialogs {
 public:
  std::optional<QString> AskOpenFile(const OpenFileQuestion& /*question*/) override { return {}; }
  std::optional<QString> AskSaveFile(const SaveFileQuestion& /*question*/) override { return {}; }
  Answer AskYesNoCancel(const QString& /*text*/) override { return Answer::kCancel; }
  std::optional<QString> AskText(const QString& /*prompt*/) override { return {}; }
};

/// The folder of the built program, with its palette file.
inline ApplicationFolder BuiltProgramFolder() {
  const QString folder = QStringLiteral(TESSA_BINARY_FOLDER);
  return {folder, folder};
}

/// Every fact of the JSON object `facts` stands in the report.
inline void ExpectFacts(const QJsonObject& report, const QByteArray& facts) {
  const QJsonObject expected = QJsonDocument::fromJson(facts).object();
  EXPECT_FALSE(expected.isEmpty()) << "no JSON: " << facts.toStdString();
  for (const QString& key : expected.keys()) {
    EXPECT_EQ(QJsonDocument(QJsonObject{{key, report.value(key)}}).toJson().toStdString(),
              QJsonDocument(QJsonObject{{key, expected.value(key)}}).toJson().toStdString());
  }
}

/// A session that opens files of its own folder.
class LoadTest : public ::testing::Test {
 protected:
  LoadTest() { PrepareSession(session_); }

  static QString Name(const char* name) { return QString::fromLatin1(name); }
  QString Path(const char* name) const { return folder_.Path(Name(name)); }
  QString Write(const char* name, std::span<const std::uint8_t> content) const {
    return folder_.Write(Name(name), content);
  }
  void OpenAt(const QString& path) {
    OpenPath(path, session_, *progress_);
    const bool shown = FindNoImage(session_.Faults) == nullptr;
    EXPECT_EQ(view_.PictureVisible && view_.HasImage && view_.ScalePanelVisible, shown);
    EXPECT_NE(view_.NoPicture.Shown, shown);
    if (!shown) {
      ExpectNothingOfAnImage();
    }
    EXPECT_FALSE(view_.BlankPanelVisible || view_.LoadProgressVisible || view_.LoadingTextVisible ||
                 view_.BusyPointer || view_.SuppressEvents || image_.ImageBusy);
    EXPECT_EQ(image_.ImageWidth, picture_.BufWidth());
    EXPECT_EQ(image_.ImageHeight, picture_.BufHeight());
  }
  /// No trace of this or a former image in records and buffers.
  void ExpectNothingOfAnImage() const {
    EXPECT_FALSE(view_.PictureVisible || view_.HasImage || view_.ScalePanelVisible ||
                 view_.BottomPanelVisible || view_.FrameRowVisible || view_.RangeEntryVisible ||
                 view_.VisibleImageEntries || image_.HasTemperature || image_.HasVisibleImage);
    EXPECT_EQ(picture_.BufWidth() + image_.FrameCount + image_.RowBuffers.Rows(), 0);
    EXPECT_TRUE(image_.TempGrid.Empty());
    EXPECT_EQ(image_.Emissivity, 0.0F);
    EXPECT_EQ(
        (view_.Comment + view_.Memo + image_.ImageDate + image_.ImageTime + view_.StatusPanel[3] +
         view_.StatusPanel[4] + view_.StatusPanel[5] + view_.RangeLowText + view_.FrameText)
            .toStdString(),
        "");
    EXPECT_EQ(view_.NoPicture.FileName, QFileInfo(image_.CurrentFilePath).fileName());
  }
  void Open(const char* name, std::span<const std::uint8_t> content) {
    OpenAt(Write(name, content));
  }
  /// Row of the buffer; the row buffer is checked to hold the same.
  std::vector<std::uint8_t> Row(int row) {
    const auto indices = picture_.IndexRow(row);
    const auto cells = image_.RowBuffers.Row(row);
    EXPECT_TRUE(std::equal(cells.begin(), cells.end(), indices.begin(), indices.end())) << row;
    return {indices.begin(), indices.end()};
  }
  void ExpectNoFaults() const {
    EXPECT_EQ(FactsOf(session_.Faults), std::vector<FaultFacts>());
    EXPECT_TRUE(session_.Steps.Failures().empty());
  }
  void ExpectOneFault(ProblemKind kind, std::uint64_t offset, const char* field, bool noImage) {
    EXPECT_EQ(FactsOf(session_.Faults), (std::vector<FaultFacts>{{kind, offset, field, noImage}}));
  }
  /// What the report and the texts of the view say.
  void ExpectReport(const QByteArray& facts) const {
    QJsonObject report = ReportAsJson(session_);
    report[Name("RangeLowText")] = view_.RangeLowText;
    report[Name("RangeHighText")] = view_.RangeHighText;
    report[Name("LimitMinText")] = view_.LimitMinText;
    report[Name("LimitMaxText")] = view_.LimitMaxText;
    report[Name("LoadButtonTip")] = LoadButtonTip(image_, session_.Words);
    report[Name("RangeToggleVisible")] = view_.RangeToggleVisible;
    ExpectFacts(report, facts);
  }
  void ExpectScaleTexts(const char* low, const char* high, const char* limitMin,
                        const char* limitMax) const {
    EXPECT_EQ(image_.ScaleLowText.toStdString(), low);
    EXPECT_EQ(image_.ScaleHighText.toStdString(), high);
    EXPECT_EQ(view_.RangeLowText.toStdString(), low);
    EXPECT_EQ(view_.RangeHighText.toStdString(), high);
    EXPECT_EQ(view_.LimitMinText.toStdString(), limitMin);
    EXPECT_EQ(view_.LimitMaxText.toStdString(), limitMax);
  }

  TestFolder folder_;
  Session session_{BuiltProgramFolder()};
  Progress plain_;
  Progress* progress_ = &plain_;
  Picbuf& picture_ = session_.Buffers.Picbuf1;
  const OpenImage& image_ = session_.Image;
  const ViewState& view_ = session_.View;
};

struct Outcome {
  int Status = -1;
  std::string Out;
  std::string Error;
};

inline Outcome RunProgram(const char* program, const QStringList& arguments) {
  QProcess process;
  process.start(QStringLiteral(TESSA_BINARY_FOLDER "/") + QString::fromLatin1(program), arguments);
  EXPECT_TRUE(process.waitForFinished(60000)) << process.errorString().toStdString();
  EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
  return {process.exitCode(), process.readAllStandardOutput().toStdString(),
          process.readAllStandardError().toStdString()};
}

/// Runs the tool on files of a folder of its own.
class ToolTest : public ::testing::Test {
 protected:
  QString Path(const char* name) const { return folder_.Path(QString::fromLatin1(name)); }
  void Write(const char* name, const Bytes& bytes) const {
    folder_.Write(QString::fromLatin1(name), bytes);
  }
  /// Arguments that name a file of the folder begin with "@".
  Outcome Run(const std::vector<const char*>& words) const {
    QStringList arguments;
    for (const char* word : words) {
      arguments += *word == '@' ? Path(word + 1) : QString::fromUtf8(word);
    }
    return RunProgram("tessatool", arguments);
  }
  /// An export that has to succeed without a word; returns what it wrote.
  QByteArray Export(const char* source, const char* target,
                    const std::vector<const char*>& options = {}) const {
    std::vector<const char*> words = {"export", source, "-o", target, "--force"};
    words.insert(words.end(), options.begin(), options.end());
    const Outcome outcome = Run(words);
    EXPECT_EQ(outcome.Status, 0) << source;
    EXPECT_EQ(outcome.Out + outcome.Error, "") << source;
    return ReadAll(Path(target + 1));
  }

  TestFolder folder_;
};

}  // namespace tessa::testing
