#include "cli/CliDistribution.h"

#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "app/Calculator.h"
#include "app/modGandrel.h"
#include "calc/Basic.h"
#include "calc/Markers.h"
#include "calc/UserInterface.h"
#include "cli/CliJson.h"
#include "cli/CliRun.h"
#include "cli/CliScripts.h"

namespace gandrel::cli {

namespace {

// The terminal has no script editor: a script file's text stands in for it
// while its distribution is worked out.
class ScriptOnlyView final : public MainView {
 public:
  explicit ScriptOnlyView(std::string script) : script_(std::move(script)) {}
  std::string DieValueText() const override { return ""; }
  void SetDieValueText(const std::string&) override {}
  void ShowDieList(const std::vector<std::string>&, const std::string&) override {}
  void ShowRoll(const RollOutcome&) override {}
  std::string ScriptText() const override { return script_; }
  void SetScriptText(const std::string&) override {}
  void ShowScriptState(const std::string&, bool) override {}
  std::string AskScriptFile(FileQuestion, const std::string&, const std::string&) override {
    return "";
  }

 private:
  std::string script_;
};

std::string Padded(const std::string& text, size_t width) {
  return text.size() >= width ? text : std::string(width - text.size(), ' ') + text;
}

std::string FiguresLine(const Distribution& dist) {
  auto figure = [&](double v) { return FigureText(dist, v); };
  const DistSummary& s = dist.summary;
  return "mean " + figure(s.mean) + ", sd " + figure(s.sd) + ", min " + figure(s.min) + ", max " +
         figure(s.max) + ", median " + figure(s.median) + "\n";
}

std::string LossesLine(const Distribution& dist) {
  std::string line =
      "failure " + PercentText(dist.summary.failure) + ", truncated " + PercentText(dist.truncated);
  if (dist.method == DistMethod::MonteCarlo)
    line += ", standard error of the mean " + FigureText(dist, dist.standardError);
  return line + "\n";
}

std::string Table(const Distribution& dist) {
  size_t width = 6;
  for (const DistOutcome& o : dist.outcomes)
    width = std::max(width, o.text.size());
  const size_t column = 11;
  std::string text = Padded("result", width) + Padded("probability", column + 2) +
                     Padded("at least", column) + Padded("at most", column) + "\n";
  for (size_t i = 0; i < dist.outcomes.size(); ++i) {
    const DistOutcome& o = dist.outcomes[i];
    text += Padded(o.text, width) + Padded(PercentText(o.probability), column + 2);
    if (i < dist.atLeast.size())
      text += Padded(PercentText(dist.atLeast[i]), column) +
              Padded(PercentText(dist.atMost[i]), column);
    text += "\n";
  }
  return text;
}

bool Worked(const Distribution& dist) {
  return dist.method != DistMethod::NotExact;
}

// Every result the die value can show is a failure marker.
bool OnlyMarkers(const Distribution& dist) {
  return std::all_of(dist.outcomes.begin(), dist.outcomes.end(),
                     [](const DistOutcome& o) { return IsFailureMarker(o.text); });
}

std::string SummaryJson(const Distribution& dist) {
  const DistSummary& s = dist.summary;
  auto figure = [&](double v) { return s.numeric > 0 ? JsonNumber(v) : std::string("null"); };
  std::string json = ",\"mean\":" + figure(s.mean) + ",\"sd\":" + figure(s.sd) +
                     ",\"min\":" + figure(s.min) + ",\"max\":" + figure(s.max) +
                     ",\"median\":" + figure(s.median) + ",\"failure\":" + JsonNumber(s.failure) +
                     ",\"truncated\":" + JsonNumber(dist.truncated);
  if (dist.method == DistMethod::MonteCarlo)
    json += ",\"samples\":" + std::to_string(dist.samples) +
            ",\"stderr\":" + JsonNumber(dist.standardError);
  return json;
}

// The progress of a long estimate, on one line of a terminal's error stream.
class ProgressLine {
 public:
  ProgressLine(FILE* err, const std::string& dieValue)
      : err_(err), shown_(isatty(fileno(err)) == 1), dieValue_(dieValue) {}
  ~ProgressLine() {
    if (written_) std::fputs("\r\033[K", err_);
  }
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  bool Report(CalculatorStep step, double done) {
    if (!shown_ || step != CalculatorStep::Rolling) return true;
    std::fprintf(err_, "\r\033[Kgandrel-cli: rolling %s: %.0f%%", dieValue_.c_str(), done * 100);
    std::fflush(err_);
    written_ = true;
    return true;
  }

