#include "bitbases/verify_bitbases.h"

#include <cstdlib>

#include "bitbases/bit_array.h"
#include "bitbases/generic_bitbase_index.h"
#include "bitbases/generate_generic_bitbases.h"
#include "bitbases/log_only_scope.h"
#include "bitbases/placement_walk.h"
#include "bitbases/probe_generic_bitbases.h"
#include "bitbases/special_bitbases.h"
#include "bitbases/tablebases.h"
#include "chess/edit_board.h"
#include "shell/checked_assert.h"
#include "shell/os_dependent.h"

namespace BraskGenerator {

using namespace BraskBitbases;

namespace {

// Unwinds the placement walk with the verification's status.
struct early_exit_exception {
  int status;
};

// What a verification says when the sources cannot answer.
struct Texts {
  std::string not_available;
  std::string queued;
  std::string disabled;
};

int Sign(int value) { return (value > 0) - (value < 0); }

// The tablebase's score of a legal position.
int ProbeTablebaseOrFail(const Board& board, const Texts& texts) {
  int score = 0;
  switch (BraskTablebases::ProbeTablebase(board, &score)) {
    case BraskTablebases::TB_FOUND: return score;
    case BraskTablebases::TB_NOT_LOADED: throw VerificationFailed("tablebases not loaded");
    case BraskTablebases::TB_NOT_AVAILABLE: throw VerificationFailed(texts.not_available);
    default: throw VerificationFailed(texts.queued);
  }
}

// Compares one legal position; extra(board, tablebase_sign) adds a check of another source.
// Throws early_exit_exception when the handler stops the walk.
template <typename Extra>
void VerifyPosition(const Board& board, const Texts& texts, VerificationHandler& handler,
                    int& status, Extra&& extra) {
  const int expected = Sign(ProbeTablebaseOrFail(board, texts));
  int score = 0;
  const int found = ProbeBitbases(board, &score);
  if (found == BITBASE_DISABLED) throw VerificationFailed(texts.disabled);
  if (found == BITBASE_NOT_FOUND) {
    if (!handler.PositionNotFound(board)) throw early_exit_exception{VERIFICATION_STOPPED};
    status = VERIFICATION_FAILED;
    return;
  }
  if (Sign(score) == expected && extra(board, expected)) {
    handler.PositionVerified(board);
    return;
  }
  if (!handler.InvalidResult(board)) throw early_exit_exception{VERIFICATION_FAILED};
  status = VERIFICATION_FAILED;
}

bool NoExtraCheck(const Board&, int) { return true; }

// Runs walk(leaf) where leaf(side, pieces) gets the pieces of a placement, and compares every
// legal one with `count` pieces.
template <typename Walk, typename Extra>
int VerifySpecial(const std::string& name, const Texts& texts, int count,
                  VerificationHandler& handler, Walk&& walk, Extra&& extra) {
  handler.StartVerification(name);
  int status = VERIFICATION_PASSED;
  EditBoard edit;
  try {
    walk([&](int side, std::initializer_list<std::pair<int, int>> pieces) {
      edit.Reset(side);
      for (const auto& [square, piece] : pieces) {
        if (edit.pieces[square] != NO_PIECE) return;  // fewer pieces than the table has
        edit.color_is_black = piece < 0;
        edit.SetPiece(square, std::abs(piece));
      }
      edit.color_is_black = 0;
      edit.castling = 0;
      if (int(pieces.size()) != count || !edit.IsValid()) return;
      VerifyPosition(edit.board, texts, handler, status, extra);
    });
  } catch (const early_exit_exception& exit) {
    return exit.status;
  }
  handler.FinishVerification(name, status);
  return status;
}

constexpr int FIRST_PAWN_SQUARE = 8;
constexpr int LAST_PAWN_SQUARE = 55;
constexpr int RANK = 8;

template <typename Leaf>
void ForKings(Leaf&& leaf) {
  for (int side : {WHITE, BLACK})
    for (int white_king = 0; white_king < 64; ++white_king)
      for (int black_king = 0; black_king < 64; ++black_king) leaf(side, white_king, black_king);
}

const char* const INTERNAL_ERROR = "Internal error";

// The raw entry of kp_kp.bbb for a position of that material.
bool TwoPawnsFileAgrees(const Board& board, int expected) {
  if (two_pawns_data == nullptr) return true;
  const int entry = ProbeTwoPawns(int(board.side_on_move), int(board.white.king_square),
                                  int(board.black.king_square), FindLowestBit(board.white.pawns),
                                  FindLowestBit(board.black.pawns));
  // Both the entry and the tablebase's score are relative to the side on move.
  return entry == (expected > 0 ? SPECIAL_WIN : expected < 0 ? SPECIAL_LOSS : SPECIAL_DRAW);
}

}  // namespace

int VerifySinglePawnBitbases(VerificationHandler& handler) {
  const Texts texts{"endgame king+pawn vs king not available", "Internal error: lookup queued",
                    "single pawn bitbases disabled"};
  return VerifySpecial("single_pawn", texts, 3, handler, [](auto&& leaf) {
    ForKings([&](int side, int white_king, int black_king) {
      for (int pawn = FIRST_PAWN_SQUARE; pawn <= LAST_PAWN_SQUARE; ++pawn)
        leaf(side, {{white_king, KING}, {black_king, -KING}, {pawn, PAWN}});
    });
  }, NoExtraCheck);
}

int VerifyTwoPawnsBitbases(VerificationHandler& handler) {
  const Texts texts{"endgame king+pawn vs king+pawn not available", INTERNAL_ERROR,
                    "two pawns bitbases disabled"};
  return VerifySpecial("two_pawns", texts, 4, handler, [](auto&& leaf) {
    ForKings([&](int side, int white_king, int black_king) {
      for (int white_pawn = FIRST_PAWN_SQUARE; white_pawn <= LAST_PAWN_SQUARE; ++white_pawn)
        for (int black_pawn = FIRST_PAWN_SQUARE; black_pawn <= LAST_PAWN_SQUARE; ++black_pawn)
          leaf(side, {{white_king, KING}, {black_king, -KING}, {white_pawn, PAWN},
                      {black_pawn, -PAWN}});
    });
  }, TwoPawnsFileAgrees);
}

int VerifyRammedPawnBitbases(VerificationHandler& handler) {
  const Texts texts{"endgame king+pawn+pawn vs king+pawn not available", INTERNAL_ERROR,
                    "rammed pawn bitbases disabled"};
  return VerifySpecial("rammed_pawn", texts, 5, handler, [](auto&& leaf) {
    ForKings([&](int side, int white_king, int black_king) {
      for (int other = FIRST_PAWN_SQUARE; other <= LAST_PAWN_SQUARE; ++other)
        for (int ram = FIRST_PAWN_SQUARE; ram <= LAST_PAWN_SQUARE - RANK; ++ram)
          leaf(side, {{white_king, KING}, {black_king, -KING}, {other, PAWN}, {ram, PAWN},
                      {ram + RANK, -PAWN}});
    });
  }, NoExtraCheck);
}

namespace {

// Throws early_exit_exception when the handler stops the walk.
int VerifyPlacements(const PieceCounters& counters, const std::string& name,
                     VerificationHandler& handler) {
  const Texts texts{"Tablebases for endgame '" + name + "' not available",
                    "Internal error: lookup queued", "Bitbases for endgame '" + name + "' disabled"};
  const PlacementList list = BuildPlacementList(counters);
  int status = VERIFICATION_PASSED;
  EditBoard edit;
  WalkPlacements(list, [&](const int* squares) {
    for (int side : {WHITE, BLACK}) {
      if (!SetUpPlacement(edit, list, squares, side)) return;
      if (!edit.IsValid()) continue;
      VerifyPosition(edit.board, texts, handler, status, NoExtraCheck);
    }
  });
  return status;
}

}  // namespace

int VerifyGenericBitbaseHelper(const PieceCounters& counters, VerificationHandler& handler,
                               const std::string& directory) {
  int num_pieces = 2;
  for (int piece_counter : counters) {
    CHECKED_ASSERT(piece_counter >= 0, "a negative piece counter");
    num_pieces += piece_counter;
  }
  CHECKED_ASSERT(num_pieces <= 64, "more pieces than squares");
  if (num_pieces > GENERIC_BITBASES_MAX_SUPPORTED_PIECES)
    throw VerificationFailed(
        "Number of pieces exceeds the fixed limit (increasing the number requires a rebuild)");
  std::string name, path;
  const bool exists = GenericBitbaseExists(counters, name, path, directory);
  handler.StartVerification(name);
  std::string swapped_name, swapped_path;
  if (!exists && !(IsMirrored(counters) &&
                   GenericBitbaseExists(SwapColours(counters), swapped_name, swapped_path,
                                        directory))) {
    handler.FinishVerification(name, VERIFICATION_STOPPED);
    return VERIFICATION_STOPPED;
  }
  if (!IsSizeClass(num_pieces, PawnCount(counters))) {
    CHECKED_ASSERT(false, "Internal error in VerifyGenericBitbaseHelper");
    throw GenerationFailed("Internal error in VerifyGenericBitbaseHelper");
  }
  int status;
  try {
    status = VerifyPlacements(counters, name, handler);
  } catch (const early_exit_exception& exit) {
    return exit.status;  // the handler has told it
  } catch (const BitArray_IOException& error) {
    Output << "\nError: Could not load generic bitbase file '" << path << "'\n(Reason: "
           << error.Text() << "\n";
    handler.FinishVerification(name, VERIFICATION_STOPPED);
    return VERIFICATION_STOPPED;
  }
  handler.FinishVerification(name, status);
  return status;
}

int VerifyGenericBitbaseHelper(const PieceCounters& counters, VerificationHandler& handler) {
  return VerifyGenericBitbaseHelper(counters, handler, ExecutableDirectory());
}

bool SilentVerificationHandler::InvalidResult(const Board& board) {
  LogOnlyScope log_only;
  Output << "Verification failed (reason: invalid result):\n";
  board.Display(true);
  return false;
}

bool SilentVerificationHandler::PositionNotFound(const Board& board) {
  LogOnlyScope log_only;
  Output << "Verification failed (reason: position not found):\n";
  board.Display(true);
  return false;
}

}  // namespace BraskGenerator
