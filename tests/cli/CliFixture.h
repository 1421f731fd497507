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

// Standard input from a text; standard output and error kept in memory.
class MemoryStreams {
 public:
  explicit MemoryStreams(std::string input) : input_(std::move(input)) {
    // fmemopen wants a size of at least 1.
    in =
        input_.empty() ? std::fopen("/dev/null", "r") : fmemopen(input_.data(), input_.size(), "r");
    out = open_memstream(&outText_, &outSize_);
    err = open_memstream(&errText_, &errSize_);
  }
  ~MemoryStreams() {
    for (FILE* f : {in, out, err})
      std::fclose(f);
    std::free(outText_);
    std::free(errText_);
  }
  std::string Out() {
    std::fflush(out);
    return std::string(outText_, outSize_);
  }
  std::string Err() {
    std::fflush(err);
    return std::string(errText_, errSize_);
  }
  FILE *in, *out, *err;

 private:
  std::string input_;
  char *outText_ = nullptr, *errText_ = nullptr;
  size_t outSize_ = 0, errSize_ = 0;
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
    MemoryStreams streams(input);
    int status = RunCli(options, streams.in, streams.out, streams.err);
    return {status, streams.Out(), streams.Err()};
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
