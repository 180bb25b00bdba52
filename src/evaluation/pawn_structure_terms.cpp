#include "evaluation/pawn_structure_terms.h"

#include "chess/square_colours.h"
#include "evaluation/pawn_geometry.h"
#include "evaluation/wings.h"

namespace {

void Bump(std::int16_t& field, int n) { field = std::int16_t(field + n); }

ScorePair BlockedCentreOf(EvaluationState& evaluation, const Board& board, int colour) {
  const PieceSet& own_pieces = board.Pieces(colour);
  const Bitboard own = RelativeSet(colour, own_pieces.pawns);
  const Bitboard enemy = RelativeSet(colour, board.Pieces(colour ^ 1).pawns);
  const Bitboard occupied = RelativeSet(colour, board.occupied);
  const Bitboard own_pieces_only = RelativeSet(colour, own_pieces.all & ~own_pieces.pawns);
  ZoneUnits& centre = evaluation.zone_units[colour][CENTRE];
  const auto on = [](Bitboard set, int square) { return (set & SquareBit(square)) != 0; };
  ScorePair s;
  for (const int square : {D2, E2}) {
    if (on(own, square) && on(occupied, square + 8)) {
      s += ScorePair{-18, -28};
      Bump(centre.attack, -6);
      Bump(centre.defence, -4);
    }
  }
  if (on(own, C2) && on(own_pieces_only, C3)) {
    if (on(own, D4) && on(enemy, D5)) {
      s += ScorePair{-25, -25};
      Bump(centre.attack, -4);
    } else {
      s += ScorePair{-8, -10};
      Bump(centre.attack, -2);
    }
  }
  return s;
}

// The bishop that can defend the pawn, and the rook behind it.
ScorePair IsolatedQueenPawnPieces(EvaluationState& evaluation, const Board& board, int colour) {
  const PieceSet& own = board.Pieces(colour);
  const int pawn = colour == WHITE ? D4 : D5;
  const Bitboard pawn_colour_squares = colour == WHITE ? DARK_SQUARES : LIGHT_SQUARES;
  ZoneUnits& centre = evaluation.zone_units[colour][CENTRE];
  ScorePair s;
  if (own.bishops & pawn_colour_squares) {
    bool defends = false;
    for (Bitboard rest = own.bishops; rest != 0;) {
      const int square = FindHighestBit(rest);
      rest ^= SquareBit(square);
      defends = defends || (board.BishopAttacksFrom(square) & SquareBit(pawn)) != 0;
    }
    s += defends ? ScorePair{0, -2} : ScorePair{0, 1};
    Bump(centre.defence, defends ? 2 : 1);
  }
  const Bitboard behind = colour == WHITE ? SquareBit(D1) | SquareBit(D2) | SquareBit(D3)
                                          : SquareBit(D8) | SquareBit(D7) | SquareBit(D6);
  if (own.rooks & behind) {
    s += ScorePair{6, 6};
    Bump(centre.defence, 2);
  }
  return s;
}

// The fewer pieces are left, the more the pawn is a mere weakness.
ScorePair IsolatedQueenPawnByMaterial(int total_piece_points) {
  if (total_piece_points > 58) return {0, 25};
  if (total_piece_points >= 49) return {-6, 10};
  if (total_piece_points >= 39) return {0, 0};
  if (total_piece_points >= 29) return {-12, -4};
  return {-18, -16};
}

}  // namespace

ScorePair BlockedCentreTerm(EvaluationState& evaluation, const Board& board) {
  return BlockedCentreOf(evaluation, board, WHITE) - BlockedCentreOf(evaluation, board, BLACK);
}

ScorePair IsolatedQueenPawnTerm(EvaluationState& evaluation, const Board& board) {
  bool iqp[2];
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    const PawnBlock& block = evaluation.pawns[colour];
    const Bitboard d_pawn = SquareBit(colour == WHITE ? D4 : D5);
    iqp[colour] = (block.isolated & d_pawn) && !(block.doubled & d_pawn);
  }
  if (iqp[WHITE] && iqp[BLACK]) {
    for (int colour = WHITE; colour <= BLACK; ++colour)
      Bump(evaluation.zone_units[colour][CENTRE].defence, -6);
    return {};
  }
  if (!iqp[WHITE] && !iqp[BLACK]) return {};
  const int colour = iqp[WHITE] ? WHITE : BLACK;
  const ScorePair s = IsolatedQueenPawnByMaterial(int(board.total_piece_points)) +
                      IsolatedQueenPawnPieces(evaluation, board, colour);
  return colour == WHITE ? s : -s;
}
