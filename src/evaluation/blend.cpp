#include "evaluation/blend.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "chess/basic.h"

namespace {

constexpr int ENDGAME_FACTOR_SIZE = 36;

// A cubic fitted to the weights 22 (factor 1) to 35 (just below 0); a fuller board counts as 0.
constexpr std::array<double, ENDGAME_FACTOR_SIZE> MakeEndgameFactors() {
  std::array<double, ENDGAME_FACTOR_SIZE> factor{};
  for (int i = 22; i < ENDGAME_FACTOR_SIZE; ++i) {
    const double x = (35 - i) / 13.0;
    const double value = 0.24875006018 * x * x * x + 0.11095692200031873 * x * x +
                         0.7854795236172942 * x - 0.07369495345398903;
    factor[i] = std::clamp(value, 0.0, 1.0);
  }
  return factor;
}

constexpr std::array<double, ENDGAME_FACTOR_SIZE> EndgameFactors = MakeEndgameFactors();

// Material far from level or near level, and how many pieces carry the game: both decide how
// much the style of play matters.
int PhaseShift(const Board& board, bool middlegame) {
  const int material = std::abs(board.Material());
  int shift = material >= 255 ? (middlegame ? 6 : 4)
              : material < 50 ? (middlegame ? -1 : -3)
                              : (middlegame ? 1 : -1);
  const bool white_queen = board.white.queens != 0;
  const bool black_queen = board.black.queens != 0;
  if (!white_queen && !black_queen) return shift - 3;
  if (white_queen != black_queen) shift += 2;
  const int minors = board.white.minor_points + board.black.minor_points;
  if (minors > 23) {
    shift += 1;
  } else if (minors < 12) {
    shift -= 2;
  } else if (minors <= 17) {
    shift -= 1;
  }
  return shift;
}

// How exposed the kings stand, from 4.0 for two kings tucked away on the same wing.
double KingExposure(const Board& board, double endgame_factor) {
  const double q = 1.0 - endgame_factor;
  const int white_king = int(board.white.king_square);
  const int black_king = int(board.black.king_square);
  double exposure = 4.0;
  auto central = [](int square) { return File(square) >= 3 && File(square) <= 5; };
  if (central(white_king)) exposure += 0.8 * q;
  if (Rank(white_king) >= 2) exposure += 3.0 * q;
  if (central(black_king)) exposure += 0.8 * q;
  if (Rank(black_king) <= 5) exposure += 3.0 * q;
  auto queenside = [](int square) { return File(square) <= 2; };
  auto kingside = [](int square) { return File(square) >= 6; };
  if ((queenside(white_king) && kingside(black_king)) ||
      (kingside(white_king) && queenside(black_king)))
    exposure += 1.2;
  return exposure;
}

// 0 to 20: how much the attacks on the two kings, as the curves judge them, favour wild play.
int KingDanger(const EvaluationState& evaluation, double exposure) {
  const double q = DefenceCurve(evaluation.king_defence[WHITE]) *
                   AttackCurve(evaluation.king_attack[WHITE]);
  const double p = DefenceCurve(evaluation.king_defence[BLACK]) *
                   AttackCurve(evaluation.king_attack[BLACK]);
  const double t = exposure + 8.0 * (p + q + p * q);
  const double m = std::max(p * q + 0.25, std::max(p, q));
  return m * t >= 20.0 ? 20 : int(m * t + 0.5);
}

}  // namespace

double EndgameFactor(int material_weight) {
  return material_weight < 0 || material_weight >= ENDGAME_FACTOR_SIZE
             ? 0.0
             : EndgameFactors[material_weight];
}

double DefenceCurve(int x) {
  if (x < -9) return 1.0;
  if (x >= 5) return 0.0;
  const double value = -1.71074236e-5 * x * x - 0.0347771834536 * x + 0.172185814;
  return std::clamp(value, 0.0, 1.0);
}

double AttackCurve(int y) {
  if (y > 29) return 1.0;
  if (y < -4) return 0.0;
  const double value = -1.9645048633650176e-5 * y * y * y + 0.0006210098320527342 * y * y +
                       0.0337458699134167 * y + 0.07126673933070571;
  return std::clamp(value, 0.0, 1.0);
}

int RecklessWeight(const EvaluationState& evaluation, const Board& board, bool middlegame) {
  const double exposure = KingExposure(board, evaluation.endgame_factor);
  return evaluation.settings->personality + (evaluation.openness >> 2) +
         PhaseShift(board, middlegame) + KingDanger(evaluation, exposure);
}

int Blend(const EvaluationState& evaluation, const Board& board, ScorePair sum, bool middlegame) {
  const int positional = sum.positional;
  const int reckless = sum.reckless;
  const int personality = evaluation.settings->personality;
  if (personality > 999) return reckless;
  if (personality < -999) return positional;
  const int w = RecklessWeight(evaluation, board, middlegame);
  if (w < 1) return positional;
  if (w > 15) return reckless;
  return ((16 - w) * positional + w * reckless) / 16;
}
