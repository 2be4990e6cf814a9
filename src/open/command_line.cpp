#include "open/command_line.h"

namespace tessa {

QString PendingFileFromArguments(const QStringList& arguments) {
  constexpr QChar kQuote(u'"');
  const QString line = arguments.join(QLatin1Char(' '));
  if (line.startsWith(kQuote) && line.endsWith(kQuote)) {
    return line.size() < 2 ? QString() : line.mid(1, line.size() - 2);
  }
  return line;
}

}  // namespace tessa
