#include "evaluation/pawn_races.h"

#include <algorithm>

#include "bitbases/single_pawn_bitbases_data.h"
#include "bitbases/special_bitbases.h"
#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "evaluation/ending_frame.h"

namespace {

// A passer outside the enemy king's square, by its rank from its own side: [0] with the pawn's
// side on move, [1] with the other side on move.
constexpr int PawnRaceWon[2][7] = {
    {0, 640, 640, 720, 760, 800, 920},
    {0, 520, 520, 640, 720, 760, 800},
};

// King and pawn against king won, by the pawn's rank from its own side.
constexpr int PawnWinValue[7] = {0, 210, 210, 215, 225, 240, 250};
// More than one winning pawn doesn't make the win surer.
constexpr int SURE_WIN = 400;

// A pair of passers in the file table, for the side on move that wins it.
constexpr int TWO_PAWNS_WIN = 150;
constexpr int TWO_PAWNS_TABLE_WINS = 3;
constexpr int TWO_PAWNS_TABLE_LOSES = 1;

int MostAdvanced(int colour, Bitboard pawns) {
  return colour == WHITE ? FindHighestBit(pawns) : FindLowestBit(pawns);
}

bool HasPieces(const PieceSet& side) { return side.minor_points != 0 || side.major_count != 0; }

// The frontmost passers of `colour` whose square the enemy king is outside, with the side on
// move taken into account.
Bitboard OutsideTheSquare(const EvaluationState& evaluation, const Board& board, int colour) {
  const int enemy_king = int(board.Pieces(colour ^ 1).king_square);
  return evaluation.pawns[colour].frontmost_passed &
         BoardTables.KingOutsidePawnSquare[colour][enemy_king][board.side_on_move];
}

// An unstoppable passer; positive for either colour.
int RunawayValue(const Board& board, int colour, Bitboard outside) {
  const int q = RankFromOwnSide(colour, MostAdvanced(colour, outside));
  return PawnRaceWon[int(board.side_on_move) == colour ? 0 : 1][q];
}

// `colour` has passers and the enemy has no piece; positive for either colour.
int PassersAgainstKingAndPawns(const EvaluationState& evaluation, const Board& board, int colour,
                           PawnRaceMode& mode) {
  if (evaluation.pawns[colour].frontmost_passed == 0) return 0;
  const Bitboard outside = OutsideTheSquare(evaluation, board, colour);
  if (outside != 0) return RunawayValue(board, colour, outside);
  if (evaluation.pawns[colour ^ 1].frontmost_passed != 0) {
    // Both have passers: whether the enemy's can run depends on the pieces, seen later.
    mode = colour == WHITE ? WHITE_RACE : BLACK_RACE;
    return 0;
  }
  return SinglePawnsTerm(evaluation, board, colour);
}

// The squares a pawn still has to cross. From its start rank it may jump the first one, so that
// square stops nothing.
Bitboard WayToPromotion(int colour, int pawn) {
  const int step = colour == WHITE ? 8 : -8;
  Bitboard way = 0;
  for (int square = pawn + step; square >= 0 && square < 64; square += step)
    way |= SquareBit(square);
  if (RankFromOwnSide(colour, pawn) == 1) way &= ~SquareBit(pawn + step);
  return way;
}

// Positive for either colour: `colour` wins the race only if its pieces stand in the way of every
// passer of the enemy.
int WinsRace(const EvaluationState& evaluation, const Board& board, int colour) {
  const PieceSet& own = board.Pieces(colour);
  const int king = int(own.king_square);
  const Bitboard cover = (own.all & ~SquareBit(king)) |
                         (evaluation.attacked[colour] & ~BoardTables.KingAttacks[king]);
  for (Bitboard runners = evaluation.pawns[colour ^ 1].frontmost_passed; runners != 0;) {
    const int pawn = FindHighestBit(runners);
    runners ^= SquareBit(pawn);
    if ((WayToPromotion(colour ^ 1, pawn) & cover) == 0) return 0;
  }
  return SinglePawnsTerm(evaluation, board, colour);
}

int TwoPawnsValue(const Board& board, int white_pawn, int black_pawn) {
  const int raw =
      BraskBitbases::ProbeTwoPawns(int(board.side_on_move), int(board.white.king_square),
                                   int(board.black.king_square), white_pawn, black_pawn);
  const int for_side_on_move = raw == TWO_PAWNS_TABLE_WINS    ? TWO_PAWNS_WIN
                               : raw == TWO_PAWNS_TABLE_LOSES ? -TWO_PAWNS_WIN
                                                              : 0;
  return ForSideOnMove(board, for_side_on_move);
}

// The best pawn of White against the best defence of Black's pawns, from the file table.
int PassersAgainstPassers(const EvaluationState& evaluation, const Board& board) {
  int best = -TWO_PAWNS_WIN;
  for (Bitboard white = evaluation.pawns[WHITE].frontmost_passed; white != 0;) {
    const int white_pawn = FindHighestBit(white);
    white ^= SquareBit(white_pawn);
    int worst = TWO_PAWNS_WIN;
    for (Bitboard black = evaluation.pawns[BLACK].frontmost_passed; black != 0 && worst > best;) {
      const int black_pawn = FindHighestBit(black);
      black ^= SquareBit(black_pawn);
      worst = std::min(worst, TwoPawnsValue(board, white_pawn, black_pawn));
    }
    best = std::max(best, worst);
  }
  return best;
}

// A race without the file table: an unstoppable passer, or king and pawn against king.
int LonePassers(const EvaluationState& evaluation, const Board& board, int colour) {
  const Bitboard outside = OutsideTheSquare(evaluation, board, colour);
  return outside != 0 ? RunawayValue(board, colour, outside)
                      : SinglePawnsTerm(evaluation, board, colour);
}

}  // namespace

