#pragma once
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "item/ItemFieldAccess.h"
#include "item/cHDItem.h"

namespace qm::test {

// "Name=value;Name=value" taken apart.
inline std::vector<std::pair<std::string, std::string>> SplitFields(const std::string& text) {
  std::vector<std::pair<std::string, std::string>> fields;
  std::istringstream in(text + ";");
  for (std::string name, value; std::getline(in, name, '=') && std::getline(in, value, ';');)
    fields.emplace_back(name, value);
  return fields;
}

inline void SetFields(cHDItem& item, const std::string& fields) {
  for (const auto& [field, value] : SplitFields(fields))
    EXPECT_EQ(SetFieldText(item, field, value), sfrSet) << field;
}

inline void ExpectFields(const cHDItem& item, const std::string& fields, const std::string& where = "") {
  for (const auto& [field, value] : SplitFields(fields)) {
    EXPECT_NE(FindItemFieldPlace(field).field, nullptr) << "no field " << field;
    EXPECT_EQ(FieldText(item, field), value) << where << " " << field;
  }
}

}  // namespace qm::test
