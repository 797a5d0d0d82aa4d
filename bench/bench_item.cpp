// Item texts: time an item, growth with the length of a hostile text, and what a trace costs that nobody wants.
#include <algorithm>
#include <vector>

#include "Bench.h"
#include "item/cHDItem.h"
#include "services/Diagnostics.h"
#include "services/TracedOperation.h"

namespace {

using namespace qm;

std::shared_ptr<cHDItem> FullItem(int number) {
  auto item = std::make_shared<cHDItem>();
  item->SetInfoAvailable(hiafull);
  item->SetReference("ITEM" + std::to_string(number));
  item->SetAudioFileName("\\\\server\\audio\\folder\\" + std::to_string(number) + ".wav");
  item->SetItemTitle("A title of \"usual\" length " + std::to_string(number));
  item->SetArtistName(1, "An artist & friends");
  item->SetItemDescription(1, "A description that goes on for a while");
  item->SetStudioNotes("Notes for the studio, 100% of them");
  item->SetRecordLabel("Label");
  item->SetPublisher("Publisher");
  item->SetISRC("GBAYE0000001");
  item->SetTotalLength(180.5f);
  item->SetIntroEnd(1, 12.25f);
  item->SetHookStart(1, 60);
  item->SetHookEnd(1, 70);
  item->SetExtro(1, 172.125f);
  item->AddLastPlay(45000.5, "12");
  return item;
}

// Seconds that reading a text of about `bytes` bytes takes: pairs that all look like the item's keys.
double HostileSeconds(std::size_t bytes) {
  std::string text = "SerVer=3.1 InfAvail=65535";
  const std::string pair = " Ex=1 LstPly=2 InEx HKStart Ref=\"=Ref=\" AudSt";
  while (text.size() < bytes) text += pair;
  cHDItem item;
  const double from = bench::ProcessSeconds();
  item.SetSerialisation(text);
  return bench::ProcessSeconds() - from;
}

}  // namespace

int main() {
  constexpr int kItems = 100000;
  std::vector<std::shared_ptr<cHDItem>> items;
  for (int i = 0; i < kItems; ++i) items.push_back(FullItem(i));
  std::vector<std::string> texts(kItems);
  double from = bench::ProcessSeconds();
  for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = items[i]->Serialisation();
  bench::Row("Serialisation, an item of 100,000", (bench::ProcessSeconds() - from) / kItems * 1e6, " us");
  from = bench::ProcessSeconds();
  for (std::size_t i = 0; i < texts.size(); ++i) items[i]->SetSerialisation(texts[i]);
  bench::Row("SetSerialisation, an item of 100,000", (bench::ProcessSeconds() - from) / kItems * 1e6, " us");
  const auto least = [](std::size_t bytes) {
    return std::min({HostileSeconds(bytes), HostileSeconds(bytes), HostileSeconds(bytes)});
  };
  bench::Row("Hostile text of 8 MB against 1 MB, time a byte", least(8u << 20) / least(1u << 20) / 8, "", "about 1");
  constexpr int kTraces = 50'000'000;
  from = bench::ProcessSeconds();
  for (int i = 0; i < kTraces; ++i) {
    Trace(5, ednOpens, "Start ", i, ".PlayItem,", 100);
    asm volatile("" ::: "memory");
  }
  bench::Row("A trace line with diagnostics off", (bench::ProcessSeconds() - from) / kTraces * 1e9, " ns", "< 5");
  from = bench::ProcessSeconds();
  for (int i = 0; i < kTraces; ++i) {
    const TracedOperation operation("cPlayer", i, ".PlayItem,", 100);
    asm volatile("" ::: "memory");
  }
  bench::Row("Both lines of a traced operation, off", (bench::ProcessSeconds() - from) / kTraces * 1e9, " ns", "< 5");
}
