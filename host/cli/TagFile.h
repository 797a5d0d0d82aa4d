#pragma once
#include <string>
#include <utility>
#include <vector>

#include "cli/ItemArgument.h"
#include "item/ItemVocabulary.h"

namespace qm::cli {

// What became of the fields of one file.
struct TaggedFile {
  std::string path;
  std::string errorText;  // nothing was saved
  // As the file holds them now, where that is less than or other than what was to be saved.
  std::vector<std::pair<std::string, std::string>> changed;
  std::vector<std::string> lost;  // the file has no place for them
};

// A field that says what the file is, not what is known of it, and is not for saving.
bool IsFactOfFile(const std::string& fieldName);

// Loads the file's item, sets the fields, saves it, and reads the file again to see what it took.
TaggedFile TagOneFile(const std::string& path, const ItemArgument& fields, enHDFileFlags carriers);

}  // namespace qm::cli
