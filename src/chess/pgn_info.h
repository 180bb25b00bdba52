// The tags of a PGN game other than its result.
#pragma once

#include <string>
#include <string_view>

struct PGNInfo {
  std::string event = "?";
  std::string site = "?";
  std::string date = "????.??.??";
  std::string round = "-";
  std::string white = "?";
  std::string black = "?";
  std::string time_control = "?";
  std::string fen;  // empty: the game starts from the initial position

  void SetRound(int round_number);
  void SetRound(int round_number, int subround);  // "3.1"
  void SetTimeControl(int seconds);
  void SetTimeControl(int moves, int seconds);  // "40/300"
  // -1 stands for an unknown part: "2024.??.??".
  void SetDate(int year, int month, int day);

  // The field that a tag of this name fills, or nullptr for tags that are not kept.
  std::string* FieldOfTag(std::string_view name);
};

// One line per tag from Event to TimeControl: the name, a tab, the value in double quotes.
void DisplayInfo(const PGNInfo& info);
