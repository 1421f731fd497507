// gandrel-cli: Gandrel's roller in a terminal.
#include "cli/CliRun.h"

int main(int argc, char** argv) {
  return gandrel::cli::CliMain(argc, argv);
}
