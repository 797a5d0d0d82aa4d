#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

#include "item/ItemVocabulary.h"

// What the kinds in the table of an item's fields are in C++.
namespace qm::item_field {

using Text = std::string;
using Whole16 = std::int16_t;
using Whole32 = std::int32_t;
using Single = float;
using Flag = bool;
using Date = std::int32_t;  // serial day number, 0 for none
using Time = float;         // seconds after midnight
using Colour = std::int32_t;
using Information = enInfoAvailable;
using Ending = enItemEndType;

template <class T>
using Read = std::conditional_t<std::is_same_v<T, std::string>, const std::string&, T>;

// Three values, counted from 1. Any other index reads as 0 or "" and writes nothing.
template <class T>
class Triple {
 public:
  static constexpr bool Has(std::int32_t index) { return index >= 1 && index <= 3; }

  Read<T> Get(std::int32_t index) const {
    static const T none{};
    return Has(index) ? m_values[static_cast<std::size_t>(index - 1)] : none;
  }
  void Set(std::int32_t index, T value) {
    if (Has(index)) m_values[static_cast<std::size_t>(index - 1)] = std::move(value);
  }

 private:
  std::array<T, 3> m_values{};
};

}  // namespace qm::item_field
