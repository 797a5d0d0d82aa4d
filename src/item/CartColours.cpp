#include "item/CartColours.h"

#include <charconv>

#include "item/cHDItem.h"
#include "kits/common/Numbers.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

constexpr std::size_t kDigits = 8;

std::int32_t ColourOf(std::string_view text) {
  text = Trim(text);
  if (!StartsWithIgnoringCase(text, "&H")) return ParseWhole(text);
  text.remove_prefix(2);
  std::uint32_t colour = 0;  // stays 0 when there are more digits than fit
  std::from_chars(text.data(), text.data() + text.size(), colour, 16);
  return static_cast<std::int32_t>(colour);
}

}  // namespace

std::string ColourText(std::int32_t colour, std::int32_t defaultColour) {
  if (colour == defaultColour) return {};
  std::string digits(kDigits, '0');
  auto rest = static_cast<std::uint32_t>(colour);
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, rest >>= 4)
    *digit = "0123456789ABCDEF"[rest & 15];
  return "&H" + digits + "&";
}

void SetColourFromText(cHDItem& item, void (cHDItem::*set)(std::int32_t), std::string_view text) {
  if (!text.empty()) (item.*set)(ColourOf(text));
}

}  // namespace qm
