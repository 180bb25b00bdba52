#include "term_setup.h"

#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "evaluation/ending_frame.h"
#include "evaluation/material.h"
#include "evaluation/passed_pawn_quick.h"
#include "evaluation/pawn_structure.h"
#include "evaluation/wings.h"
#include "search/hash.h"
#include "search/position_type.h"

namespace {

// Appends "name first/second" unless both are zero.
void Add(std::string& text, const std::string& name, int first, int second) {
  if (first == 0 && second == 0) return;
  text += (text.empty() ? "" : " ") + name + " " + std::to_string(first) + "/" +
          std::to_string(second);
}

Bitboard FileOf(int square) { return FileMask(File(square)); }

void FillPawnBlock(PawnBlock& block, const Board& board, int colour) {
  const Bitboard own = board.Pieces(colour).pawns;
  const Bitboard enemy = board.Pieces(colour ^ 1).pawns;
  const Bitboard enemy_attacks = PawnAttacksOf(colour ^ 1, enemy);
  block.pawn_attacks = PawnAttacksOf(colour, own);
  block.defended = own & block.pawn_attacks;
  for (int square = 0; square < 64; ++square) {
    if (!(own & SquareBit(square))) continue;
    const int ahead = colour == WHITE ? square + 8 : square - 8;
    if (!(BoardTables.PassedPawnMask[colour][square] & enemy)) block.passed |= SquareBit(square);
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
  PrepareFileData(evaluation, board);
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    const PieceSet& side = board.Pieces(colour);
    FillPawnBlock(evaluation.pawns[colour], board, colour);
    evaluation.has_bishop_pair[colour] = HasBishopPair(side);
    evaluation.king_zone[colour] = PawnWing[File(int(side.king_square))];
    evaluation.attacked[colour] =
        BoardTables.KingAttacks[side.king_square] | evaluation.pawns[colour].pawn_attacks;
  }
}

void PrepareForEndingTerms(EvaluationState& evaluation, const Board& board) {
  EVALUATION_HASH_TABLE.Clear();
  PAWN_HASH_TABLE.Clear();
  evaluation.Reset();
  PreparePawns(evaluation, board, ClassifyPosition(board, UNCLASSIFIED));
  PrepareFileData(evaluation, board);
  PrepareStructure(evaluation, board);
  PassedPawnQuickTerm(evaluation, board);
}

std::string UnitsText(const ZoneUnits (&units)[2][3]) {
  std::string text;
  for (int colour = WHITE; colour <= BLACK; ++colour)
    for (int wing = QUEENSIDE; wing <= CENTRE; ++wing)
      Add(text, {"WB"[colour], "QKC"[wing]}, units[colour][wing].attack,
          units[colour][wing].defence);
  return text;
}

std::string StateText(const EvaluationState& evaluation) {
  std::string text = UnitsText(evaluation.zone_units);
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    const std::string side(1, "WB"[colour]);
    Add(text, side + "king", evaluation.king_attack[colour], evaluation.king_defence[colour]);
    Add(text, side + "gaps", evaluation.missing_front[colour], evaluation.missing_second[colour]);
  }
  if (evaluation.endgame_trend != 0)
    text += (text.empty() ? "trend " : " trend ") + std::to_string(evaluation.endgame_trend);
  return text;
}
