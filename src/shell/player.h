// A side of the game: who plays it, and whether the engine moves for it.
#pragma once

#include <cstdint>
#include <string>

struct Player {
  std::string name;
  std::int32_t rating = 0;
  bool is_computer = false;
  bool plays = false;  // the engine moves for this side when it is on move

  static Player StandardHuman();
  static Player StandardEngine(bool plays);

  // Changed by the name and rating commands; the human's defaults.
  static std::string default_name;
  static std::int32_t default_opponent_rating;
  static std::int32_t default_engine_rating;
};
