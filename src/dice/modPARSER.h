// modPARSER: the token-list splitter of the list dice.
//
// A split is a value its caller holds: nothing of one split is kept between
// calls, so a roll of one list die never disturbs the pieces of another.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace gandrel {

// The tokens of one split, in order, empty ones included.
struct TokenList {
  std::vector<std::string> tokens;
};

// Splits text at delimiter into items(1..count), empty tokens kept (items[0]
// is ""), and returns the split. A delimiter at the start or the end gives an
// empty first or last token; an empty delimiter cuts nothing. More than
// 32,767 tokens raise "Overflow".
TokenList ParseList(std::string_view text, std::string_view delimiter, int16_t& count,
                    std::vector<std::string>& items);

// Token n (1-based) of the split, or "" past its end.
std::string GetListItem(const TokenList& list, long n);

// The number of tokens of the split.
long GetListCount(const TokenList& list);

}  // namespace gandrel
