// How the two halves of a score become one number: the personality, the openness of the
// position, the phase of the game and the danger to the kings move the weight from the
// positional half (closed, quiet, balanced) to the reckless half (open, unbalanced, kings under
// attack).
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "evaluation/score_pair.h"

// 0 on a full board, rising to 1 when the larger side's material weight (MaterialWeight) is 22.
double EndgameFactor(int material_weight);

// The share of the danger to a king that its defence leaves open (1 when it has none) and the
// share that an attack of this size brings (1 for an overwhelming one).
double DefenceCurve(int defence);
double AttackCurve(int attack);

// The weight of the reckless half, 0 to 16, before it is clamped.
int RecklessWeight(const EvaluationState& evaluation, const Board& board, bool middlegame);

// One number from White's view.
int Blend(const EvaluationState& evaluation, const Board& board, ScorePair sum, bool middlegame);
