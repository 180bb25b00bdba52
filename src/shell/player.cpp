#include "shell/player.h"

std::string Player::default_name = "Incognito";
std::int32_t Player::default_opponent_rating = 0;
std::int32_t Player::default_engine_rating = 0;

Player Player::StandardHuman() { return Player{default_name, default_opponent_rating, false, false}; }

Player Player::StandardEngine(bool plays) {
  return Player{"Brask", default_engine_rating, true, plays};
}