bool IsSinglePawnDraw(const Board& board, int pawn_colour, int pawn) {
  // The table has the pawn moving up: Black's side is read with the ranks flipped.
  const int flip = pawn_colour == WHITE ? 0 : 56;
  const int own_king = int(board.Pieces(pawn_colour).king_square) ^ flip;
  const int bare_king = int(board.Pieces(pawn_colour ^ 1).king_square) ^ flip;
  const int mover = int(board.side_on_move) == pawn_colour ? 0 : 1;
  return (BraskBitbases::SinglePawnBitbases[mover][pawn ^ flip][own_king] & SquareBit(bare_king)) !=
         0;
}

int SinglePawnsTerm(const EvaluationState& evaluation, const Board& board, int colour) {
  int sum = 0;
  for (Bitboard passers = evaluation.pawns[colour].frontmost_passed; passers != 0;) {
    const int pawn = FindHighestBit(passers);
    passers ^= SquareBit(pawn);
    if (IsSinglePawnDraw(board, colour, pawn)) continue;
    sum += PawnWinValue[RankFromOwnSide(colour, pawn)];
    if (sum >= SURE_WIN) return SURE_WIN;
  }
  return sum;
}

int BarePawnsTerm(const EvaluationState& evaluation, const Board& board, PawnRaceMode& mode) {
  mode = NO_RACE;
  if (!HasPieces(board.black)) return PassersAgainstKingAndPawns(evaluation, board, WHITE, mode);
  if (HasPieces(board.white)) return 0;
  return -PassersAgainstKingAndPawns(evaluation, board, BLACK, mode);
}

int WhiteWinsRaceTerm(const EvaluationState& evaluation, const Board& board) {
  return WinsRace(evaluation, board, WHITE);
}

int BlackWinsRaceTerm(const EvaluationState& evaluation, const Board& board) {
  return -WinsRace(evaluation, board, BLACK);
}

int PawnRaceTerm(const EvaluationState& evaluation, const Board& board) {
  const bool white = evaluation.pawns[WHITE].frontmost_passed != 0;
  const bool black = evaluation.pawns[BLACK].frontmost_passed != 0;
  if (white && black) {
    if (BraskBitbases::two_pawns_data == nullptr) return 0;
    return PassersAgainstPassers(evaluation, board);
  }
  // Worth twice as much here as where pieces could still stop the pawn.
  if (white) return 2 * LonePassers(evaluation, board, WHITE);
  if (black) return -2 * LonePassers(evaluation, board, BLACK);
  return 0;
}
