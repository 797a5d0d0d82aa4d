#pragma once
#include <cstdint>
#include <string>

#include "item/ItemVocabulary.h"

// Behind cHDItem's LoadFromFile and SaveToFile: what is done for every type of file, and the WAV files.
// Layouts: docs/wav-metadata.md.
namespace qm {

class cHDItem;
class RiffSource;
class RiffTarget;
struct Platform;

// Marks and lengths as before a load: unset, nothing known.
void ResetMarks(cHDItem& item);

// Brings marks into order after a load: every one that is unset or outside the audio gets a place in it.
void RepairMarks(cHDItem& item);

// Reads format, length and metadata of a WAV file from the carriers that flags name (llfAutoDetect: all).
// Expects marks that were reset and leaves them as they were read. False when the file is no RIFF WAVE.
bool LoadItemWave(cHDItem& item, const RiffSource& file, enHDFileFlags flags);

// Gives the item what a saved one has: TotalLength from the file's format, and an origin and producer where
// it has none.
void PrepareItemForSave(cHDItem& item, const RiffSource& file, enHDFileFlags flags, const Platform& platform);

// Writes the item's cart chunk, or its bext chunk, as WriteRiffChunk does. False leaves audio and other
// chunks as they were.
bool SaveItemCart(const cHDItem& item, RiffTarget& file, enHDFileFlags flags);
bool SaveItemBext(const cHDItem& item, RiffTarget& file, enHDFileFlags flags);

}  // namespace qm
