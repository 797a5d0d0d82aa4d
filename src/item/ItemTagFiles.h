#pragma once
#include <string>

// An item's metadata in the files whose tags a tag object reads and writes: WMA by its named attributes, MP3,
// Ogg, MP2 and any other by their tags. Host thread.
//
// Loading gives the item a new format (cHDItem::ReplaceAudioFormat) and expects one whose marks stand at -1
// and whose type is set; marks stay as they were read, the caller brings them into order. False, with the
// item as it was, for a file that cannot be opened. Saving changes nothing but the file; false without a
// message for whatever went wrong.
namespace qm {

class cHDItem;

bool LoadItemWma(cHDItem& item, const std::string& path);
bool LoadItemTags(cHDItem& item, const std::string& path);
bool SaveItemWma(const cHDItem& item, const std::string& path);
bool SaveItemTags(const cHDItem& item, const std::string& path);

}  // namespace qm
