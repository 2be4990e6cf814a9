#include <sys/stat.h>

#include <QElapsedTimer>
#include <QProcess>

#include "browser/contact_sheet.h"
#include "core/steps.h"
#include "test_files.h"
#include "test_main_window.h"
#include "windows/system_printer.h"

namespace tessa::testing {
namespace {

constexpr const char* kServer = "/usr/sbin/cupsd";
constexpr const char* kDescription = "/usr/share/ppd/cups-pdf/CUPS-PDF_opt.ppd";
const QString kQueue = QStringLiteral("TessaPdf");

int Call(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.start(program, arguments);
  return process.waitForFinished(20000) ? process.exitCode() : -1;
}

/// A print server of this process's own, with the queue of a PDF printer that prints into a file.
class PrintServer {
 public:
  PrintServer() {
    const QByteArray folder = QFile::encodeName(folder_.path());
    qputenv("HOME", folder);  // A user's own default printer does not count.
    qputenv("CUPS_SERVER", folder + "/socket");
    if (!QFile::exists(QLatin1String(kServer)) || !QFile::exists(QLatin1String(kDescription))) {
      return;
    }
    ::chmod(folder.constData(), 0755);
    for (const char* name : {"spool", "spool/tmp", "cache", "state"}) {
      QDir(folder_.path()).mkdir(QString::fromLatin1(name));
    }
    Write("files.conf",
          "ServerRoot F\nRequestRoot F/spool\nTempDir F/spool/tmp\nCacheDir F/cache\n"
          "StateDir F/state\nErrorLog F/errors\nAccessLog F/access\nPageLog F/pages\n"
          "FileDevice Yes\n");
    Write("cupsd.conf",
          "Listen F/socket\nBrowsing Off\nDefaultAuthType None\nWebInterface No\n"
          "<Location />\nAllow all\n</Location>\n"
          "<Location /admin>\nAllow all\n</Location>\n"
          "<Policy default>\n<Limit All>\nOrder deny,allow\n</Limit>\n</Policy>\n");
    server_.start(QLatin1String(kServer),
                  {QStringLiteral("-f"), QStringLiteral("-c"), Path("cupsd.conf"),
                   QStringLiteral("-s"), Path("files.conf")});
    QElapsedTimer clock;
    clock.start();
    while (!IsRunning && clock.elapsed() < 10000 && server_.state() != QProcess::NotRunning) {
      IsRunning = QFile::exists(Path("socket")) &&
                  Call(QStringLiteral("lpadmin"),
                       {QStringLiteral("-p"), kQueue, QStringLiteral("-E"), QStringLiteral("-v"),
                        QStringLiteral("file://") + Printed(), QStringLiteral("-P"),
                        QLatin1String(kDescription)}) == 0 &&
                  Call(QStringLiteral("lpadmin"), {QStringLiteral("-d"), kQueue}) == 0;
      server_.waitForFinished(50);
    }
  }
  ~PrintServer() {
    server_.terminate();
    server_.waitForFinished(5000);
  }

  QString Printed() const { return Path("printed.ps"); }
  /// The printed page at 30 dots an inch, once it has come; null: none within ten seconds.
  QImage Page() const {
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 10000 && !ReadAll(Printed()).contains("%%EOF")) {
      QTest::qWait(100);
    }
    Call(QStringLiteral("gs"),
         {QStringLiteral("-q"), QStringLiteral("-dSAFER"), QStringLiteral("-dBATCH"),
          QStringLiteral("-dNOPAUSE"), QStringLiteral("-sDEVICE=ppmraw"), QStringLiteral("-r30"),
          QStringLiteral("-sOutputFile=") + Path("page%d.ppm"), Printed()});
    EXPECT_FALSE(QFile::exists(Path("page2.ppm")));
    QFile::remove(Printed());
    return QImage(Path("page1.ppm"));
  }

  bool IsRunning = false;

 private:
  QString Path(const char* name) const { return folder_.filePath(QString::fromLatin1(name)); }
  void Write(const char* name, QByteArray lines) const {
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(lines.replace(" F", ' ' + QFile::encodeName(folder_.path())));
  }

  QTemporaryDir folder_;
  QProcess server_;
};

PrintServer* server = nullptr;

/// How many pixels of the page are of a colour that nothing but a red picture has.
int RedPixels(const QImage& page) {
  int count = 0;
  for (int y = 0; y < page.height(); ++y) {
    for (int x = 0; x < page.width(); ++x) {
      const QColor colour = page.pixelColor(x, y);
      count += colour.red() > 200 && colour.green() < 60 && colour.blue() < 60 ? 1 : 0;
    }
  }
  return count;
}

class PrintQueue : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!server->IsRunning) {
      GTEST_SKIP() << "no print server with a PDF printer can be started here";
    }
  }
  SystemPrinter printers_;
};

TEST_F(PrintQueue, APageComesOutOfThePrinterAndARefusalIsTold) {
  EXPECT_EQ(printers_.Names(), QStringList(kQueue));
  EXPECT_EQ(printers_.DefaultName(), kQueue);
  QImage red(32, 24, QImage::Format_RGB32);
  red.fill(Qt::red);
  const Sheet sheet{QStringLiteral("Heading"),
                    std::vector<SheetTile>(kTilesOnSheet, {QStringLiteral("name"), red})};
  const auto print = [&](const QString& printer) {
    return printers_
        .Print(printer, QStringLiteral("a page"),
               [&](QPaintDevice& device) { PrintSheet(sheet, device); })
        .toStdString();
  };
  EXPECT_EQ(print(kQueue), "");
  // Ten pictures of about two inches by one and a half.
  const int red10 = RedPixels(server->Page());
  EXPECT_GT(red10, 10 * 50 * 35);
  EXPECT_LT(red10, 10 * 65 * 50);
  EXPECT_EQ(print(QStringLiteral("nowhere")), "there is no such printer");
  ASSERT_EQ(Call(QStringLiteral("cupsreject"), {kQueue}), 0);
  EXPECT_NE(print(kQueue), "");
  ASSERT_EQ(Call(QStringLiteral("cupsaccept"), {kQueue}), 0);
  EXPECT_EQ(
      printers_.Print(kQueue, QString(), [](QPaintDevice&) { throw StepFailure("too small"); }),
      QStringLiteral("too small"));
}

TEST_F(PrintQueue, TheToolPrintsItsSheet) {
  TestFolder folder;
  const QString image = folder.Write(QStringLiteral("a.sit"), EncodedScene());
  const Outcome good = RunProgram(
      "tessatool", {QStringLiteral("sheet"), image, QStringLiteral("--printer"), kQueue});
  EXPECT_EQ(good.Status, 0) << good.Error;
  EXPECT_FALSE(server->Page().isNull());
  const Outcome bad = RunProgram("tessatool", {QStringLiteral("sheet"), image,
                                               QStringLiteral("--printer"), QStringLiteral("no")});
  EXPECT_EQ(bad.Status, 1);
  EXPECT_NE(bad.Error.find("no: the sheet was not printed"), std::string::npos) << bad.Error;
}

}  // namespace
}  // namespace tessa::testing

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  tessa::testing::PrintServer server;  // Before anything asks for printers.
  tessa::testing::server = &server;
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
