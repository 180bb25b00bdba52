#include "evaluation/king_safety.h"

// Still to come; until then the kings count as neither attacked nor defended.

ScorePair KingSafetyTerm(EvaluationState&, const Board&) { return {}; }
ScorePair ZoneBalanceTerm(EvaluationState&, const Board&) { return {}; }
