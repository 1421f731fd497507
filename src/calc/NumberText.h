// The one pair of rules by which numbers become text and text becomes numbers.
//
// Both are locale-free: "." is the decimal point whatever the C locale or the
// desktop says.
#pragma once

#include <string>
#include <string_view>

namespace gandrel {

// At most 15 significant digits, no trailing zeros, no zero before the point
// (".5", "-.25"), "-" for negatives, negative zero as "0". Magnitudes of 1E15
// and above, and below 1E-4, are written with a signed exponent of at least two
// digits ("1E+16", "1E-05", "1.5E+20"); the choice is made on the value as
// rounded to 15 digits, so 999999999999999.9 is "1E+15". A value that is not
// finite raises "Overflow".
std::string FormatNumber(double value);

// The value of the leading number of a text: leading blanks skipped, an
// optional sign, digits, an optional point and fraction, an optional exponent
// marked by an upper-case "E" or "D" with an optional sign. Reading stops at the
// first character that does not fit; a text without a leading number is 0.
// A number too large for a double ("1E400") raises "Overflow".
double ReadNumber(std::string_view text);

}  // namespace gandrel
