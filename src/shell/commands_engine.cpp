#include "shell/commands_engine.h"

#include <algorithm>
#include <climits>

#include "bitbases/probe_generic_bitbases.h"
#include "bitbases/special_bitbases.h"
#include "bitbases/tablebases.h"
#include "chess/basic.h"
#include "chess/memory_size.h"
#include "evaluation/evaluate.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "shell/basic_protocol.h"
#include "shell/error_command.h"
#include "shell/os_dependent.h"
#include "shell/tee_stream.h"
#include "shell/game_state.h"

namespace BraskInterfaces {

void Command_Contempt::Execute(GameState& game) {
  RequireForceMode(game);
  const int clamped = std::clamp(value, -MATE, MATE);
  if (clamped != game.search.contempt) {
    game.search.SetContempt(clamped);
    game.draw_handler.contempt = clamped;
    game.draw_handler.Reset();
  }
  finished = true;
}

void Command_SetPersonality::Execute(GameState& game) {
  RequireForceMode(game);
  const std::int16_t clamped = std::int16_t(std::clamp(value, -1000, 1000));
  if (clamped != game.Protocol().personality) {
    game.search.SetPersonality(clamped);
    game.Protocol().personality = clamped;
  }
  finished = true;
}

void Command_DisplayPersonality::Execute(GameState& game) {
  game.Protocol().DisplayPersonality();
  finished = true;
}

void Command_Eval::Execute(GameState& game) {
  EvaluationState evaluation;
  evaluation.settings->personality = game.Protocol().personality;
  const Board& board = game.user_board.current;
  const int score = EvaluateExact(evaluation, board, ClassifyPosition(board, UNCLASSIFIED));
  Output << "eval: " << std::int32_t(score) << "\n";
  Output.Flush();
  finished = true;
}

void Command_DisplayHashtableStatus::Execute(GameState& game) {
  game.Protocol().DisplayHashtableStatus(true);
  finished = true;
}

void Command_ResizeHashtable::Execute(GameState& game) {
  AbstractHashTable* table = type == "trans"  ? static_cast<AbstractHashTable*>(&TRANSPOSITION_TABLE)
                             : type == "pawn" ? static_cast<AbstractHashTable*>(&PAWN_HASH_TABLE)
                             : type == "eval" ? static_cast<AbstractHashTable*>(&EVALUATION_HASH_TABLE)
                                              : nullptr;
  if (!table) Fail("unknown hashtable type");
  const std::uint64_t bytes = SizeArgument(size);
  RequireForceMode(game);
  // A size the machine cannot give leaves the table as it was.
  if (!table->Resize(bytes)) Fail("not enough memory for this size");
  finished = true;
}

}  // namespace BraskInterfaces

namespace BraskInterfaces {

void Command_DisplayTablebasesStatus::Execute(GameState&) {
  const auto not_loaded = [](bool loaded) { return loaded ? "" : "not "; };
  Output << "Supported bitbases/tablebases:\n"
         << "Nalimov tablebases (type=nalimov)\n"
         << "King+pawn vs king bitbases (built-in)\n"
         << "King+pawn vs king+pawn bitbases ("
         << not_loaded(BraskBitbases::two_pawns_data != nullptr) << "loaded)\n"
         << "King+pawn+pawn vs king+pawn with pawn ram bitbases ("
         << not_loaded(BraskBitbases::rammed_pawn_data != nullptr)
         << "loaded)\n"
         << "Generic bitbases supporting up to " << std::int32_t(BraskBitbases::GENERIC_BITBASES_MAX_SUPPORTED_PIECES)
         << " pieces\n";
  Output.Flush();
  finished = true;
}

void Command_InitTablebases::Execute(GameState& game) {
  if (type != "nalimov") Fail("could not parse type");
  const std::uint64_t bytes = SizeArgument(size);
  RequireForceMode(game);
  NalimovInitializer initializer;
  try {
    initializer.Initialize(paths, bytes > std::uint64_t(INT64_MAX) ? -1 : std::int64_t(bytes));
  } catch (const BraskTablebases::TB_Exception& error) {
    throw IgnorableErrorCommand(ErrorCommand::error, error.what(), line);
  }
  finished = true;
}

void NalimovInitializer::Initialize(const std::string& path, std::int64_t size) {
  BraskTablebases::InitTablebases(path, BraskTablebases::CheckedCacheSize(size));
}

void Command_Probe::Execute(GameState&) {
  if (!checked) {
    try {
      board.SetFEN(fen);
    } catch (const UserBoard::io_error&) {
      Fail("input inconsistent with FEN standard");
    } catch (const UserBoard::invalid_position&) {
      Fail("Illegal position");
    }
    checked = true;
  }
  board.Display(true);
  int score = 0;
  const int bitbase_result = BraskBitbases::ProbeBitbases(board.current, &score);
  Output << "\nProbing bitbases: " << BraskBitbases::DescribeProbe(bitbase_result, score);
  score = 0;
  const int result = BraskTablebases::ProbeTablebase(board.current, &score);
  Output << "\nProbing tablebases: " << BraskTablebases::DescribeProbe(result, score) << "\n";
  Output.Flush();
  finished = true;
}

}  // namespace BraskInterfaces
