#include "evaluation/pawn_structure.h"

#include "evaluation/passed_pawns.h"
#include "evaluation/pawn_geometry.h"
#include "evaluation/pawn_entry_construction.h"
#include "evaluation/pawn_hash_entry.h"
#include "evaluation/pawn_majorities.h"
#include "evaluation/pawn_sets.h"
#include "evaluation/pawn_structure_terms.h"
#include "evaluation/pawn_tables.h"
#include "search/hash.h"
#include "search/position_type.h"

void PreparePawns(EvaluationState& evaluation, const Board& board, int position_type) {
  if (position_type == ENDGAME_NO_PAWNS_LEFT) return;
  const PawnHashEntry* entry =
      PAWN_HASH_TABLE.Probe(board.PawnKey(), position_type, board.white.pawns, board.black.pawns);
  if (entry != nullptr) {
    ReadPawnEntry(*entry, board, evaluation);
    return;
  }
  ListPawns(evaluation, board);
  FindPassedPawns(evaluation, board);
}

void PrepareFileData(EvaluationState& evaluation, const Board& board) {
  if (evaluation.pawns[WHITE].pawn_count == 0 && evaluation.pawns[BLACK].pawn_count == 0)
    ListPawns(evaluation, board);
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    const std::uint16_t without = std::uint16_t(~FilesOf(board.Pieces(colour).pawns) & RANK_1);
    evaluation.files_without_pawn[colour] = without;
    evaluation.files_without_pawn_count[colour] = std::uint16_t(PopCount(without));
  }
  const Bitboard without_any = ~FilesOf(board.white.pawns | board.black.pawns) & RANK_1;
  evaluation.only_open_file = PopCount(without_any) == 1 ? FindHighestBit(without_any) : -1;
}

void PrepareStructure(EvaluationState& evaluation, const Board& board) {
  PrepareDynamicSets(evaluation, board);
  if (evaluation.pawn_entry_from_hash) return;
  PrepareStoredSets(evaluation, board);
}

ScorePair PawnStructureTerm(EvaluationState& evaluation, const Board& board, int position_type) {
  if (!evaluation.pawn_entry_from_hash) {
    if (position_type == OPENING) {
      ConstructPawnEntry(evaluation, board, OpeningPawnPositional, OpeningPawnReckless);
    } else {
      ConstructPawnEntry(evaluation, board, MiddlegamePawnPositional, MiddlegamePawnReckless);
    }
  }
  for (int colour = WHITE; colour <= BLACK; ++colour)
    for (int wing = 0; wing < 3; ++wing) {
      ZoneUnits& zone = evaluation.zone_units[colour][wing];
      const ZoneUnits& stored = evaluation.pawn_scores.units[colour][wing];
      zone.attack = std::int16_t(zone.attack + stored.attack);
      zone.defence = std::int16_t(zone.defence + stored.defence);
    }
  ScorePair s{evaluation.pawn_scores.positional, evaluation.pawn_scores.reckless};
  s += MajorityKingTerm(evaluation, board);
  s += BlockedCentreTerm(evaluation, board);
  s += IsolatedQueenPawnTerm(evaluation, board);
  s += PassedPawnPiecesTerm(evaluation, board);
  return s;
}

int PawnEndingTerm(EvaluationState& evaluation, const Board& board) {
  if (!evaluation.pawn_entry_from_hash) ConstructPawnEntryEnding(evaluation, board);
  return evaluation.pawn_scores.ending + MajorityKingEndingTerm(evaluation, board);
}