 private:
  FILE* err_;
  bool shown_;
  bool written_ = false;
  std::string dieValue_;
};

class DistributionLoop {
 public:
  DistributionLoop(const CliOptions& options, FILE* out, FILE* err)
      : options_(options), out_(out), err_(err) {}

  // Works out and prints one die value; false once Ctrl-C stopped the run.
  bool Print(const std::string& dieValue) {
    std::string text;
    Distribution dist;
    if (Calculate(dieValue, dist)) {
      if (!Worked(dist) || OnlyMarkers(dist)) status = 1;
      text = options_.json ? DistributionJson(dieValue, dist)
                           : DistributionText(dieValue, dist, options_.quiet);
    } else {
      status = 1;
      if (options_.json)
        text =
            "{\"dieValue\":" + JsonString(dieValue) + ",\"error\":" + JsonString(problem_) + "}\n";
    }
    if (!options_.json && !first_ && !options_.quiet) text.insert(0, "\n");
    first_ = false;
    std::fwrite(text.data(), 1, text.size(), out_);
    if (Interrupted()) status = 1;
    return !Interrupted() && std::ferror(out_) == 0;
  }

  int status = 0;

 private:
  // False when a script file cannot be read (the user has been told).
  bool Calculate(const std::string& dieValue, Distribution& dist) {
    std::string script, reason;
    if (IsScriptFileName(dieValue) && !ReadScriptFile(Trim(dieValue), script, reason)) {
      problem_ = "cannot read " + Trim(dieValue) + ": " + reason;
      MsgBox(problem_);
      return false;
    }
    ScriptOnlyView view(script);
    MainViewScope scope(&view);
    ProgressLine line(err_, dieValue);
    CalculatorOptions calculator;
    calculator.rolls = options_.samples;
    calculator.progress = [&line](CalculatorStep step, double done) {
      return line.Report(step, done);
    };
    dist = CalculateDistribution(dieValue, calculator);
    if (!Worked(dist) && options_.json) {
      problem_ = dist.reason;
      return false;
    }
    return true;
  }

  const CliOptions& options_;
  FILE* out_;
  FILE* err_;
  bool first_ = true;
  std::string problem_;
};

}  // namespace

std::string DistributionText(const std::string& dieValue, const Distribution& dist, bool quiet) {
  std::string text;
  if (!quiet) text = dieValue + ": " + MethodText(dist) + "\n";
  if (!Worked(dist)) return text;
  text += Table(dist);
  if (!quiet) text += FiguresLine(dist) + LossesLine(dist);
  return text;
}

std::string DistributionJson(const std::string& dieValue, const Distribution& dist) {
  std::string json = "{\"dieValue\":" + JsonString(dieValue) + ",\"method\":" +
                     (dist.method == DistMethod::Exact ? "\"exact\"" : "\"montecarlo\"") +
                     ",\"outcomes\":[";
  for (size_t i = 0; i < dist.outcomes.size(); ++i) {
    if (i > 0) json += ',';
    json += "{\"result\":" + JsonString(dist.outcomes[i].text) +
            ",\"p\":" + JsonNumber(dist.outcomes[i].probability) + "}";
  }
  return json + "]" + SummaryJson(dist) + "}\n";
}

int PrintDistributions(const CliOptions& options, FILE* in, FILE* out, FILE* err) {
  DistributionLoop loop(options, out, err);
  if (!options.dieValues.empty()) {
    for (const std::string& dieValue : options.dieValues)
      if (!loop.Print(dieValue)) break;
    return loop.status;
  }
  std::string line;
  while (ReadLine(in, line))
    if (!loop.Print(line)) break;
  if (Interrupted()) loop.status = 1;
  return loop.status;
}

}  // namespace gandrel::cli
