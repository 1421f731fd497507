// The dice calculator: exact when it can be, otherwise an estimate from real
// rolls made with nothing shown and nothing kept.
#include "app/Calculator.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "app/modGandrel.h"
#include "calc/EngineSettings.h"
#include "calc/Markers.h"
#include "calc/RunFlags.h"
#include "calc/UserInterface.h"
#include "dice/modDiceCalc.h"
#include "script/ScriptFiles.h"
#include "script/ScriptWindows.h"

namespace gandrel {

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kProgressEvery = std::chrono::milliseconds(50);

bool BreakAsked() {
  return runFlags.BreakRequested || runFlags.BreakForced;
}

// The user's state, kept aside while the estimate works on its own copy.
struct UserState {
  EngineSettings settings;
  DieTypeTables types;
};

// Swaps the user's state in and out around every event the front end runs,
// so that whatever the user does meanwhile (a save on closing) sees the
// user's default die and die types, not a script's. Messages are swallowed;
// the busy pointer is the front end's own business.
class EstimateInterface final : public UserInterface {
 public:
  EstimateInterface(UserInterface& outer, UserState& user) : outer_(outer), user_(user) {}

  MsgAnswer ShowMessage(const std::string&, MsgButtons buttons, MsgIcon,
                        const std::string&) override {
    return buttons == MsgButtons::Ok ? MsgAnswer::Ok : MsgAnswer::Cancel;
  }
  void ProcessEvents() override {
    Exchange();
    outer_.ProcessEvents();
    Exchange();
  }
  void WaitForEvents() override {
    Exchange();
    outer_.WaitForEvents();
    Exchange();
  }

 private:
  void Exchange() {
    std::swap(engineSettings, user_.settings);
    std::swap(dieTypes, user_.types);
  }
  UserInterface& outer_;
  UserState& user_;
};

// For the length of an estimate: the quiet interfaces installed (every
// prompt at its default, OPEN FILE opening files that keep nothing), the
// user's state kept aside and put back at the end.
class EstimateScope {
 public:
  EstimateScope()
      : user_{engineSettings, dieTypes},
        logOn_(runFlags.LogOn),
        inputValue_(runFlags.InputValue),
        pickIndex_(runFlags.PickIndex),
        ui_(UI(), user_),
        uiScope_(&ui_),
        windowsScope_(nullptr),
        filesScope_(&DiscardingScriptFiles()) {
    engineSettings.LongResults = false;
    runFlags.BreakRequested = runFlags.BreakForced = false;
  }
  // The interfaces go back after the state (the scopes are members).
  ~EstimateScope() {
    engineSettings = user_.settings;
    dieTypes = std::move(user_.types);
    runFlags.LogOn = logOn_;
    runFlags.InputValue = inputValue_;
    runFlags.PickIndex = pickIndex_;
    runFlags.BreakRequested = runFlags.BreakForced = false;
  }
  EstimateScope(const EstimateScope&) = delete;
  EstimateScope& operator=(const EstimateScope&) = delete;

  // Before a roll of a script that changes the default die or the die
  // types: the user's, as every roll starts.
  void Fresh() {
    engineSettings = user_.settings;
    engineSettings.LongResults = false;
    dieTypes = user_.types;
  }

 private:
  UserState user_;
  bool logOn_;
  double inputValue_;
  int16_t pickIndex_;
  EstimateInterface ui_;
  UIScope uiScope_;
  ScriptWindowsScope windowsScope_;
  ScriptFilesScope filesScope_;
};

Distribution Cancelled() {
  Distribution dist;
  dist.why = NotExactReason::Cancelled;
  dist.reason = "cancelled";
  return dist;
}

// The counted texts as a distribution, with the standard error of the mean.
Distribution FromCounts(const std::unordered_map<std::string, long long>& counts, long long n) {
  std::vector<std::pair<std::string, double>> shares;
  shares.reserve(counts.size());
  for (const auto& [text, count] : counts)
    shares.emplace_back(text, static_cast<double>(count) / static_cast<double>(n));
  Distribution dist = DistributionOf(shares);
  dist.method = DistMethod::MonteCarlo;
  dist.samples = n;
  double numeric = std::round(dist.summary.numeric * static_cast<double>(n));
  if (numeric >= 2)
    dist.standardError = dist.summary.sd * std::sqrt(numeric / (numeric - 1)) / std::sqrt(numeric);
  return dist;
}

std::string Digits(double value, std::chars_format format, int precision) {
  char text[64];
  auto [end, error] = std::to_chars(text, text + sizeof text, value, format, precision);
  return error == std::errc() ? std::string(text, end) : std::string("?");
}

}  // namespace

