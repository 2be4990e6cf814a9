#include <gmock/gmock.h>

#include <QImage>
#include <QListWidget>

#include "test_browser_window.h"
#include "windows/printer_dialog.h"

namespace tessa::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// Prints pages on a picture.
class PaperPrinter : public SheetPrinter {
 public:
  explicit PaperPrinter(QImage& paper) : paper_(paper) {}
  QStringList Names() const override { return {QStringLiteral("Laser"), QStringLiteral("Ink")}; }
  QString DefaultName() const override { return QStringLiteral("Ink"); }
  QString Print(const QString& name, const QString& title,
                const std::function<void(QPaintDevice&)>& paint) override {
    paper_.fill(Qt::white);
    paper_.setText(QStringLiteral("job"), name + QLatin1Char('|') + title);
    paint(paper_);
    return name == QLatin1String("Laser") ? QStringLiteral("out of <toner>") : QString();
  }

 private:
  QImage& paper_;
};

using PrintWindow = BrowserTest;

TEST_F(PrintWindow, PagesGoToTheChosenPrinterOrIntoAFile) {
  folder_.Write(QStringLiteral("images/f1.sit"), EncodedScene());
  Browse([&](BrowserWindow& browser) {
    QImage paper(1650, 1200, QImage::Format_RGB32);
    paper.setDotsPerMeterX(5906);
    paper.setDotsPerMeterY(5906);
    browser.SetPrinters(std::make_unique<PaperPrinter>(paper));
    Script& script = Answering(browser, "");
    const auto print = [&](int row, const char* button, const char* preselected) {
      QTimer::singleShot(0, &browser, [&, row, button, preselected] {
        auto* const dialog = qobject_cast<PrinterDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        auto& list = In<QListWidget>(*dialog, "List1");
        EXPECT_EQ(list.currentItem()->text().toStdString(), preselected);
        list.setCurrentRow(row);
        In<QPushButton>(*dialog, button).click();
      });
      Click(browser, "Command7");
    };
    print(0, "Command2", "Ink");
    EXPECT_EQ(paper.text(QStringLiteral("job")), QString());
    print(1, "Command1", "Ink");
    EXPECT_EQ(paper.text(QStringLiteral("job")), QStringLiteral("Ink|") + Images());
    EXPECT_NE(paper.pixel(200, 400), qRgb(255, 255, 255));
    EXPECT_EQ(script.Told.size(), 0u);
    print(0, "Command1", "Ink");
    EXPECT_THAT(script.Told, ElementsAre("Print|Could not print: out of <toner>"));
    script.SaveTo = folder_.Path(QStringLiteral("page.pdf"));
    print(2, "Command1", "Laser");
    EXPECT_EQ(script.AskedSave, folder_.Path(QStringLiteral("images.pdf")));
    EXPECT_TRUE(ReadAll(*script.SaveTo).startsWith("%PDF-"));
    EXPECT_THAT(In<QLabel>(browser, "Counts").text().toStdString(), HasSubstr("page.pdf"));
    script.SaveTo = folder_.Path(QStringLiteral("none/page.pdf"));
    print(2, "Command1", "PDF file");
    EXPECT_THAT(script.Told.back(), HasSubstr("No such file"));
    EXPECT_FALSE(In<QLabel>(browser, "SSPanel5").isVisible());
  });
}

}  // namespace
}  // namespace tessa::testing
