#include "view/image_tools.h"

#include "core/units.h"

namespace tessa {
namespace {

void EnterNumber(const char* prompt, int lowest, int highest, QString& caption, Dialogs& dialogs,
                 StepLog& steps) {
  const auto answer = dialogs.AskText(QString::fromLatin1(prompt));
  if (!answer) {
    return;
  }
  steps.Run("entered number", [&] {
    const int number = RoundToInteger(ParseNumber(*answer));
    if (number >= lowest && number <= highest) {
      caption = QString::number(number);
    }
  });
}

}  // namespace

// The prompts stay English in every language.

void EnterRotationAngle(ViewState& view, Dialogs& dialogs, StepLog& steps) {
  EnterNumber("Enter Rotation Angle", -360, 360, view.RotationCaption, dialogs, steps);
}

void EnterEdgeMagnitude(ViewState& view, Dialogs& dialogs, StepLog& steps) {
  EnterNumber("Enter Edge Magnitude (0 to 10)", 0, 10, view.EdgeCaption, dialogs, steps);
}

}  // namespace tessa
