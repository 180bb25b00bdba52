#include "search/static_exchange.h"

#include "chess/board_tables.h"
#include "search/search_settings.h"

namespace {
Bitboard OfType(const PieceSet& side, int type) {
  switch (type) {
    case PAWN: return side.pawns;
    case KNIGHT: return side.knights;
    case BISHOP: return side.bishops;
    case ROOK: return side.rooks;
    default: return side.queens;
  }
}

// A king "captured" at the end of an exchange ends it for good: its value dwarfs every balance.
constexpr std::int32_t ExchangeValue[7] = {0, 100, 305, 315, 500, 1020, MATE};
constexpr int MAX_EXCHANGE = 34;  // 32 pieces and the first capture, with room to spare

// The cheapest piece of the side among the attackers; of several, the one on the highest square.
// Returns -1 when the side has none, and the piece's type through `type`.
int CheapestAttacker(const PieceSet& side, Bitboard attackers, int& type) {
  for (type = PAWN; type <= QUEEN; ++type) {
    const Bitboard candidates = OfType(side, type) & attackers;
    if (candidates) return FindHighestBit(candidates);
  }
  type = KING;
  const Bitboard king = SquareBit(int(side.king_square));
  return (attackers & king) ? int(side.king_square) : -1;
}

// A slider standing behind the square, on the line from the target through it, joins in once
// the square is vacated.
Bitboard XRayBehind(const Board& board, int target, int square) {
  const int direction = BoardTables.Direction[target][square];
  return direction != 0 ? board.SliderBehind(square, direction) : 0;
}
}  // namespace

std::int32_t StaticExchange(Move move, const Board& board) {
  const int target = To(move);
  const int from = From(move);
  Bitboard attackers = (board.AttackersTo(target) & ~SquareBit(from)) |
                       XRayBehind(board, target, from);

  std::int32_t balance[MAX_EXCHANGE];
  balance[0] = ExchangeValue[CapturedType(move)];
  if (!attackers) return balance[0];
  std::int32_t on_square = IsPromotion(move) ? ExchangeValue[QUEEN] : ExchangeValue[MovedType(move)];

  // balance[i] is the mover's gain after i replies; odd i are the opponent's captures.
  int n = 0;
  int side = int(board.side_on_move) ^ 1;
  while (n + 1 < MAX_EXCHANGE) {
    const PieceSet& pieces = board.Pieces(side);
    int type = 0;
    const int square = CheapestAttacker(pieces, attackers & pieces.all, type);
    if (square < 0) break;
    attackers ^= SquareBit(square);
    const bool opponent = side != int(board.side_on_move);
    balance[n + 1] = opponent ? balance[n] - on_square : balance[n] + on_square;
    ++n;
    on_square = ExchangeValue[type];
    attackers |= XRayBehind(board, target, square);
    side ^= 1;
  }

  // Minimax backwards: a capture that leaves its side worse than stopping is not made. The first
  // entry, the move itself, always stands.
  for (int i = n; i > 0; --i) {
    const bool opponent_captured = (i & 1) != 0;
    if (opponent_captured ? balance[i] < balance[i - 1] : balance[i] > balance[i - 1]) {
      balance[i - 1] = balance[i];
    }
  }
  return balance[0];
}

namespace {
// The line along which a slider travelled, through its target square; what lies on it was
// attacked before the move and is no new threat.
Bitboard TravelLine(int from, int to) {
  switch (BoardTables.Direction[from][to]) {
    case WEST:
    case EAST: return RankMask(Rank(to));
    case NORTH:
    case SOUTH: return FileMask(File(to));
    case NORTH_WEST:
    case SOUTH_EAST: return BoardTables.Ray[NORTH_WEST - 1][to] | BoardTables.Ray[SOUTH_EAST - 1][to];
    case NORTH_EAST:
    case SOUTH_WEST: return BoardTables.Ray[NORTH_EAST - 1][to] | BoardTables.Ray[SOUTH_WEST - 1][to];
    default: return 0;
  }
}

Bitboard AttacksFrom(const Board& board, int type, int square) {
  const auto& t = BoardTables;
  switch (type) {
    case PAWN: return t.PawnAttacks[board.side_on_move][square];
    case KNIGHT: return t.KnightAttacks[square];
    case BISHOP: return board.BishopAttacksFrom(square);
    case ROOK: return board.RookAttacksFrom(square);
    case QUEEN: return board.QueenAttacksFrom(square);
    default: return t.KingAttacks[square];
  }
}
}  // namespace

std::int32_t ThreatAfterMove(Move move, const Board& board) {
  const int to = To(move);
  const int type = MovedType(move);
  const PieceSet& enemy = board.Enemy();
  Bitboard targets = AttacksFrom(board, type, to) & enemy.all & ~SquareBit(int(enemy.king_square));
  const bool slider = type == BISHOP || type == ROOK || type == QUEEN;
  if (slider && !IsCapture(move)) targets &= ~TravelLine(From(move), to);

  std::int32_t best = 0;
  while (targets) {
    const int square = FindHighestBit(targets);
    targets ^= SquareBit(square);
    const int captured = board.squares[square] < 0 ? -board.squares[square] : board.squares[square];
    const std::int32_t gain = StaticExchange(MakeMoveWord(to, square, type, captured), board);
    if (gain > best) best = gain;
  }
  // A knight for a bishop is an even trade, not a threat.
  if (score_checking_move_should_neglect_trade_knight_vs_bishop && best < 11) best = 0;
  return best;
}
