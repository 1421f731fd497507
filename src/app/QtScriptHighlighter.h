// QtScriptHighlighter: the script editor's colours.
//
// Each line is read the way the tokenizer reads it (TokenizeLine and the
// keyword tables of script/ScriptKeywords.h), so the colours tell what the
// line will do: the words that make it a command, a label and the label a
// GOTO names, the comment from the first ";" on (quotes do not protect a
// ";"), quoted text, the "@" calls of the functions ProcFunc knows, and
// numbers. Words the tokenizer drops ("exit" in "exit now", "clear" in
// "clear x=5") and lines it ignores ("die 2d6") are grey: they do nothing.
// A misspelt keyword is therefore left uncoloured, as the ordinary text it is.
#pragma once

#include <QSyntaxHighlighter>
#include <QTextCharFormat>
#include <vector>

namespace gandrel {

enum class ScriptTextKind { Keyword, Label, Comment, Quoted, Function, Number, Ignored };

// A coloured piece of a line, in the line's QString positions.
struct ScriptSpan {
  int start = 0;
  int length = 0;
  ScriptTextKind kind = ScriptTextKind::Keyword;
  bool operator==(const ScriptSpan&) const = default;
};

// The coloured pieces of one script line, ordered by their start.
std::vector<ScriptSpan> ScriptSpans(const QString& line);

class QtScriptHighlighter : public QSyntaxHighlighter {
  Q_OBJECT

 public:
  explicit QtScriptHighlighter(QTextDocument* document);

  // How a kind of text is shown.
  static QTextCharFormat FormatOf(ScriptTextKind kind);

 protected:
  void highlightBlock(const QString& text) override;
};

}  // namespace gandrel
