// The hints under a result: the dice notation traced without rolling, to
// find what the calculation met that it does not know.
#include "app/RollHints.h"

#include <algorithm>
#include <optional>
#include <regex>
#include <string_view>

#include "app/DialogModels.h"
#include "app/TextEncoding.h"
#include "app/modGandrel.h"
#include "calc/Basic.h"
#include "calc/EngineSettings.h"
#include "calc/Markers.h"
#include "calc/RuntimeError.h"
#include "dice/DieLookup.h"
#include "dice/modDiceCalc.h"

namespace gandrel {

namespace {

// Where a character of the traced text came from: an index of the typed
// text, or one of these.
constexpr long kInserted = -1;  // the default die, inserted by the expansion
constexpr long kTotal = -2;     // the number that stands for a rolled term

// The text as the roll rewrites it, each character with where it came from.
struct Traced {
  std::string text;
  std::vector<long> from;
};

// One rolled term.
struct Term {
  long d = kInserted;      // the typed index of its "d"
  bool defaulted = false;  // that "d" got the default die
};

// What tracing a die value found.
struct Scan {
  Traced traced;                // after the dice are rolled, each total a "0"
  std::vector<bool> taken;      // per typed character: part of a rolled term
  std::vector<long> defaulted;  // the typed indexes of the "d"s given the default die
  std::vector<Term> terms;
};

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// The characters the evaluator works with, besides digits: an operator or a
// parenthesis.
bool IsOperatorChar(char c) {
  return std::string_view("+-*/\\^<>=|&()").find(c) != std::string_view::npos;
}

bool IsNameChar(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || IsDigit(c) || c == '_';
}

void Replace(Traced& t, std::string& lower, long at, long length, const std::string& text,
             std::vector<long> from) {
  auto pos = static_cast<size_t>(at), count = static_cast<size_t>(length);
  t.text.replace(pos, count, text);
  lower.replace(pos, count, LCase(text));
  t.from.erase(t.from.begin() + at, t.from.begin() + at + length);
  t.from.insert(t.from.begin() + at, from.begin(), from.end());
}

// The expansion's walk (ExpandDice), noting where each character goes. A
// default die with its letter takes the place of the "d", which keeps its
// typed index in the first letter; a size goes after the "d".
void TraceExpansion(Scan& scan) {
  Traced& t = scan.traced;
  const std::string& type = engineSettings.DieType;
  std::string lower = LCase(t.text);
  long p = InStr(lower, "d");
  while (p >= 1) {
    long next = p + 1;
    bool sized = p + 1 <= Len(lower) && IsDigit(lower[static_cast<size_t>(p)]);
    if (!sized) {
      long named = DefinedNameLengthAt(lower, p);
      if (named > 0) {
        next = p + named;
      } else {
        long d = t.from[static_cast<size_t>(p - 1)];
        scan.defaulted.push_back(d);
        std::vector<long> from(type.size(), kInserted);
        if (LCase(Left(type, 1)) == "d") {
          from[0] = d;
          Replace(t, lower, p - 1, 1, type, from);
          next = p + Len(type);
        } else {
          Replace(t, lower, p, 0, type, from);
          next = p + 1 + Len(type);
        }
      }
    }
    p = InStr(next, lower, "d");
  }
}

// The roll's walk (GenerateAllDice), each term found as the roll finds it
// and replaced by a "0" where the roll puts its total. The totals do not
// matter: what a term takes depends only on the text from its "d" on and on
// the digits right before it, and whatever digits a total puts there were
// never typed.
void TraceTerms(Scan& scan) {
  Traced& t = scan.traced;
  std::string lower = LCase(t.text);
  long p = InStr(lower, "d");
  while (p > 0) {
    long start = 0, end = 0;
    FindRolledTerm(lower, p, start, end);
    Term term;
    term.d = t.from[static_cast<size_t>(p - 1)];
    term.defaulted =
        std::find(scan.defaulted.begin(), scan.defaulted.end(), term.d) != scan.defaulted.end();
    for (long k = start - 1; k < end; ++k) {
      long from = t.from[static_cast<size_t>(k)];
      if (from >= 0) scan.taken[static_cast<size_t>(from)] = true;
    }
    scan.terms.push_back(term);
    Replace(t, lower, start - 1, end - start + 1, "0", {kTotal});
    p = InStr(start, lower, "d");
  }
}

// Traces expr as the roll reads it; nothing when the roll cannot be
// followed for certain (double quotes, a text too long) or the trace does
// not give the text the engine's own expansion gives.
std::optional<Scan> TraceRoll(const std::string& expr) {
  if (expr.find('"') != std::string::npos) return std::nullopt;
  Scan scan;
  scan.traced.text = expr;
  for (long i = 0; i < Len(expr); ++i)
    scan.traced.from.push_back(i);
  scan.taken.assign(expr.size(), false);
  std::string expanded = expr;
  bool followed = false;
  auto error = TrapRuntimeError([&] {
    ExpandDice(expanded);
    TraceExpansion(scan);
    followed = scan.traced.text == expanded;
    if (followed) TraceTerms(scan);
  });
  if (error || !followed) return std::nullopt;
  return scan;
}

// Text in double quotes; a long text is cut after some 40 characters (never
// inside a UTF-8 character) and ends in "...".
std::string Quoted(std::string_view text) {
  constexpr size_t kLongest = 40;
  if (text.size() <= kLongest) return "\"" + std::string(text) + "\"";
  size_t cut = Utf8CharStart(text, kLongest);
  return "\"" + std::string(text.substr(0, cut)) + "...\"";
}

// The hints of one roll, in order: no two alike, no more than room.
struct HintList {
  explicit HintList(size_t n) : room(n) {}
  bool Full() const { return items.size() >= room; }
  void Add(std::string hint) {
    if (!hint.empty() && !Full() && std::find(items.begin(), items.end(), hint) == items.end())
      items.push_back(std::move(hint));
  }
  std::vector<std::string> items;
  size_t room;
};

// Trims blanks, tabs and line ends.
std::string_view TrimBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back()))
    text.remove_suffix(1);
  return text;
}

