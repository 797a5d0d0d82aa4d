#pragma once
#include <string>
#include <string_view>

// Tag text: one line of key=value pairs separated by blanks, free text quoted and encoded.
namespace qm {

// Escapes the double quote, the percent sign and control characters (below 32, and 127) as %XX, two upper-case
// hexadecimal digits. The result holds no double quote and no line break; DecodeTagValue gives the original.
std::string EncodeTagValue(std::string_view value);

// Undoes EncodeTagValue: a percent sign before two hexadecimal digits that name a character EncodeTagValue
// escapes stands for that character; any other text stays as it is.
std::string DecodeTagValue(std::string_view text);

// Text with a pair appended: a Separator first unless Text is empty, then Key, Equals, and the value, quoted and
// encoded when Quoted.
std::string AppendTag(std::string Text, std::string_view Key, std::string_view Value, std::string_view Equals = "=",
                      bool Quoted = false, std::string_view Separator = " ");

// The value of the first pair with this key, ignoring case; "" when there is none.
//
// With EnsureSeparator a key counts only at the start of a pair (behind a Separator or at the start of the text),
// else wherever Key and Equals stand together. A value that begins with a double quote runs to the next one (or
// the end), any other to the next Separator (or the end).
std::string GetTagValue(std::string_view Text, std::string_view Key, std::string_view Equals = "=",
                        bool Decode = false, std::string_view Separator = " ", bool EnsureSeparator = true);

// What lies between "<TAG>" and the next "</TAG>" behind it, the tag's name compared ignoring case; "" when
// either is absent.
std::string GetMarkupTagValue(std::string_view Text, std::string_view Tag);

}  // namespace qm
