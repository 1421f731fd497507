// What the terminal front end's tests share: RunCli over memory streams with
// a settings folder of its own, and the program itself run by the shell.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "cli/CliOptions.h"
#include "cli/CliRun.h"
#include "support/EngineFixture.h"
#include "support/TempFolder.h"

namespace gandrel::cli {

using Args = std::vector<std::string>;

struct CliOutcome {
  int status;
  std::string out, err;
};

class CliRunTest : public testing::EngineTest {
 protected:
  void SetUp() override {
    EngineTest::SetUp();
    ClearInterrupts();
  }
  void TearDown() override {
    ClearInterrupts();
    EngineTest::TearDown();
  }

  // RunCli with the arguments after "--config <the test's folder>".
  CliOutcome Run(Args args, std::string input = "") {
    args.insert(args.begin(), {"--config", config.path()});
    CliOptions options;
    EXPECT_EQ(ParseCliOptions(args, options), "");
    FILE* in = fmemopen(input.data(), input.size(), "r");
    char *outText = nullptr, *errText = nullptr;
    size_t outSize = 0, errSize = 0;
    FILE *out = open_memstream(&outText, &outSize), *err = open_memstream(&errText, &errSize);
    int status = RunCli(options, in, out, err);
    for (FILE* f : {in, out, err})
      std::fclose(f);
    CliOutcome o{status, outText, errText};
    std::free(outText);
    std::free(errText);
    return o;
  }

  testing::TempFolder config;
};

// A shell command's exit status and standard output.
inline CliOutcome Shell(const std::string& command) {
  CliOutcome run{-1, "", ""};
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return run;
  char buffer[512];
  for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
    run.out.append(buffer, n);
  run.status = WEXITSTATUS(pclose(pipe));
  return run;
}

}  // namespace gandrel::cli