// The suggestion for a word written in another roller's notation, or "".
// u is the offset, in the word, of its first character the calculation does
// not know. A form counts only where that character stands where the form
// says: a die type that took the text would have changed it. Long words are
// no notation of a roller (and would take the matching too deep).
std::string Suggestion(const std::string& word, size_t u) {
  if (word.size() > 64) return "";
  static const std::regex keep(R"(^(\d*)d(\d+)(k[hl]?)(\d+)$)", std::regex::icase);
  static const std::regex drop(R"(^(\d*)d(\d+)d([hl])(\d+)$)", std::regex::icase);
  static const std::regex explode(R"(^(\d*d\d+)!$)", std::regex::icase);
  static const std::regex percent(R"(^(\d*)d%$)", std::regex::icase);
  static const std::regex fudge(R"(^(\d*)df$)", std::regex::icase);
  static const std::regex mod(R"(^(\d+)\s*mod\s*(\d+)$)", std::regex::icase);
  static const std::regex times(R"(^[^x]*[\d]\s*(x|\xC3\x97)\s*[\dd][^x]*$)", std::regex::icase);
  std::smatch m;
  bool last = u + 1 == word.size();
  if (std::regex_match(word, m, keep) && static_cast<size_t>(m.position(3)) == u) {
    std::string dice = m.str(1) + "d" + m.str(2);
    bool worst = LCase(m.str(3)) == "kl";
    return std::string("To keep the ") + (worst ? "worst " : "best ") + m.str(4) + " of " + dice +
           ", write @" + (worst ? "worst(" : "best(") + m.str(4) + "," + dice + ").";
  }
  if (std::regex_match(word, m, drop) && static_cast<size_t>(m.position(3)) == u &&
      m.length(1) <= 6 && m.length(4) <= 6) {
    std::string dice = m.str(1) + "d" + m.str(2);
    long count = m.length(1) > 0 ? std::stol(m.str(1)) : 1, dropped = std::stol(m.str(4));
    if (dropped >= count) return "";
    bool highest = LCase(m.str(3)) == "h";
    return std::string("To drop the ") + (highest ? "highest " : "lowest ") + m.str(4) + " of " +
           dice + ", write @" + (highest ? "worst(" : "best(") + std::to_string(count - dropped) +
           "," + dice + ").";
  }
  if (last && std::regex_match(word, m, explode))
    return "For exploding dice write @wilddice(" + m.str(1) + ").";
  if (last && std::regex_match(word, m, percent))
    return "For a percentile die write " + m.str(1) + "d100.";
  if (last && std::regex_match(word, m, fudge)) {
    if (DefinedName("dfate"))
      return "For Fudge dice roll your die type dfate: " + m.str(1) + "dfate.";
    return "For Fudge dice define a die type \"dfate = -1 to 1\" (Define Die Types) and roll " +
           m.str(1) + "dfate.";
  }
  if (std::regex_match(word, m, mod) && LCase(word).find("mod") == u)
    return "For the remainder of " + m.str(1) + " by " + m.str(2) + " write " + m.str(1) + "-" +
           m.str(2) + "*(" + m.str(1) + "\\" + m.str(2) + ").";
  if (std::regex_match(word, m, times) && static_cast<size_t>(m.position(1)) == u)
    return "For multiplication write \"*\": " + word.substr(0, u) + "*" +
           word.substr(u + static_cast<size_t>(m.length(1))) + ".";
  if (word.find_first_of("[]{}", u) != std::string::npos)
    return "For grouping write \"(\" and \")\".";
  return "";
}

