#include "shell/commands_time.h"

#include "shell/time_and_otim.h"
#include "shell/game_state.h"
#include "shell/tee_stream.h"
#include "shell/time_control_parsing.h"

namespace BraskInterfaces {

void Command_SetTimeControl::Execute(GameState& game) {
  TimeControlSetting setting;
  try {
    setting = Setting();
  } catch (const TimeControlArgumentError& error) {
    Fail(error.what());
  }
  game.time_control.Set(setting.white, setting.black, game.SideOnMove());
  finished = true;
}

TimeControlSetting Command_Level::Setting() const { return ParseLevel(moves, time, increment); }

TimeControlSetting Command_Tc::Setting() const { return ParseTc(text); }

void Command_st::Execute(GameState& game) {
  game.st_limit_ms = 1000 * seconds;
  finished = true;
}

void Command_sd::Execute(GameState& game) {
  if (depth < 0) Fail("argument out of bounds");
  game.sd_limit = depth;
  finished = true;
}

void Command_Time::Execute(GameState& game) {
  const int engine = EngineClockSide(game.white.is_computer, game.black.is_computer,
                                     game.SideOnMove());
  const int side = OpponentsClock() ? engine ^ 1 : engine;
  game.time_control.clocks[side].ms_left = 10 * std::int64_t(centiseconds);
  Output.ReportLogOnly(
      ClockReport(game.time_control, game.white.is_computer, game.black.is_computer));
  finished = true;
}

}  // namespace BraskInterfaces
