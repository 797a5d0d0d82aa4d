#pragma once
#include <cstdint>
#include <string>

namespace qm::cli {

struct ItemFileContents;

enum enInfoDocument : std::int32_t { eidAlone, eidLine };  // a document by itself, or a line of a stream

// All that is known of a file, with a line break at the end.
std::string InfoJSON(const std::string& path, const ItemFileContents& contents, enInfoDocument document);
std::string InfoTable(const std::string& path, const ItemFileContents& contents);

}  // namespace qm::cli
