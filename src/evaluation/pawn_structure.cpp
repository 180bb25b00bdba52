#include "evaluation/pawn_structure.h"

#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "evaluation/pawn_hash_entry.h"
#include "search/hash.h"
#include "search/position_type.h"

namespace {

void ListPawnsAndPassers(PawnBlock& block, Bitboard own, Bitboard enemy, int colour) {
  // The walk goes from the highest bit down; the list keeps the lowest square first.
  int count = PopCount(own);
  block.pawn_count = std::uint16_t(count);
  for (Bitboard rest = own; rest != 0;) {
    const int square = FindHighestBit(rest);
    rest ^= SquareBit(square);
    block.squares[--count] = std::uint16_t(square);
    if ((BoardTables.PassedPawnMask[colour][square] & enemy) == 0) {
      block.passed |= SquareBit(square);
      ++block.passed_count;
    }
  }
}

}  // namespace

void PreparePawns(EvaluationState& evaluation, const Board& board, int position_type) {
  if (position_type == ENDGAME_NO_PAWNS_LEFT) return;
  const PawnHashEntry* entry =
      PAWN_HASH_TABLE.Probe(board.PawnKey(), position_type, board.white.pawns, board.black.pawns);
  if (entry != nullptr) {
    ReadPawnEntry(*entry, board, evaluation);
    return;
  }
  ListPawnsAndPassers(evaluation.pawns[WHITE], board.white.pawns, board.black.pawns, WHITE);
  ListPawnsAndPassers(evaluation.pawns[BLACK], board.black.pawns, board.white.pawns, BLACK);
}

// The terms below are still to come; until then they leave the state as it is and score nothing.

ScorePair PassedPawnTerm(EvaluationState&) { return {}; }

void PrepareFileData(EvaluationState&, const Board&) {}

void PrepareStructure(EvaluationState&, const Board&) {}

ScorePair PawnStructureTerm(EvaluationState&, const Board&, int) { return {}; }
