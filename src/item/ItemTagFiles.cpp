#include "item/ItemTagFiles.h"

#include "item/ItemTagFields.h"
#include "item/cHDItem.h"
#include "kits/common/Files.h"
#include "kits/sound/tags/cAudioTagFile.h"

namespace qm {

namespace {

constexpr std::int32_t kDualChannel = 2;
constexpr std::int16_t kMusic = 1;  // content type

// An MP3 file keeps to the kind of tag that it ends in.
void SetModeFor(const std::string& path, std::int32_t type, cAudioTagFile& file) {
  if (type == aftMP3) file.SetMode(EndsInId3v1Tag(path) ? etmID3v1 : etmID3v2);
}

void TakeGenre(const std::string& name, cHDItem& item) {
  const std::int32_t number = GenreNumber(name);
  if (number <= 0 || number == kOtherGenre) return;
  item.SetCategoryNumber(static_cast<std::int16_t>(number));
  item.SetCategoryInfo(name);
  item.SetContentTypeInfo("Music");
}

}  // namespace

bool LoadItemTags(cHDItem& item, const std::string& path) {
  cAudioTagFile file;  // all kinds of tags are read, whatever the mode
  if (!file.Open(path)) return false;
  cAudioFormat format = file.Format();
  format.SetFormatType(item.AudioFileType());
  if (file.ChannelMode() == kDualChannel) format.SetBitRate(0);
  item.ReplaceAudioFormat(format);
  const TagFields& fields = file.Fields();
  const bool titled = !fields.Text(etfTitle).empty();
  item.SetItemTitle(titled ? fields.Text(etfTitle) : BaseNameOf(path));
  item.SetArtistName(1, titled ? fields.Text(etfArtist) : FileNameOf(FolderOf(path)));
  TakeTagFields(fields, item);
  TakeGenre(fields.Text(etfGenre), item);
  item.SetTotalLength(static_cast<float>(file.Milliseconds() / 1000));
  return true;
}

bool SaveItemTags(const cHDItem& item, const std::string& path) {
  cAudioTagFile file;
  SetModeFor(path, item.AudioFileType(), file);
  if (!file.Open(path)) return false;
  GiveTagFields(item, file.Fields());
  if (item.ContentTypeNumber() == kMusic)
    file.SetGenre(item.CategoryNumber(), item.CategoryInfo());
  else
    file.SetGenre(kOtherGenre, GenreName(kOtherGenre));
  return file.Save();
}

}  // namespace qm