Distribution EstimateDistribution(const std::string& dieValue, const CalculatorOptions& options) {
  if (runFlags.ScriptRunning) return Cancelled();
  EstimateScope scope;
  RepeatedRoll roll(dieValue);
  // Tokenizing lets events run too.
  if (BreakAsked()) return Cancelled();
  std::unordered_map<std::string, long long> counts;
  long long n = 0;
  Clock::time_point lastReport = Clock::now();
  while (n < options.rolls) {
    if (roll.ChangesDieTypes()) scope.Fresh();
    std::string shown = roll.Roll();
    if (BreakAsked()) {
      // The break may have cut this roll short.
      if (shown != kBreakMarker) ++counts[shown], ++n;
      break;
    }
    ++counts[shown];
    ++n;
    if (Clock::now() - lastReport < kProgressEvery) continue;
    UI().ProcessEvents();
    if (BreakAsked()) break;
    if (options.progress &&
        !options.progress(CalculatorStep::Rolling,
                          static_cast<double>(n) / static_cast<double>(options.rolls)))
      break;
    lastReport = Clock::now();
  }
  if (n == 0) return Cancelled();
  if (options.progress && n == options.rolls) options.progress(CalculatorStep::Rolling, 1);
  return FromCounts(counts, n);
}

Distribution CalculateDistribution(const std::string& dieValue, const CalculatorOptions& options) {
  if (runFlags.ScriptRunning) return Cancelled();
  runFlags.BreakRequested = runFlags.BreakForced = false;
  DistOptions exact;
  exact.budget = options.budget;
  exact.progress = [&options](double done) {
    UI().ProcessEvents();
    if (BreakAsked()) return false;
    return !options.progress || options.progress(CalculatorStep::Exact, done);
  };
  Distribution dist = ComputeDistribution(dieValue, exact);
  if (dist.method == DistMethod::Exact || dist.why == NotExactReason::Cancelled ||
      dist.why == NotExactReason::NeverEnds)
    return dist;
  Distribution estimate = EstimateDistribution(dieValue, options);
  if (estimate.method == DistMethod::MonteCarlo) {
    estimate.why = dist.why;
    estimate.reason = dist.reason;
  }
  return estimate;
}

// ---- Texts -----------------------------------------------------------------

std::string PercentText(double p) {
  double percent = p * 100;
  if (percent == 0) return "0%";
  if (std::fabs(percent) < 0.0005) return Digits(percent, std::chars_format::general, 3) + "%";
  return Digits(percent, std::chars_format::fixed, 3) + "%";
}

std::string FigureText(const Distribution& dist, double value) {
  if (dist.summary.numeric <= 0) return "-";
  return Digits(value, std::chars_format::general, 6);
}

std::string RoundTripText(double value) {
  return Digits(value, std::chars_format::general, 17);
}

std::string MethodText(const Distribution& dist) {
  switch (dist.method) {
    case DistMethod::Exact:
      return "exact";
    case DistMethod::MonteCarlo: {
      std::string text = "estimated from " + std::to_string(dist.samples) + " rolls";
      if (!dist.reason.empty()) text += " (" + dist.reason + ")";
      return text;
    }
    case DistMethod::NotExact:
      break;
  }
  return "not worked out: " + dist.reason;
}

static std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (char c : text) {
    quoted += c;
    if (c == '"') quoted += c;
  }
  return quoted + "\"";
}

std::string DistributionCsv(const std::vector<std::pair<std::string, Distribution>>& named) {
  std::string csv = "die value,result,probability,at least,at most\r\n";
  for (const auto& [dieValue, dist] : named) {
    for (size_t i = 0; i < dist.outcomes.size(); ++i) {
      csv += CsvField(dieValue) + "," + CsvField(dist.outcomes[i].text) + "," +
             RoundTripText(dist.outcomes[i].probability) + ",";
      if (i < dist.atLeast.size())
        csv += RoundTripText(dist.atLeast[i]) + "," + RoundTripText(dist.atMost[i]);
      else
        csv += ",";
      csv += "\r\n";
    }
  }
  return csv;
}

}  // namespace gandrel
