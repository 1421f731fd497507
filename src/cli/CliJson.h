// JSON text for the --json output of gandrel-cli.
#pragma once

#include <string>
#include <string_view>

namespace gandrel::cli {

// text as a JSON string literal, quotes included: '"' and '\' escaped, every
// control character escaped (\n, \r, \t, \b, \f or \u00XX), and every byte
// that is not part of valid UTF-8 replaced by \ufffd, so that the output is
// always valid JSON whatever the die value held.
std::string JsonString(std::string_view text);

// A number as JSON: 17 significant digits, trailing zeros dropped (as
// printf's %.17g, whatever the locale; RoundTripText); "null" for one that
// is not finite.
std::string JsonNumber(double value);

}  // namespace gandrel::cli