// The hints for one word of a die value: a stretch between the operators
// the calculation works with, blanks included (it drops them). Nothing when
// the calculation knows all of it.
void WordHints(const std::string& typed, const Scan& scan, size_t begin, size_t end,
               HintList& hints) {
  size_t u = begin;
  while (u < end && (scan.taken[u] || IsBlank(typed[u]) || IsDigit(typed[u]) || typed[u] == '.' ||
                     typed[u] == 'E'))
    ++u;
  if (u == end) return;
  std::string ignored = Quoted(TrimBlanks(std::string_view(typed).substr(u, end - u)));
  std::string defaultDie = DefaultDieText(engineSettings.DieType);

  // The "d" right before the unknown text got the default die.
  bool defaultedBefore = std::any_of(scan.terms.begin(), scan.terms.end(), [&](const Term& term) {
    return term.defaulted && term.d + 1 == static_cast<long>(u);
  });
  if (defaultedBefore && IsNameChar(typed[u])) {
    size_t nameEnd = u;
    while (nameEnd < end && IsNameChar(typed[nameEnd]))
      ++nameEnd;
    hints.Add("No die type is named " + Quoted(typed.substr(u - 1, nameEnd - u + 1)) + ": its " +
              Quoted(typed.substr(u - 1, 1)) + " rolled the default die " + defaultDie + ", and " +
              ignored + " was ignored.");
  } else if (defaultedBefore) {
    hints.Add("The " + Quoted(typed.substr(u - 1, 1)) + " before " + ignored +
              " rolled the default die " + defaultDie + ", and " + ignored + " was ignored.");
  } else if (LCase(typed.substr(u, 3)) == "mod") {
    hints.Add(ignored +
              " was ignored: MOD does not work in a die value, as its \"D\" is rolled as a die.");
  } else {
    hints.Add(ignored + " was ignored: it is not a die, a number or an operator.");
  }
  std::string_view word = TrimBlanks(std::string_view(typed).substr(begin, end - begin));
  size_t wordStart = static_cast<size_t>(word.data() - typed.data());
  hints.Add(Suggestion(std::string(word), u - wordStart));
}

// The hints for what the calculation did not know in expr.
void NotationHints(const std::string& expr, const Scan& scan, HintList& hints) {
  if (!scan.defaulted.empty() && !CheckDefaultDie(engineSettings.DieType).refusal.empty())
    hints.Add("The default die " + Quoted(DefaultDieText(engineSettings.DieType)) +
              " does not roll: change it in Preferences.");
  size_t begin = 0;
  for (size_t i = 0; i <= expr.size() && !hints.Full(); ++i) {
    if (i < expr.size() && (scan.taken[i] || !IsOperatorChar(expr[i]))) continue;
    if (i > begin) WordHints(expr, scan, begin, i, hints);
    begin = i + 1;
  }
}

// Why the calculation failed, as Calc said; "" for a failure already told
// in a message box.
std::string FailureHint(const EvalFailure& failure, const std::optional<Scan>& scan) {
  switch (failure.fault) {
    case EvalFault::Empty:
      return "Nothing to calculate: parentheses with nothing between them, or a sign alone.";
    case EvalFault::UnpairedParentheses: {
      if (!scan) return "The parentheses do not pair up.";
      const std::string& text = scan->traced.text;
      return "The parentheses do not pair up: " +
             std::to_string(std::count(text.begin(), text.end(), '(')) + " \"(\" and " +
             std::to_string(std::count(text.begin(), text.end(), ')')) + " \")\".";
    }
    case EvalFault::UnclosedParenthesis:
      return "A \"(\" is never closed: a \")\" comes before its \"(\".";
    case EvalFault::PercentInParentheses:
      return "A \"%\" inside parentheses fails the calculation.";
    case EvalFault::OperatorFirst:
      return Quoted(failure.op) + " has nothing before it.";
    case EvalFault::OperatorLast:
      return Quoted(failure.op) + " has nothing after it.";
    case EvalFault::DivisionByZero:
      return "Division by zero: the number after " + Quoted(failure.op) + " was 0.";
    case EvalFault::None:
    case EvalFault::RunTimeError:
    case EvalFault::RollFailed:
      break;
  }
  return "";
}

}  // namespace

std::vector<std::string> RollHints(const std::string& dieValue, const std::string& result,
                                   const EvalFailure& failure) {
  std::string value = Trim(dieValue);
  if (value.empty() || IsScriptFileName(value) || value == kCurrentScript) return {};
  if (result == kErrorMarker || result == kScriptErrorMarker || result == kBreakMarker) return {};
  bool script = value[0] == '=' || value[0] == '@';
  std::string expr = value[0] == '=' ? value.substr(1) : value;
  if (script && (expr.find('@') != std::string::npos || expr.find('"') != std::string::npos))
    return {};

  std::optional<Scan> scan = TraceRoll(expr);
  // Why it failed comes last, but always has its place.
  std::string why = !script && result == kCalcErrorMarker ? FailureHint(failure, scan) : "";
  HintList hints(why.empty() ? kMostHints : kMostHints - 1);
  if (scan) NotationHints(expr, *scan, hints);
  hints.room = kMostHints;
  hints.Add(why);
  return hints.items;
}

}  // namespace gandrel
