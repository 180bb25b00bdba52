#include "evaluation/rook_endings.h"

#include <algorithm>
#include <cstdlib>

#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "evaluation/ending_evaluators.h"
#include "evaluation/ending_frame.h"

namespace {

// By the number of files without own pawns, 1..8: open files are worth less the more there are.
constexpr int RookOpenFile[9] = {0, 18, 14, 12, 10, 9, 8, 7, 7};
constexpr int RookHalfOpenFile[9] = {0, 12, 9, 7, 6, 5, 5, 4, 4};
constexpr int ONLY_OPEN_FILE = 12;
constexpr int ROOK_BASE = 85;
constexpr int ROOK_LESS_PER_PAWN_PAIR = 12;

constexpr int DOUBLED_ON_SEVENTH = 25;
constexpr int CONNECTED_AGAINST_QUEEN = 12;
constexpr int CONNECTED = 4;
constexpr int SEVENTH_WITH_KING_CUT_OFF = 50;
constexpr int ONE_PAWN_ON_SEVENTH = 30;
constexpr int PAWNS_ON_SEVENTH = 60;
constexpr int PER_ISOLATED_PAWN = 4;

constexpr int LOOSE_PAWN = 30;

// Rook and pawn against rook.
constexpr int DEFENDER_ON_QUEENING_SQUARE = 10;

constexpr int SEVENTH = 6;

// The enemy king on the last two ranks, where a rook on the seventh cuts it off.
bool KingOnLastTwoRanks(const Board& board, int colour) {
  return RankFromOwnSide(colour, int(board.Pieces(colour ^ 1).king_square)) >= SEVENTH;
}

int FileTerm(const EvaluationState& evaluation, const Board& board, int colour, int file) {
  const Bitboard mask = FileMask(file);
  if ((board.Pieces(colour).pawns & mask) != 0) return 0;
  // A file without own pawn makes the count at least 1.
  const int count = std::min<int>(evaluation.files_without_pawn_count[colour], 8);
  if ((board.Pieces(colour ^ 1).pawns & mask) != 0) return RookHalfOpenFile[count];
  return RookOpenFile[count] + (evaluation.only_open_file == file ? ONLY_OPEN_FILE : 0);
}

int ConnectedTerm(const Board& board, int colour, int square, Bitboard partners, bool& free) {
  const PieceSet& own = board.Pieces(colour);
  const PieceSet& enemy = board.Pieces(colour ^ 1);
  const Bitboard seventh = RankMask(colour == WHITE ? SEVENTH : 7 - SEVENTH);
  if (RankFromOwnSide(colour, square) == SEVENTH && (partners & seventh) != 0 &&
      KingOnLastTwoRanks(board, colour)) {
    free = true;
    return DOUBLED_ON_SEVENTH;
  }
  const bool against_queen = enemy.queens != 0 && own.queens == 0 && enemy.rooks == 0;
  return against_queen ? CONNECTED_AGAINST_QUEEN : CONNECTED;
}

// The enemy's pawns at home, each right in front of one of its rooks, that this rook attacks.
int SeventhRankTerm(const Board& board, int colour, Bitboard attacks, bool free) {
  const PieceSet& enemy = board.Pieces(colour ^ 1);
  int value = KingOnLastTwoRanks(board, colour) ? SEVENTH_WITH_KING_CUT_OFF : 0;
  const Bitboard home = RankMask(colour == WHITE ? SEVENTH : 7 - SEVENTH);
  const Bitboard before_rooks = colour == WHITE ? enemy.rooks >> 8 : enemy.rooks << 8;
  Bitboard targets = enemy.pawns & home & before_rooks & attacks;
  if (!free) targets &= ~BoardTables.KingAttacks[enemy.king_square];
  const int n = PopCount(targets);
  return value + (n == 0 ? 0 : n == 1 ? ONE_PAWN_ON_SEVENTH : PAWNS_ON_SEVENTH);
}

// Rook and pawn against rook with the pawn White's: K, R, P the strong side, k, r the defender.
struct RookAndPawn {
  int K, R, P, k, r;
};

bool AloneOnFile(const RookAndPawn& p, int piece) {
  const int file = File(piece);
  int on_file = 0;
  for (int square : {p.K, p.R, p.P, p.k, p.r}) on_file += File(square) == file ? 1 : 0;
  return on_file == 1;
}

bool FileBetween(int file, int a, int b) {
  return file >= std::min(a, b) && file <= std::max(a, b);
}

int RookAndPawnValue(const RookAndPawn& p) {
  const auto& distance = BoardTables.Distance;
  const int pf = File(p.P), pr = Rank(p.P);
  const int queening = MakeSquare(pf, 7);
  if (p.k == queening) return DEFENDER_ON_QUEENING_SQUARE;

  // The defending king cut off from the pawn by files that the rook holds.
  const int dk = File(p.k) - pf;
  int cut = 0;
  if (std::abs(dk) >= 2 && FileBetween(File(p.R), pf, File(p.k)) && AloneOnFile(p, p.R)) {
    cut = std::abs(dk);
    if (p.K == queening && pr == SEVENTH && pf != 0 && pf != 7 && std::abs(File(p.r) - pf) == 1)
      return 350 + 4 * cut - std::abs(8 * Rank(p.R) - 24);
    if (cut > 2 && pr >= 5) return 8 * cut + 250;
  }

  int v = 15 - distance[p.K][p.r] + 4 * pr;
  const Bitboard front = BoardTables.PassedPawnMask[WHITE][p.P];
  if ((front & SquareBit(p.k)) == 0) v += 32 * (cut + pr - 6) + 45;
  const int up = pr - Rank(p.k);
  if ((front & SquareBit(p.K)) != 0) {
    if (cut != 0) v += 220;
    else if (up < 1) v += 60;
    else v += std::max(32 * up + 100, 220);
    return std::max(v, 0);
  }
  // The strong king cut off in its turn.
  const int dK = File(p.K) - pf;
  if (std::abs(dK) >= 2 && FileBetween(File(p.r), pf, File(p.K)) && AloneOnFile(p, p.r))
    return std::max(v - 8 * std::abs(dK) - 16, 0);
  return up >= 1 ? std::max(v + 8 * up, 0) : std::max(v, 0);
}

int LoosePawnsOf(const EvaluationState& evaluation, const Board& board, int colour) {
  const PieceSet& own = board.Pieces(colour);
  const Bitboard guarded =
      evaluation.pawns[colour].defended | BoardTables.KingAttacks[own.king_square];
  int count = 0;
  for (Bitboard pawns = own.pawns & ~guarded; pawns != 0;) {
    const int pawn = FindHighestBit(pawns);
    pawns ^= SquareBit(pawn);
    const Bitboard lines = board.RookAttacksFrom(pawn);
    if ((lines & own.rooks) != 0 && (lines & board.Pieces(colour ^ 1).rooks) != 0) ++count;
  }
  return count;
}

}  // namespace

