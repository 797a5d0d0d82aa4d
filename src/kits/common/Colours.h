#pragma once
#include <cstdint>
#include <functional>
#include <string>

// Colours are signed 32-bit values 0x00BBGGRR; one with the top bit set names a system colour by the index in
// its low 15 bits.
namespace qm {

inline constexpr std::int32_t kButtonFaceColour = static_cast<std::int32_t>(0x8000000Fu);
inline constexpr std::int32_t kButtonTextColour = static_cast<std::int32_t>(0x80000012u);

constexpr bool IsSystemColour(std::int32_t colour) { return colour < 0; }

// The colour a value stands for: system colours looked up, others as they are.
std::int32_t ConvertColour(std::int32_t colour);

// A system colour's value by index, from the classic desktop palette unless the host has set another; black for an
// unknown index.
std::int32_t SystemColour(std::int32_t index);
void SetSystemColours(std::function<std::int32_t(std::int32_t index)> palette);  // empty: the classic palette

// "COLOR_BTNFACE" and so on; "" for an index without a name.
std::string SystemColourName(std::int32_t index);

}  // namespace qm
