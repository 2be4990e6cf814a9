#include "shell/tool_command_line.h"

int main(int argc, char** argv) {
  return tessa::RunToolCommandLine(argc, argv);
}
