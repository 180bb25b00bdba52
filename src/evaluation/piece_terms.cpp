#include "evaluation/piece_terms.h"

// Still to come; until then the pieces score nothing beyond their material.

ScorePair KnightTerm(EvaluationState&, const Board&, int, bool) { return {}; }
ScorePair BishopTerm(EvaluationState&, const Board&, int) { return {}; }
ScorePair RookTerm(EvaluationState&, const Board&, int) { return {}; }
ScorePair QueenTerm(EvaluationState&, const Board&, int, bool) { return {}; }

ScorePair DevelopmentTerm(EvaluationState&, const Board&) { return {}; }
ScorePair OpeningFormationTerm(EvaluationState&, const Board&) { return {}; }
ScorePair SpaceTerm(EvaluationState&, const Board&) { return {}; }
ScorePair KnightMobilityTerm(EvaluationState&, const Board&) { return {}; }
