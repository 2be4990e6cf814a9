#include "core/program_version.h"

namespace tessa {

QString ProgramVersion() {
  return QStringLiteral(TESSA_VERSION);
}

}  // namespace tessa
