#include "chess/pgn_info.h"

#include <utility>

#include "shell/conversions.h"
#include "shell/tee_stream.h"

namespace {

// The number with leading zeros to the width, or question marks if it is unknown (negative).
std::string DatePart(int value, std::size_t width) {
  if (value < 0) return std::string(width, '?');
  std::string digits = IntToString(value);
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  return digits;
}

}  // namespace

void PGNInfo::SetRound(int round_number) { round = IntToString(round_number); }

void PGNInfo::SetRound(int round_number, int subround) {
  round = IntToString(round_number) + "." + IntToString(subround);
}

void PGNInfo::SetTimeControl(int seconds) { time_control = IntToString(seconds); }

void PGNInfo::SetTimeControl(int moves, int seconds) {
  time_control = IntToString(moves) + "/" + IntToString(seconds);
}

void PGNInfo::SetDate(int year, int month, int day) {
  date = DatePart(year, 4) + "." + DatePart(month, 2) + "." + DatePart(day, 2);
}

std::string* PGNInfo::FieldOfTag(std::string_view name) {
  const std::pair<std::string_view, std::string*> tags[] = {
      {"Event", &event}, {"Site", &site},   {"Date", &date},
      {"Round", &round}, {"White", &white}, {"Black", &black},
      {"TimeControl", &time_control}, {"FEN", &fen},
  };
  for (const auto& [tag, field] : tags)
    if (tag == name) return field;
  return nullptr;
}

void DisplayInfo(const PGNInfo& info) {
  const std::pair<const char*, const std::string*> tags[] = {
      {"Event", &info.event}, {"Site", &info.site},   {"Date", &info.date},
      {"Round", &info.round}, {"White", &info.white}, {"Black", &info.black},
      {"TimeControl", &info.time_control},
  };
  for (const auto& [name, value] : tags) Output << name << "\t\"" << *value << "\"\n";
  Output.Flush();
}
