#include "evaluation/pawn_sets.h"

#include <algorithm>

#include "evaluation/pawn_geometry.h"
#include "evaluation/pawn_majorities.h"

namespace {

// The rank of the board that is the colour's rank of this index.
constexpr Bitboard RelativeRankMask(int colour, int rank) {
  return RankMask(colour == WHITE ? rank : 7 - rank);
}

void ListPawnsOf(PawnBlock& block, Bitboard own) {
  // The walk goes from the highest bit down; the list keeps the lowest square first.
  int count = PopCount(own);
  block.pawn_count = std::uint16_t(count);
  for (Bitboard rest = own; rest != 0;) {
    const int square = FindHighestBit(rest);
    rest ^= SquareBit(square);
    block.squares[--count] = std::uint16_t(square);
  }
}

void PrepareAttacks(PawnBlock& block, int colour, Bitboard own) {
  const Bitboard towards_a = AttacksTowardsA(colour, own);
  const Bitboard towards_h = AttacksTowardsH(colour, own);
  block.pawn_attacks = towards_a | towards_h;
  block.attacked_once = towards_a ^ towards_h;
  block.attacked_twice = towards_a & towards_h;
  block.defended = own & block.pawn_attacks;
}

// One byte per file, each 1 where the byte of a rank has its bit: the counts of all ranks add up
// without carries, since a file holds at most eight pawns.
struct RankSpreadTable {
  std::uint64_t files[256];
};

constexpr RankSpreadTable MakeRankSpread() {
  RankSpreadTable table{};
  for (int rank_bits = 0; rank_bits < 256; ++rank_bits)
    for (int file = 0; file < 8; ++file)
      if (rank_bits & (1 << file)) table.files[rank_bits] |= std::uint64_t{1} << (8 * file);
  return table;
}

constexpr RankSpreadTable RankSpread = MakeRankSpread();

void PrepareFiles(PawnBlock& block, Bitboard own) {
  std::uint64_t counts = 0;
  for (int rank = 0; rank < 8; ++rank) counts += RankSpread.files[(own >> (8 * rank)) & 0xFF];
  for (int file = 0; file < 8; ++file) {
    block.file_count[file] = std::uint16_t((counts >> (8 * file)) & 0xFF);
    if (block.file_count[file] >= 2) block.doubled |= own & FileMask(file);
  }
}

// Where the colour's pawns can walk without meeting a pawn or a square the enemy holds.
Bitboard SafeAdvance(int colour, Bitboard own, Bitboard barrier) {
  Bitboard reached = Forward(colour, own) & ~barrier;
  for (int step = 0; step < 6; ++step) reached |= Forward(colour, reached) & ~barrier;
  return reached;
}

// A pawn is backward when no pawn of its own can ever come to cover its square and the enemy
// holds the square in front of it. From its start rank the double step does not help when the
// square it would pass is such a square.
void FindBackward(PawnBlock& block, int colour, Bitboard own, Bitboard all_pawns,
                  Bitboard enemy_controlled, Bitboard occupied) {
  const Bitboard weak_stop =
      Backward(colour, enemy_controlled & ~all_pawns) & ~block.potential_attacks;
  const Bitboard empty_third = weak_stop & RelativeRankMask(colour, 2) & ~occupied;
  const Bitboard found =
      (own & weak_stop) | (own & RelativeRankMask(colour, 1) & Backward(colour, empty_third));
  const Bitboard low_ranks = RelativeRankMask(colour, 1) | RelativeRankMask(colour, 2);
  block.backward = found & ~(block.duo & ~low_ranks);
  block.backward_low = found & low_ranks & ~block.duo;
}

}  // namespace

void ListPawns(EvaluationState& evaluation, const Board& board) {
  ListPawnsOf(evaluation.pawns[WHITE], board.white.pawns);
  ListPawnsOf(evaluation.pawns[BLACK], board.black.pawns);
}

