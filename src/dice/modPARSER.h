// modPARSER: the token-list splitter of the list dice.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace gandrel {

// Splits text at delimiter into items(1..count), empty tokens kept. items[0] is "".
void ParseList(std::string_view text, std::string_view delimiter, int16_t& count,
               std::vector<std::string>& items);

// Token n (1-based) of the last split, or "" past its end.
std::string GetListItem(long n);

// The number of tokens of the last split.
long GetListCount();

}  // namespace gandrel
