// modPARSER: the token-list splitter of the list dice.
#include <string>
#include <string_view>
#include <vector>

#include "calc/Basic.h"
#include "dice/modPARSER.h"

namespace gandrel {

namespace {

// The tokens of the last split, 0-based.
std::vector<std::string> tokens;

// Cuts text at every occurrence of delimiter, keeping every token: a
// delimiter at the start or the end gives an empty first or last token, two
// in a row an empty one between them, an empty text one empty token. An
// empty delimiter cuts nothing: the whole text is the one token.
void SplitTokens(std::string_view text, std::string_view delimiter) {
  tokens.clear();
  if (delimiter.empty()) {
    tokens.emplace_back(text);
    return;
  }
  size_t from = 0;
  for (size_t at; (at = text.find(delimiter, from)) != std::string_view::npos;
       from = at + delimiter.size())
    tokens.emplace_back(text.substr(from, at - from));
  tokens.emplace_back(text.substr(from));
}

}  // namespace

void ParseList(std::string_view text, std::string_view delimiter, int16_t& count,
               std::vector<std::string>& items) {
  SplitTokens(text, delimiter);
  count = Int16(GetListCount());
  items.assign(static_cast<size_t>(count) + 1, std::string());
  for (long i = 1; i <= count; ++i)
    items[static_cast<size_t>(i)] = GetListItem(i);
}

std::string GetListItem(long n) {
  if (n < 1 || n > GetListCount()) return {};
  return tokens[static_cast<size_t>(n - 1)];
}

long GetListCount() {
  return static_cast<long>(tokens.size());
}

}  // namespace gandrel
