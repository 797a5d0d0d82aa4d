#pragma once
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "kits/draw/Picture.h"

namespace qm::test {

// Compares pixel by pixel with tests/golden/NAME. On a mismatch both pictures stay in a new temporary folder,
// which the failure names.
inline void ExpectGolden(const Picture& actual, const std::string& name) {
  const auto golden = std::filesystem::path(__FILE__).parent_path().parent_path() / "golden" / name;
  Picture expected;
  const bool there = ReadPng(golden.string(), expected);
  if (there && expected == actual) return;
  std::string folder = (std::filesystem::temp_directory_path() / "qmgoldenXXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) folder = ".";
  WritePng(folder + "/actual-" + name, actual);
  if (there) WritePng(folder + "/expected-" + name, expected);
  ADD_FAILURE() << (there ? "differs from " : "there is no ") << golden << ": see " << folder << "/actual-"
                << name;
}

}  // namespace qm::test
