#include "core/process_start.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace tessa {

void PrepareProcess() {
  while (true) {
    const int opened = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (opened < 0 || opened > STDERR_FILENO) {
      ::close(opened);
      break;
    }
  }
  std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace tessa
