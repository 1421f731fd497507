#include "app/QtScriptHighlighter.h"

#include <QColor>
#include <QFont>
#include <algorithm>
#include <string>
#include <string_view>

#include "calc/Basic.h"
#include "functions/modScriptFunctions.h"
#include "script/ScriptKeywords.h"

namespace gandrel {

namespace {

using Kind = ScriptTextKind;

// The line as the tokenizer sees it, one byte per QChar so that positions
// stay those of the QString: ASCII as it is, anything else a byte that is no
// blank, no ";", no quote, no digit and no letter, as no such character is.
std::string Image(const QString& line) {
  std::string image(static_cast<size_t>(line.size()), '\x80');
  for (qsizetype i = 0; i < line.size(); ++i)
    if (char16_t c = line[i].unicode(); c < 0x80)
      image[static_cast<size_t>(i)] = static_cast<char>(c);
  return image;
}

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

class Spans {
 public:
  void Add(size_t start, size_t length, Kind kind) {
    if (length > 0) spans_.push_back({static_cast<int>(start), static_cast<int>(length), kind});
  }
  std::vector<ScriptSpan> Sorted() {
    std::stable_sort(spans_.begin(), spans_.end(),
                     [](const ScriptSpan& a, const ScriptSpan& b) { return a.start < b.start; });
    return std::move(spans_);
  }

 private:
  std::vector<ScriptSpan> spans_;
};

// A digit that starts a number: not inside a word, except right after the
// "d" of a die ("3d6", "d20"), and not the "6" of "sword6".
bool StartsNumber(std::string_view text, size_t i) {
  if (i == 0 || !IsLetter(text[i - 1])) return true;
  char d = text[i - 1];
  return (d == 'd' || d == 'D') && (i < 2 || !IsLetter(text[i - 2]));
}

// Quoted text, "@" calls of known functions (named as ProcFunc cuts the name:
// the text up to "(", trimmed and lower-cased) and numbers, from at on.
void AddTokens(Spans& spans, std::string_view text, size_t at) {
  size_t i = 0;
  while (i < text.size()) {
    char c = text[i];
    if (c == '"') {
      size_t close = text.find('"', i + 1);
      size_t end = close == std::string_view::npos ? text.size() : close + 1;
      spans.Add(at + i, end - i, Kind::Quoted);
      i = end;
    } else if (c == '@') {
      size_t open = text.find('(', i);
      if (open != std::string_view::npos &&
          IsScriptFunction(LCase(Trim(text.substr(i, open - i))))) {
        size_t end = open;
        while (end > i && IsBlank(text[end - 1]))
          --end;
        spans.Add(at + i, end - i, Kind::Function);
      }
      ++i;
    } else if (IsDigit(c) && StartsNumber(text, i)) {
      size_t end = i;
      while (end < text.size() && (IsDigit(text[end]) || text[end] == '.'))
        ++end;
      spans.Add(at + i, end - i, Kind::Number);
      i = end;
    } else {
      ++i;
    }
  }
}

// The words the executor itself looks for in an operand: FOR's first "to"
// after the "=" and the "step" after it; CASE's " to " and "else".
void AddOperandWords(Spans& spans, ScriptCode code, std::string_view operand, size_t at) {
  std::string lower = LCase(operand);
  if (code == ScriptCode::For) {
    size_t equals = lower.find('=');
    size_t to = equals == std::string::npos ? equals : lower.find("to", equals + 1);
    if (to == std::string::npos) return;
    spans.Add(at + to, 2, Kind::Keyword);
    if (size_t step = lower.find("step", to + 2); step != std::string::npos)
      spans.Add(at + step, 4, Kind::Keyword);
  } else if (code == ScriptCode::Case) {
    if (lower == "else") return spans.Add(at, 4, Kind::Keyword);
    for (size_t to = lower.find(" to "); to != std::string::npos; to = lower.find(" to ", to + 3))
      spans.Add(at + to + 1, 2, Kind::Keyword);
  }
}

// A line that is not blank: words is its text between the first and the last
// character that is no blank, starting at first.
void AddStatement(Spans& spans, std::string_view code, size_t first, std::string_view words) {
  TokenizedLine tokenized = TokenizeLine(code, false);
  if (tokenized.isLabel) return spans.Add(first, words.size(), Kind::Label);
  auto byte = static_cast<unsigned char>(tokenized.text.front());
  // A blank line cannot reach here: code 255 is a line that is ignored.
  if (byte == 255) return spans.Add(first, words.size(), Kind::Ignored);
  std::string_view operand = std::string_view(tokenized.text).substr(1);
  std::string seen(words);
  std::replace(seen.begin(), seen.end(), '\t', ' ');
  // What the tokenizer kept is the end of the line; a few lines it rebuilt
  // ("open   window" becomes "open window") are taken whole.
  if (!seen.ends_with(operand)) operand = words;
  size_t prefix = words.size() - operand.size();
  size_t operandAt = first + prefix;
  while (prefix > 0 && IsBlank(words[prefix - 1]))
    --prefix;
  // A byte that is no command code runs as code 0: its words do nothing.
  bool command = byte >= 1 && byte <= 37;
  spans.Add(first, prefix, command ? Kind::Keyword : Kind::Ignored);
  ScriptCode kind = command ? CodeOf(byte) : ScriptCode::Other;
  if (kind == ScriptCode::Goto) return spans.Add(operandAt, operand.size(), Kind::Label);
  if (kind == ScriptCode::Echo) return spans.Add(operandAt, operand.size(), Kind::Comment);
  AddOperandWords(spans, kind, operand, operandAt);
  AddTokens(spans, operand, operandAt);
}

}  // namespace

std::vector<ScriptSpan> ScriptSpans(const QString& line) {
  Spans spans;
  std::string image = Image(line);
  size_t comment = image.find(';');
  std::string_view code(image.data(), comment == std::string::npos ? image.size() : comment);
  size_t first = code.find_first_not_of(" \t");
  if (first != std::string_view::npos) {
    size_t last = code.find_last_not_of(" \t");
    AddStatement(spans, code, first, code.substr(first, last - first + 1));
  }
  if (comment != std::string::npos) spans.Add(comment, image.size() - comment, Kind::Comment);
  return spans.Sorted();
}

QtScriptHighlighter::QtScriptHighlighter(QTextDocument* document) : QSyntaxHighlighter(document) {}

QTextCharFormat QtScriptHighlighter::FormatOf(ScriptTextKind kind) {
  QTextCharFormat format;
  switch (kind) {
    case Kind::Keyword:
      format.setForeground(QColor(0, 0, 160));
      format.setFontWeight(QFont::Bold);
      break;
    case Kind::Label:
      format.setForeground(QColor(140, 0, 140));
      format.setFontWeight(QFont::Bold);
      break;
    case Kind::Comment:
      format.setForeground(QColor(0, 120, 0));
      format.setFontItalic(true);
      break;
    case Kind::Quoted:
      format.setForeground(QColor(170, 60, 0));
      break;
    case Kind::Function:
      format.setForeground(QColor(0, 110, 130));
      format.setFontWeight(QFont::Bold);
      break;
    case Kind::Number:
      format.setForeground(QColor(160, 0, 0));
      break;
    case Kind::Ignored:
      format.setForeground(QColor(140, 140, 140));
      break;
  }
  return format;
}

void QtScriptHighlighter::highlightBlock(const QString& text) {
  for (const ScriptSpan& span : ScriptSpans(text))
    setFormat(span.start, span.length, FormatOf(span.kind));
}

}  // namespace gandrel
