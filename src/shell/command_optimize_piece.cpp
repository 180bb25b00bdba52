#include <algorithm>
#include <cstdint>
#include <string>

#include "chess/board.h"
#include "chess/square_colours.h"
#include "evaluation/evaluate.h"
#include "search/position_type.h"
#include "search/static_exchange.h"
#include "shell/basic_protocol.h"
#include "shell/commands_engine.h"
#include "shell/game_state.h"
#include "shell/os_dependent.h"
#include "shell/tee_stream.h"

namespace BraskInterfaces {

namespace {

// The first word of a line as a square, or -1.
int SquareOfWord(const std::string& line) {
  const auto begin = line.find_first_not_of(" \t\r\n");
  if (begin == std::string::npos) return -1;
  const auto end = line.find_first_of(" \t\r\n", begin);
  const std::string word = line.substr(begin, end == std::string::npos ? end : end - begin);
  if (word.size() != 2 || !IsFileLetter(word[0]) || !IsRankDigit(word[1])) return -1;
  return SquareFromLetters(word[0], word[1]);
}

std::string SquareText(int square) { return {FileLetter(File(square)), RankDigit(Rank(square))}; }

// Where a piece of the type and colour may be tried: a pawn anywhere it could walk to without
// promoting, a bishop on its own square colour, the others everywhere.
Bitboard Candidates(int type, int colour, int square) {
  if (type == PAWN) {
    const Bitboard walk = colour == WHITE ? RankMask(2) | RankMask(3) | RankMask(4) |
                                                RankMask(5) | RankMask(6)
                                          : RankMask(5) | RankMask(4) | RankMask(3) |
                                                RankMask(2) | RankMask(1);
    return walk | SquareBit(square);
  }
  if (type == BISHOP) return (SquareBit(square) & LIGHT_SQUARES) ? LIGHT_SQUARES : DARK_SQUARES;
  return ~Bitboard{0};
}

// Castling rights survive only while the king and the rook stand at home.
int CastlingStillPossible(const std::int8_t squares[64], int rights) {
  struct Home {
    int right, king_square, rook_square, king;
  };
  constexpr Home homes[] = {{WHITE_SHORT, E1, H1, KING}, {WHITE_LONG, E1, A1, KING},
                            {BLACK_SHORT, E8, H8, -KING}, {BLACK_LONG, E8, A8, -KING}};
  for (const Home& home : homes) {
    const int rook = home.king > 0 ? ROOK : -ROOK;
    if (squares[home.king_square] != home.king || squares[home.rook_square] != rook)
      rights &= ~home.right;
  }
  return rights;
}

// The position with the piece moved from `from` to `to`, the owner on move.
void MovePiece(const Board& original, int from, int to, int owner, Board& board) {
  std::int8_t squares[64];
  std::copy(std::begin(original.squares), std::end(original.squares), squares);
  squares[to] = squares[from];
  if (to != from) squares[from] = NO_PIECE;
  board.Setup(squares, owner, 0, CastlingStillPossible(squares, original.Castling()));
}

}  // namespace

void Command_OptimizePiece::Execute(GameState& game) {
  const bool log_was = Output.SetLog(false);
  Output << "Piece:\n";
  Output.Flush();
  Output.SetLog(log_was);
  const int from = SquareOfWord(ReadLine());
  const Board& original = game.user_board.current;
  if (from < 0 || original.squares[from] == NO_PIECE) {
    Output << "Error: Invalid square\n";
    Output.Flush();
    finished = true;
    return;
  }
  const int piece = original.squares[from];
  const int owner = piece > 0 ? WHITE : BLACK;
  const int type = piece > 0 ? piece : -piece;
  Board at_home;
  MovePiece(original, from, from, owner, at_home);

  int best_square = -1, best_value = 0;
  for (Bitboard rest = Candidates(type, owner, from); rest != 0;) {
    const int to = FindHighestBit(rest);
    rest ^= SquareBit(to);
    if (to != from && original.squares[to] != NO_PIECE) continue;
    // A square where the piece would simply be lost tells nothing about its placement.
    if (to != from && StaticExchange(MakeMoveWord(from, to, type), at_home) < -10) continue;
    Board board;
    MovePiece(original, from, to, owner, board);
    EvaluationState evaluation;
    evaluation.settings->personality = game.Protocol().personality;
    const int value = EvaluateExact(evaluation, board, ClassifyPosition(board, UNCLASSIFIED));
    if (best_square >= 0 && value <= best_value) continue;
    best_square = to;
    best_value = value;
    board.Display(false);
    Output << "New best square: " << SquareText(to) << " (val=" << std::int32_t(value) << ")\n";
    Output.Flush();
  }
  Output << "Best square: " << SquareText(best_square) << " (val=" << std::int32_t(best_value)
         << ")\n";
  Output.Flush();
  finished = true;
}

}  // namespace BraskInterfaces
