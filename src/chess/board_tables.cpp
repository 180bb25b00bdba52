#include "chess/board_tables.h"

#include <algorithm>
#include <cstdlib>

#include "chess/random_numbers.h"

const BoardTablesType BoardTables;

namespace {

bool OnBoard(int file, int rank) { return file >= 0 && file < 8 && rank >= 0 && rank < 8; }

// File and rank steps of each direction code.
constexpr int DirectionFileStep[9] = {0, -1, 1, 0, 0, -1, 1, -1, 1};
constexpr int DirectionRankStep[9] = {0, 0, 0, 1, -1, 1, 1, -1, -1};

// A line of squares in the order its bits stand in a rotated (or plain) occupancy pattern.
struct Line {
  int squares[8];
  int length;
};

Line RankLine(int square) {
  Line line{{}, 8};
  for (int k = 0; k < 8; ++k) line.squares[k] = MakeSquare(k, Rank(square));
  return line;
}

Line FileLine(int square) {
  Line line{{}, 8};
  for (int k = 0; k < 8; ++k) line.squares[k] = MakeSquare(File(square), k);
  return line;
}

// The a1-h8 diagonal through a square, from its lower end upward.
Line A1H8Line(int square) {
  int low = std::min(File(square), Rank(square));
  int file = File(square) - low, rank = Rank(square) - low;
  Line line{{}, 0};
  for (; OnBoard(file, rank); ++file, ++rank) line.squares[line.length++] = MakeSquare(file, rank);
  return line;
}

// The h1-a8 diagonal through a square, from its upper end downward.
Line H1A8Line(int square) {
  int up = std::min(File(square), 7 - Rank(square));
  int file = File(square) - up, rank = Rank(square) + up;
  Line line{{}, 0};
  for (; OnBoard(file, rank); ++file, --rank) line.squares[line.length++] = MakeSquare(file, rank);
  return line;
}

int PositionOnLine(const Line& line, int square) {
  for (int k = 0; k < line.length; ++k)
    if (line.squares[k] == square) return k;
  return -1;
}

// Attacks along a line from position p for one occupancy pattern: each walk includes the first
// blocker it meets. The piece's own bit in the pattern plays no part.
Bitboard LineAttacks(const Line& line, int p, unsigned pattern) {
  Bitboard attacks = 0;
  for (int k = p - 1; k >= 0; --k) {
    attacks |= SquareBit(line.squares[k]);
    if (pattern & (1u << k)) break;
  }
  for (int k = p + 1; k < line.length; ++k) {
    attacks |= SquareBit(line.squares[k]);
    if (pattern & (1u << k)) break;
  }
  return attacks;
}

void FillLineAttacks(Bitboard (&table)[256], const Line& line, int square) {
  int p = PositionOnLine(line, square);
  for (unsigned pattern = 0; pattern < (1u << line.length); ++pattern)
    table[pattern] = LineAttacks(line, p, pattern);
}

Bitboard StepAttacks(int square, const int (&steps)[8][2]) {
  Bitboard attacks = 0;
  for (const auto& step : steps) {
    int file = File(square) + step[0], rank = Rank(square) + step[1];
    if (OnBoard(file, rank)) attacks |= SquareBit(MakeSquare(file, rank));
  }
  return attacks;
}

constexpr int KnightSteps[8][2] = {{1, 2}, {2, 1}, {2, -1}, {1, -2},
                                   {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};
constexpr int KingSteps[8][2] = {{1, 0}, {1, 1}, {0, 1}, {-1, 1},
                                 {-1, 0}, {-1, -1}, {0, -1}, {1, -1}};

int DirectionBetween(int from, int to) {
  int df = File(to) - File(from), dr = Rank(to) - Rank(from);
  if (from == to) return 0;
  if (dr == 0) return df < 0 ? WEST : EAST;
  if (df == 0) return dr > 0 ? NORTH : SOUTH;
  if (df == dr) return dr > 0 ? NORTH_EAST : SOUTH_WEST;
  if (df == -dr) return dr > 0 ? NORTH_WEST : SOUTH_EAST;
  return 0;
}

Bitboard RectangleOf(int rank_low, int rank_high, int file_low, int file_high) {
  Bitboard rectangle = 0;
  for (int rank = std::max(rank_low, 0); rank <= std::min(rank_high, 7); ++rank)
    for (int file = std::max(file_low, 0); file <= std::min(file_high, 7); ++file)
      rectangle |= SquareBit(MakeSquare(file, rank));
  return rectangle;
}

std::uint64_t DrawKey() {
  std::uint64_t key = 0;
  for (int part = 0; part < 4; ++part)
    key |= std::uint64_t(RandomNumber() & 0xFFFF) << (16 * part);
  return key;
}

}  // namespace

BoardTablesType::BoardTablesType() {
  BuildHashKeys();
  BuildBitTable();
  BuildRotationMasks();
  BuildAttacks();
  BuildGeometry();
  BuildPawnMasks();
  BuildPawnSquares();
}

// The keys must be the same in every run, so they come from the fixed stream; each piece key is
// drawn again until it differs from all drawn before it.
void BoardTablesType::BuildHashKeys() {
  int drawn = 0;
  for (int square = 0; square < 64; ++square) {
    for (int slot = 0; slot < 13; ++slot) {
      std::uint64_t key;
      bool duplicate;
      do {
        key = DrawKey();
        duplicate = false;
        for (int i = 0; i < drawn && !duplicate; ++i)
          duplicate = ZobristPiece[i / 13][i % 13] == key;
      } while (duplicate);
      ZobristPiece[square][slot] = key;
      ++drawn;
    }
  }
  for (int file = 0; file < 8; ++file) {
    ZobristEnPassant[0][file] = DrawKey();
    ZobristEnPassant[1][file] = DrawKey();
  }
}

void BoardTablesType::BuildBitTable() {
  BitTable[0] = 0;
  for (unsigned index = 1; index < 65536; ++index) {
    int highest = 0, count = 0;
    for (int bit = 0; bit < 16; ++bit) {
      if (index & (1u << bit)) {
        highest = bit;
        ++count;
      }
    }
    // The count of 0xFFFF (16) does not fit in the nibble and wraps to 0.
    BitTable[index] = std::uint8_t(((count & 15) << 4) | highest);
  }
}

void BoardTablesType::BuildRotationMasks() {
  for (int square = 0; square < 64; ++square) {
    Line a1h8 = A1H8Line(square), h1a8 = H1A8Line(square);
    ShiftA1H8[square] = std::int8_t(Rotation::A1H8Index(square) - PositionOnLine(a1h8, square));
    ShiftH1A8[square] = std::int8_t(Rotation::H1A8Index(square) - PositionOnLine(h1a8, square));
    MaskA1H8[square] = std::uint16_t((1u << a1h8.length) - 1);
    MaskH1A8[square] = std::uint16_t((1u << h1a8.length) - 1);
  }
}

void BoardTablesType::BuildAttacks() {
  for (int square = 0; square < 64; ++square) {
    FillLineAttacks(AttacksRank[square], RankLine(square), square);
    FillLineAttacks(AttacksFile[square], FileLine(square), square);
    FillLineAttacks(AttacksA1H8[square], A1H8Line(square), square);
    FillLineAttacks(AttacksH1A8[square], H1A8Line(square), square);
    KnightAttacks[square] = StepAttacks(square, KnightSteps);
    KingAttacks[square] = StepAttacks(square, KingSteps);
  }
}

void BoardTablesType::BuildGeometry() {
  for (int from = 0; from < 64; ++from)
    for (int to = 0; to < 64; ++to) Direction[from][to] = std::int8_t(DirectionBetween(from, to));

  for (int square = 0; square < 64; ++square) {
    Bitboard self = SquareBit(square);
    BishopRays[square] = AttacksA1H8[square][0] | AttacksH1A8[square][0] | self;
    RookRays[square] = AttacksRank[square][0] | AttacksFile[square][0] | self;
    QueenRays[square] = BishopRays[square] | RookRays[square];
  }

  for (int from = 0; from < 64; ++from) {
    for (int to = 0; to < 64; ++to) {
      Bitboard between = 0;
      int direction = Direction[from][to];
      if (direction != 0) {
        int low = std::min(from, to), high = std::max(from, to);
        for (int s = low + DirectionStep[direction]; s < high; s += DirectionStep[direction])
          between |= SquareBit(s);
      }
      Between[from][to] = between;
      int df = std::abs(File(from) - File(to)), dr = std::abs(Rank(from) - Rank(to));
      Distance[from][to] = std::int8_t(std::max(df, dr));
      ManhattanDistance[from][to] = std::int8_t(df + dr);
    }
  }

  for (int direction = 1; direction <= 8; ++direction) {
    for (int square = 0; square < 64; ++square) {
      Bitboard ray = 0;
      int file = File(square) + DirectionFileStep[direction];
      int rank = Rank(square) + DirectionRankStep[direction];
      for (; OnBoard(file, rank);
           file += DirectionFileStep[direction], rank += DirectionRankStep[direction])
        ray |= SquareBit(MakeSquare(file, rank));
      Ray[direction - 1][square] = ray;
    }
  }
}

void BoardTablesType::BuildPawnMasks() {
  for (int square = 0; square < 64; ++square) {
    int file = File(square), rank = Rank(square);
    Bitboard white = 0, black = 0;
    if (rank < 7) {
      if (file > 0) white |= SquareBit(square + 7);
      if (file < 7) white |= SquareBit(square + 9);
    }
    if (rank > 0) {
      if (file > 0) black |= SquareBit(square - 9);
      if (file < 7) black |= SquareBit(square - 7);
    }
    PawnAttacks[WHITE][square] = white;
    PawnAttacks[BLACK][square] = black;
    PassedPawnMask[WHITE][square] = RectangleOf(rank + 1, 7, file - 1, file + 1);
    PassedPawnMask[BLACK][square] = RectangleOf(0, rank - 1, file - 1, file + 1);
  }
  for (int square = 0; square < 64; ++square) {
    Bitboard white = 0, black = 0;
    for (int s = square; s < 48; s += 8) white |= PawnAttacks[WHITE][s];
    for (int s = square; s > 15; s -= 8) black |= PawnAttacks[BLACK][s];
    PawnAttackSpan[WHITE][square] = white;
    PawnAttackSpan[BLACK][square] = black;
  }
}

// The square of a pawn: the king that stands inside it catches the pawn. A pawn on its start rank
// counts as standing one rank further, because of its double step.
void BoardTablesType::BuildPawnSquares() {
  for (int square = 0; square < 64; ++square) {
    int file = File(square), rank = Rank(square);
    if (rank == 0 || rank == 7) {
      PawnSquare[WHITE][square] = PawnSquare[BLACK][square] = 0;
      PawnSquareExtended[WHITE][square] = PawnSquareExtended[BLACK][square] = 0;
      continue;
    }
    int white_rank = std::max(rank, 2), white_n = 7 - white_rank;
    int black_rank = std::min(rank, 5), black_n = black_rank;
    int white_low = file - std::min(file, white_n), white_high = file + std::min(7 - file, white_n);
    int black_low = file - std::min(file, black_n), black_high = file + std::min(7 - file, black_n);
    PawnSquare[WHITE][square] = RectangleOf(white_rank, 7, white_low, white_high);
    PawnSquare[BLACK][square] = RectangleOf(0, black_rank, black_low, black_high);
    PawnSquareExtended[WHITE][square] =
        RectangleOf(white_rank - 1, 7, white_low - 1, white_high + 1) | KingAttacks[square];
    PawnSquareExtended[BLACK][square] =
        RectangleOf(0, black_rank + 1, black_low - 1, black_high + 1) | KingAttacks[square];
  }
  for (int king = 0; king < 64; ++king) {
    Bitboard king_bit = SquareBit(king);
    Bitboard white_plain = 0, white_extended = 0, black_plain = 0, black_extended = 0;
    for (int pawn = 8; pawn < 56; ++pawn) {
      Bitboard pawn_bit = SquareBit(pawn);
      if (!(PawnSquare[WHITE][pawn] & king_bit)) white_plain |= pawn_bit;
      if (!(PawnSquareExtended[WHITE][pawn] & king_bit)) white_extended |= pawn_bit;
      if (!(PawnSquare[BLACK][pawn] & king_bit)) black_plain |= pawn_bit;
      if (!(PawnSquareExtended[BLACK][pawn] & king_bit)) black_extended |= pawn_bit;
    }
    KingOutsidePawnSquare[WHITE][king][0] = white_plain;
    KingOutsidePawnSquare[WHITE][king][1] = white_extended;
    KingOutsidePawnSquare[BLACK][king][0] = black_extended;
    KingOutsidePawnSquare[BLACK][king][1] = black_plain;
  }
}
