#include "item/RiffTagNames.h"

#include <algorithm>
#include <span>

namespace qm {
namespace {

struct TagName {
  std::string_view id;
  std::string_view name;
};

constexpr TagName kListTags[] = {
    {"IART", "Artist"}, {"ICMT", "Comment"},    {"ICOP", "Copyright"}, {"ICRD", "Year"},
    {"IGNR", "Genre"},  {"INAM", "Title"},      {"ISRC", "ISRC"},      {"IPRD", "Album"},
    {"TORG", "Label"},  {"LOCA", "Location"},   {"TVER", "Version"},   {"TURL", "URL"},
    {"TLEN", "Length"}, {"ITCH", "Technician"}, {"TRCK", "Track"},     {"itrk", "Track"},
    {"ISRF", "Source"}, {"ITRK", "Track"},
};

constexpr TagName kFrames[] = {
    {"TALB", "Album"},
    {"TBPM", "BPM"},
    {"TCMP", "Compilation"},
    {"TCOM", "Composer"},
    {"TCON", "Genre"},
    {"TCOP", "Copyright message"},
    {"TDAT", "Date"},
    {"TDLY", "Playlist delay"},
    {"TENC", "Encoded by"},
    {"TEXT", "Lyricist"},
    {"TFLT", "File type"},
    {"TIME", "Time"},
    {"TIT1", "Style"},
    {"TIT2", "Title"},
    {"TIT3", "Subtitle/Description"},
    {"TKEY", "Initial key"},
    {"TLAN", "Language"},
    {"TLEN", "Length"},
    {"TMED", "Media type"},
    {"TOAL", "Original album"},
    {"TOFN", "Original filename"},
    {"TOLY", "Original lyricist"},
    {"TOPE", "Original artist"},
    {"TORY", "Original release year"},
    {"TOWN", "File owner/licensee"},
    {"TPE1", "Artist"},
    {"TPE2", "Album Artist"},
    {"TPE3", "Conductor"},
    {"TPE4", "Remixed"},
    {"TPOS", "Part of a set"},
    {"TPUB", "Label"},
    {"TRCK", "Track"},
    {"TRDA", "Recording dates"},
    {"TRSN", "Internet radio station name"},
    {"TRSO", "Internet radio station owner"},
    {"TSIZ", "Size"},
    {"TSRC", "ISRC"},
    {"TSSE", "Software/Hardware and settings used for encoding"},
    {"TYER", "Year"},
};

std::string_view NameOf(std::span<const TagName> table, std::string_view id) {
  const auto found =
      std::find_if(table.begin(), table.end(), [&](const TagName& row) { return row.id == id; });
  return found == table.end() ? std::string_view() : found->name;
}

}  // namespace

std::string_view ListTagName(std::string_view id) {
  return NameOf(kListTags, id);
}

std::string_view Id3FrameName(std::string_view id) {
  return NameOf(kFrames, id);
}

}  // namespace qm
