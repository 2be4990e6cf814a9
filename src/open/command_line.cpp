#include "open/command_line.h"

#include "core/path_bytes.h"

namespace tessa {

QString PendingFileFromArguments(std::span<const char* const> arguments) {
  constexpr QChar kQuote(u'"');
  QByteArray bytes;
  for (const char* const argument : arguments) {
    bytes += bytes.isNull() ? QByteArray(argument) : ' ' + QByteArray(argument);
  }
  const QString line = PathFromBytes(bytes);
  if (line.startsWith(kQuote) && line.endsWith(kQuote)) {
    return line.size() < 2 ? QString() : line.mid(1, line.size() - 2);
  }
  return line;
}

}  // namespace tessa
