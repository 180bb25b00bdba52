#include "term_setup.h"

#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "evaluation/material.h"
#include "evaluation/passed_pawn_quick.h"
#include "evaluation/pawn_structure.h"
#include "evaluation/wings.h"
#include "search/hash.h"
#include "search/position_type.h"

namespace {

Bitboard PawnAttacksOf(Bitboard pawns, int colour) {
  Bitboard attacks = 0;
  for (int square = 0; square < 64; ++square)
    if (pawns & SquareBit(square)) attacks |= BoardTables.PawnAttacks[colour][square];
  return attacks;
}

Bitboard FileOf(int square) { return FileMask(File(square)); }

void FillPawnBlock(PawnBlock& block, const Board& board, int colour) {
  const Bitboard own = board.Pieces(colour).pawns;
  const Bitboard enemy = board.Pieces(colour ^ 1).pawns;
  const Bitboard enemy_attacks = PawnAttacksOf(enemy, colour ^ 1);
  block.pawn_attacks = PawnAttacksOf(own, colour);
  block.defended = own & block.pawn_attacks;
  for (int square = 0; square < 64; ++square) {
    if (!(own & SquareBit(square))) continue;
    const int ahead = colour == WHITE ? square + 8 : square - 8;
    if ((BoardTables.PassedPawnMask[colour][square] & enemy) == 0) block.passed |= SquareBit(square);
    if ((board.occupied | enemy_attacks) & SquareBit(ahead)) block.restrained |= SquareBit(square);
    if (PopCount(own & FileOf(square)) >= 2) block.doubled |= SquareBit(square);
    const Bitboard beside = (File(square) > 0 ? FileOf(square - 1) : 0) |
                            (File(square) < 7 ? FileOf(square + 1) : 0);
    if (!(own & beside)) block.isolated |= SquareBit(square);
  }
}

}  // namespace

void PrepareForPieceTerms(EvaluationState& evaluation, const Board& board, int openness) {
  evaluation.Reset();
  evaluation.openness = openness;
  evaluation.only_open_file = -1;
  int open_files = 0;
  for (int file = 0; file < 8; ++file) {
    if ((board.white.pawns | board.black.pawns) & FileMask(file)) continue;
    ++open_files;
    evaluation.only_open_file = file;
  }
  if (open_files != 1) evaluation.only_open_file = -1;
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    const PieceSet& side = board.Pieces(colour);
    FillPawnBlock(evaluation.pawns[colour], board, colour);
    evaluation.has_bishop_pair[colour] = HasBishopPair(side);
    evaluation.king_zone[colour] = PawnWing[File(int(side.king_square))];
    evaluation.attacked[colour] =
        BoardTables.KingAttacks[side.king_square] | evaluation.pawns[colour].pawn_attacks;
  }
}

void ClearHashTables() {
  EVALUATION_HASH_TABLE.Clear();
  PAWN_HASH_TABLE.Clear();
}

void PrepareForEndingTerms(EvaluationState& evaluation, const Board& board) {
  ClearHashTables();
  evaluation.Reset();
  PreparePawns(evaluation, board, ClassifyPosition(board, UNCLASSIFIED));
  PrepareFileData(evaluation, board);
  PrepareStructure(evaluation, board);
  PassedPawnQuickTerm(evaluation, board);
}

std::string UnitsText(const ZoneUnits (&units)[2][3]) {
  std::string text;
  for (int colour = WHITE; colour <= BLACK; ++colour)
    for (int wing = QUEENSIDE; wing <= CENTRE; ++wing) {
      const ZoneUnits u = units[colour][wing];
      if (u.attack == 0 && u.defence == 0) continue;
      text += std::string(text.empty() ? "" : " ") + "WB"[colour] + "QKC"[wing] + " " +
              std::to_string(u.attack) + "/" + std::to_string(u.defence);
    }
  return text;
}
