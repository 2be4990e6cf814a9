#include "core/platform_failure.h"

#include <QByteArray>
#include <QLatin1String>
#include <QString>
#include <QtGlobal>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "core/plain_line.h"

namespace tessa {
namespace {

// A message handler is a plain function; these two are what it can reach.
const char* startingProgram = nullptr;
QtMessageHandler formerHandler = nullptr;

void HandleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (type == QtFatalMsg) {
    ExitWithoutPlatform(startingProgram);
  }
  if (!QLatin1String(context.category).startsWith(QLatin1String("qt.qpa"))) {
    formerHandler(type, context, message);
  }
}

std::string Named(const char* variable) {
  return std::string(variable) + " is " + PlainLine(qgetenv(variable).toStdString());
}

}  // namespace

void BeginPlatformStart(const char* program) {
  startingProgram = program;
  formerHandler = qInstallMessageHandler(HandleMessage);
}

void EndPlatformStart() {
  qInstallMessageHandler(formerHandler);
}

void ExitWithoutPlatform(const char* program) {
  std::string reason;
  if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
    reason = "Qt has no working plug-in for this platform (" + Named("QT_QPA_PLATFORM") + ")";
  } else if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
    reason = "no display can be reached (" + Named("WAYLAND_DISPLAY") +
             "), or Qt's plug-in for it is missing";
  } else if (!qEnvironmentVariableIsEmpty("DISPLAY")) {
    reason =
        "no display can be reached (" + Named("DISPLAY") + "), or Qt's plug-in for it is missing";
  } else {
    reason = "no display can be reached: neither DISPLAY nor WAYLAND_DISPLAY is set";
  }
  std::fprintf(stderr, "%s: %s\n", program, reason.c_str());
  std::_Exit(EXIT_FAILURE);
}

}  // namespace tessa
