#include "settings/DeviceAssignment.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "kits/common/Numbers.h"
#include "kits/common/Text.h"

namespace qm {

namespace {

using Name = std::string_view;

// What a card's rule says about one name, besides a player's number.
constexpr std::int32_t kNotTaken = 0;
constexpr std::int32_t kNextPlayer = -1;

// One model of a family. The first whose mark stands in a name is the one.
struct CardModel {
  const char* mark;
  std::int16_t cardType;
  std::int16_t players;  // when their number is not set; 0: one for each output counted
  const char* pair;      // in the names of the outputs that are used
};

struct CardFamily {
  std::array<const char*, 5> marks;  // one of them stands in every name of the family
  std::array<CardModel, 3> models;
  bool (*counts)(Name name, const CardModel& model);
  std::int32_t (*player)(Name name, const CardModel& model);
};

bool Has(Name name, Name part) {
  return ContainsIgnoringCase(name, part);
}

// The number behind the first "-" at or after a position counted from 1, when it can be a player's.
std::int32_t NumberBehindDash(Name name, std::size_t position) {
  const std::size_t dash = name.find('-', position - 1);
  if (dash == Name::npos) return kNotTaken;
  const std::int32_t number = ParseWhole(name.substr(dash + 1));
  return number >= 1 && number <= 8 ? number : kNotTaken;
}

bool CountsAlways(Name, const CardModel&) {
  return true;
}

std::int32_t AxiaPlayer(Name name, const CardModel&) {
  if (!Has(name, "Wave01") || name.size() < 10) return kNotTaken;
  return Greater(ParseWhole(name.substr(9)), kNotTaken);
}

bool EchoCounts(Name name, const CardModel&) {
  return Has(name, "Analog") || Has(name, "Virtual");
}

std::int32_t EchoPlayer(Name name, const CardModel& model) {
  // "ANALOG OUT 1-2 (ECHO3G)" is one of these too.
  return EchoCounts(name, model) ? kNextPlayer : NumberBehindDash(name, 12);
}

bool DeltaCounts(Name name, const CardModel& model) {
  return Has(name, model.pair);
}

std::int32_t DeltaPlayer(Name name, const CardModel& model) {
  return DeltaCounts(name, model) && !Has(name, "Multi") ? kNextPlayer : kNotTaken;
}

bool EdirolCounts(Name name, const CardModel&) {
  return Has(name, "UA-101");
}

std::int32_t EdirolPlayer(Name name, const CardModel&) {
  const bool titled = StartsWithIgnoringCase(name, "Edirol") ||
                      (name.size() > 1 && StartsWithIgnoringCase(name.substr(1), ":Edirol"));
  if (titled && Has(name, "UA-101")) return kNextPlayer;
  // Two ways of naming the separate ports: the port before the card, and behind it.
  if (Has(name, "(UA-101)") || Has(name, "(EDIROL UA-101)")) return NumberBehindDash(name, 1);
  if (StartsWithIgnoringCase(name, "UA-101 ")) return NumberBehindDash(name, 8);
  if (StartsWithIgnoringCase(name, "1:UA-101 ")) return NumberBehindDash(name, 10);
  return kNotTaken;
}

bool AsiCounts(Name name, const CardModel&) {
  return Has(name, "Wave");
}

std::int32_t AsiPlayer(Name name, const CardModel& model) {
  return AsiCounts(name, model) && !Has(name, "WDM") ? kNextPlayer : kNotTaken;
}

constexpr std::int16_t kEdirolCard = 6;

// In order of priority.
constexpr CardFamily kFamilies[] = {
    {{"Axia"}, {{{"", 9, 0, ""}}}, CountsAlways, AxiaPlayer},
    {{"Layla", "Gina", "Mia", "Echo3G", "Darla"},
     {{{"Gina3G", 2, 3, ""}, {"", 1, 4, ""}}},
     EchoCounts,
     EchoPlayer},
    {{"Delta"},
     {{{"44", 3, 2, "1/2"}, {"1010LT", 8, 4, "3/4"}, {"", 4, 4, "1/2"}}},
     DeltaCounts,
     DeltaPlayer},
    {{"Edirol", "UA-101"}, {{{"", kEdirolCard, 4, ""}}}, EdirolCounts, EdirolPlayer},
    {{"ASI5"}, {{{"", 7, 4, ""}}}, AsiCounts, AsiPlayer},
};

bool Belongs(Name name, const CardFamily& family) {
  return std::ranges::any_of(family.marks, [&](const char* mark) { return mark && Has(name, mark); });
}

const CardModel& ModelOf(Name name, const CardFamily& family) {
  return *std::ranges::find_if(family.models, [&](const CardModel& model) { return Has(name, model.mark); });
}

// Separated, the card's driver lists its third and fourth port under at least four names.
bool PortsNotSeparated(const std::vector<std::string>& members) {
  const auto separate = [](Name name) { return Has(name, "UA-101") && Has(name, "3-4"); };
  return std::ranges::any_of(members, [](Name name) { return Has(name, "UA-101"); }) &&
         std::ranges::count_if(members, separate) < 4;
}

void GiveDevices(const std::vector<std::string>& names, const CardFamily& family, const CardModel& model,
                 DeviceAssignment& result) {
  std::int32_t next = 0;
  for (std::size_t device = 0; device < names.size(); ++device) {
    if (!Belongs(names[device], family)) continue;
    std::int32_t player = family.player(names[device], model);
    if (player == kNextPlayer) player = ++next;
    if (player >= 1 && player <= result.numberPlayers)
      result.deviceOfPlayer[static_cast<std::size_t>(player - 1)] = static_cast<std::int32_t>(device) + 1;
  }
}

}  // namespace

DeviceAssignment AssignDevices(const std::vector<std::string>& outputNames, std::int16_t numberPlayers,
                               std::int16_t maxPlayers) {
  DeviceAssignment result;
  result.numberPlayers = numberPlayers;
  result.deviceOfPlayer.resize(static_cast<std::size_t>(Greater<std::int16_t>(maxPlayers, 0)));
  for (const CardFamily& family : kFamilies) {
    std::vector<std::string> members;
    std::ranges::copy_if(outputNames, std::back_inserter(members),
                         [&](Name n) { return Belongs(n, family); });
    if (members.empty()) continue;
    const CardModel& model = ModelOf(members.front(), family);
    result.cardType = model.cardType;
    result.devicesCounted = static_cast<std::int32_t>(
        std::ranges::count_if(members, [&](Name name) { return family.counts(name, model); }));
    const std::int32_t wanted = numberPlayers != -1 ? numberPlayers
                                : model.players > 0 ? model.players
                                                    : result.devicesCounted;
    result.numberPlayers = static_cast<std::int16_t>(Limit<std::int32_t>(wanted, 0, maxPlayers));
    result.portsNotSeparated = model.cardType == kEdirolCard && PortsNotSeparated(members);
    GiveDevices(outputNames, family, model, result);
    break;
  }
  return result;
}

}  // namespace qm
