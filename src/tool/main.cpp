#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include "tool/command_line.h"

int main(int argc, char** argv) {
  // A file that is written must never get the number of a standard stream that came closed. The
  // stand-in can be read only, so that output to it still fails.
  while (true) {
    const int opened = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (opened < 0 || opened > STDERR_FILENO) {
      ::close(opened);
      break;
    }
  }
  // Image after image takes and returns the same few blocks; handing them back to the system and
  // asking for them again would cost as much as the decoding.
  constexpr int kKeptBytes = 256 << 20;
  mallopt(M_MMAP_THRESHOLD, kKeptBytes);
  mallopt(M_TRIM_THRESHOLD, kKeptBytes);
  mallopt(M_TOP_PAD, 4 << 20);
  return tessa::RunToolCommandLine(argc, argv);
}
