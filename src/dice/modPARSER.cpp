// modPARSER: the token-list splitter of the list dice.
#include "dice/modPARSER.h"

#include <string>
#include <string_view>
#include <vector>

#include "calc/Basic.h"

namespace gandrel {

// Cuts text at every occurrence of delimiter, keeping every token.
static TokenList SplitTokens(std::string_view text, std::string_view delimiter) {
  TokenList list;
  if (delimiter.empty()) {
    list.tokens.emplace_back(text);
    return list;
  }
  size_t from = 0;
  for (size_t at; (at = text.find(delimiter, from)) != std::string_view::npos;
       from = at + delimiter.size())
    list.tokens.emplace_back(text.substr(from, at - from));
  list.tokens.emplace_back(text.substr(from));
  return list;
}

TokenList ParseList(std::string_view text, std::string_view delimiter, int16_t& count,
                    std::vector<std::string>& items) {
  TokenList list = SplitTokens(text, delimiter);
  count = Int16(GetListCount(list));
  items.assign(static_cast<size_t>(count) + 1, std::string());
  for (long i = 1; i <= count; ++i)
    items[static_cast<size_t>(i)] = GetListItem(list, i);
  return list;
}

std::string GetListItem(const TokenList& list, long n) {
  if (n < 1 || n > GetListCount(list)) return {};
  return list.tokens[static_cast<size_t>(n - 1)];
}

long GetListCount(const TokenList& list) {
  return static_cast<long>(list.tokens.size());
}

}  // namespace gandrel
