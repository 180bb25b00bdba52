#include "search/hash.h"

// Defined together so that they are built in this order, before main sizes them.
TranspositionTable TRANSPOSITION_TABLE;
PawnHashTable PAWN_HASH_TABLE;
EvaluationHashTable EVALUATION_HASH_TABLE;

void NewSearchOnHashTables() {
  TRANSPOSITION_TABLE.NewSearch();
  PAWN_HASH_TABLE.NewSearch();
  EVALUATION_HASH_TABLE.NewSearch();
}
