// Handlers for the materials that need no generic file: bare kings and the pawn endings of the
// special bitbases.
#include "bitbases/probe_generic_bitbases.h"
#include "bitbases/single_pawn_bitbases_data.h"
#include "bitbases/special_bitbases.h"
#include "chess/board.h"

namespace BraskBitbases::FixedHandlers {

namespace {

constexpr int RANK_FLIP = 56;
constexpr int SINGLE_PAWN_WIN_BASE = 32687;
constexpr int TWO_PAWNS_WIN_BASE = 32667;
// Wins rank by how far the pawn has come, so the search prefers advancing it.
constexpr int PER_RANK = 4;

bool IsDraw(int side, int pawn, int king, int bare_king) {
  return (SinglePawnBitbases[side][pawn][king] & SquareBit(bare_king)) != 0;
}

}  // namespace

int BareKings(void*, const Board&, const PositionList&, int* score) {
  *score = 0;
  return BITBASE_FOUND;
}

// List: P K k.
int KingAndPawnAgainstKing(void*, const Board& board, const PositionList& list, int* score) {
  const int pawn = list.squares[0], king = list.squares[1], bare_king = list.squares[2];
  const int side = int(board.side_on_move);
  if (IsDraw(side, pawn, king, bare_king)) {
    *score = 0;
  } else {
    const int win = SINGLE_PAWN_WIN_BASE + PER_RANK * (pawn >> 3);
    *score = side == WHITE ? win : -win;
  }
  return BITBASE_FOUND;
}

// List: p K k; seen from Black, so that the pawn moves up.
int KingAgainstKingAndPawn(void*, const Board& board, const PositionList& list, int* score) {
  const int pawn = list.squares[0] ^ RANK_FLIP, bare_king = list.squares[1] ^ RANK_FLIP;
  const int king = list.squares[2] ^ RANK_FLIP;
  const bool black_on_move = board.side_on_move == BLACK;
  if (IsDraw(black_on_move ? 0 : 1, pawn, king, bare_king)) {
    *score = 0;
  } else {
    const int win = SINGLE_PAWN_WIN_BASE + PER_RANK * (pawn >> 3);
    *score = black_on_move ? win : -win;
  }
  return BITBASE_FOUND;
}

// List: P p K k.
int KingAndPawnAgainstKingAndPawn(void*, const Board& board, const PositionList& list, int* score) {
  const int white_pawn = list.squares[0], black_pawn = list.squares[1];
  const int entry = ProbeTwoPawns(int(board.side_on_move), list.squares[2], list.squares[3],
                                  white_pawn, black_pawn);
  *score = 0;
  if (entry == SPECIAL_WIN) *score = TWO_PAWNS_WIN_BASE + PER_RANK * (white_pawn >> 3);
  if (entry == SPECIAL_LOSS) *score = -(TWO_PAWNS_WIN_BASE + PER_RANK * ((black_pawn >> 3) ^ 7));
  return BITBASE_FOUND;
}

}  // namespace BraskBitbases::FixedHandlers