int EndingRookTerm(EvaluationState& evaluation, const Board& board, int colour) {
  const PieceSet& own = board.Pieces(colour);
  const int pawn_pairs = std::min(8, PopCount(board.white.pawns | board.black.pawns) / 2);
  int sum = 0;
  for (Bitboard rooks = own.rooks; rooks != 0;) {
    const int square = FindHighestBit(rooks);
    rooks ^= SquareBit(square);  // what is left are the rooks not walked yet
    const Bitboard attacks = board.RookAttacksFrom(square);
    evaluation.attacked[colour] |= attacks;
    sum += ROOK_BASE - ROOK_LESS_PER_PAWN_PAIR * pawn_pairs;
    sum += FileTerm(evaluation, board, colour, File(square));
    bool free = false;
    if ((attacks & rooks) != 0) sum += ConnectedTerm(board, colour, square, attacks & rooks, free);
    if (RankFromOwnSide(colour, square) == SEVENTH)
      sum += SeventhRankTerm(board, colour, attacks, free);
  }
  return sum + PER_ISOLATED_PAWN * PopCount(evaluation.pawns[colour ^ 1].isolated);
}

bool RookEndingKnowledge(const Board& board, int& white_view) {
  if (board.total_piece_points != 10 || board.white.rooks == 0 || board.black.rooks == 0)
    return false;
  const Bitboard pawns = board.white.pawns | board.black.pawns;
  if (PopCount(pawns) != 1) return false;
  const int strong = board.white.pawns != 0 ? WHITE : BLACK;
  // Black's pawn is seen from White's side of the board.
  const int flip = strong == WHITE ? 0 : 56;
  const PieceSet& own = board.Pieces(strong);
  const PieceSet& enemy = board.Pieces(strong ^ 1);
  const RookAndPawn position{int(own.king_square) ^ flip, FindHighestBit(own.rooks) ^ flip,
                             FindHighestBit(pawns) ^ flip, int(enemy.king_square) ^ flip,
                             FindHighestBit(enemy.rooks) ^ flip};
  const int value = RookAndPawnValue(position);
  white_view = strong == WHITE ? value : -value;
  return true;
}

int LoosePawnsTerm(const EvaluationState& evaluation, const Board& board) {
  return LOOSE_PAWN *
         (LoosePawnsOf(evaluation, board, BLACK) - LoosePawnsOf(evaluation, board, WHITE));
}

int EvaluateRookEnding(EvaluationState& evaluation, const Board& board, int beta, bool& lazy) {
  int white_view = 0;
  if (RookEndingKnowledge(board, white_view)) {
    CompletePawnEntry(evaluation, board);
    return ForSideOnMove(board, white_view);
  }
  const int result = EvaluateEnding(evaluation, board, beta, lazy);
  if (lazy) return result;
  return result + ForSideOnMove(board, LoosePawnsTerm(evaluation, board));
}
