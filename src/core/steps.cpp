#include "core/steps.h"

#include <QLoggingCategory>
#include <cmath>
#include <limits>

namespace tessa {
namespace {

// Silent unless asked for with QT_LOGGING_RULES="tessa.steps=true".
Q_LOGGING_CATEGORY(stepCategory, "tessa.steps", QtFatalMsg)

}  // namespace

void StepLog::Record(std::string_view name, std::string_view reason) {
  if (failures_.size() < kMostKept) {
    failures_.push_back({std::string(name), std::string(reason)});
  }
  qCDebug(stepCategory, "%.*s: %.*s", static_cast<int>(name.size()), name.data(),
          static_cast<int>(reason.size()), reason.data());
}

int RoundToInteger(double value) {
  const double rounded = std::nearbyint(value);
  if (!(rounded >= std::numeric_limits<int>::min() && rounded <= std::numeric_limits<int>::max())) {
    throw StepFailure("the number does not fit an integer");
  }
  return static_cast<int>(rounded);
}

double Divide(double numerator, double denominator) {
  if (denominator == 0.0) {
    throw StepFailure("division by zero");
  }
  return numerator / denominator;
}

}  // namespace tessa