// A pawn is passed when no enemy pawn stands ahead of it on its own file or a neighbouring one:
// no pawn of the colour is passed on the squares behind the enemy pawns and their neighbours.
void FindPassedPawns(EvaluationState& evaluation, const Board& board) {
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    PawnBlock& block = evaluation.pawns[colour];
    const Bitboard enemy = board.Pieces(colour ^ 1).pawns;
    block.passed = board.Pieces(colour).pawns & ~FillBehind(colour, WithNeighbours(enemy));
    block.passed_count = std::uint16_t(PopCount(block.passed));
  }
}

void PrepareDynamicSets(EvaluationState& evaluation, const Board& board) {
  const Bitboard all_pawns = board.white.pawns | board.black.pawns;
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    PawnBlock& block = evaluation.pawns[colour];
    const Bitboard own = board.Pieces(colour).pawns;
    PrepareAttacks(block, colour, own);
    block.stopped = own & Backward(colour, board.occupied);
    block.duo = own & (((own & ~FILE_A) >> 1) | ((own & ~FILE_H) << 1));
    evaluation.blocked_pawns |= own & Backward(colour, all_pawns);
    PrepareFiles(block, own);
    evaluation.attacked[colour] |= block.pawn_attacks;
  }
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    PawnBlock& block = evaluation.pawns[colour];
    const PawnBlock& enemy = evaluation.pawns[colour ^ 1];
    const Bitboard own = board.Pieces(colour).pawns;
    block.controlled = (block.pawn_attacks & ~enemy.pawn_attacks) |
                       (block.attacked_twice & enemy.attacked_once);
    block.restrained = block.stopped | (own & Backward(colour, enemy.pawn_attacks));
  }
}

void PrepareStoredSets(EvaluationState& evaluation, const Board& board) {
  const Bitboard all_pawns = board.white.pawns | board.black.pawns;
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    PawnBlock& block = evaluation.pawns[colour];
    const Bitboard own = board.Pieces(colour).pawns;
    const Bitboard enemy_controlled = evaluation.pawns[colour ^ 1].controlled;
    block.safe_advance = SafeAdvance(colour, own, all_pawns | enemy_controlled);
    block.potential_attacks = PawnAttacksOf(colour, own | block.safe_advance);
    block.isolated = own & ~NeighbourFilesOf(own);
    FindBackward(block, colour, own, all_pawns, enemy_controlled, board.occupied);
  }
  FindMajorities(evaluation);
  evaluation.openness = Openness(evaluation, board);
}

int Openness(const EvaluationState& evaluation, const Board& board) {
  const Bitboard all_pawns = board.white.pawns | board.black.pawns;
  const int white_free = 8 - PopCount(FilesOf(board.white.pawns) & RANK_1);
  const int black_free = 8 - PopCount(FilesOf(board.black.pawns) & RANK_1);
  int openness = 12 + std::min(white_free, 2);
  openness += std::min(black_free, 2);
  if ((FilesOf(all_pawns) & RANK_1) == RANK_1) openness -= 2;
  openness -= PopCount(all_pawns) >> 3;
  openness -= PopCount(all_pawns & CENTRE_FILES) >> 1;
  if (evaluation.blocked_pawns != 0) {
    openness += 2 - PopCount(evaluation.blocked_pawns) -
                2 * PopCount(evaluation.blocked_pawns & CENTRE_FILES);
  }
  return std::clamp(openness, 1, 15);
}

int Obstruction(const EvaluationState& evaluation, const Board& board, int colour, int square) {
  const Bitboard obstacles = board.Pieces(colour ^ 1).pawns |
                             (board.Pieces(colour).pawns & evaluation.pawns[colour].defended);
  const Bitboard ahead = obstacles & AheadOnFile(colour, square);
  if (ahead == 0) return 0;
  const int nearest = RearmostOf(colour, ahead);
  return colour == WHITE ? Rank(nearest) - Rank(square) : Rank(square) - Rank(nearest);
}

Bitboard UnreachableCentre(const EvaluationState& evaluation, const Board& board, int colour) {
  const Bitboard all_pawns = board.white.pawns | board.black.pawns;
  return CENTRE_SQUARES & ~all_pawns & ~evaluation.pawns[colour].potential_attacks;
}
