// The command objects of the command language, all families.
#pragma once

#include "shell/command.h"
#include "shell/commands_engine.h"
#include "shell/commands_game.h"
#include "shell/commands_position.h"
#include "shell/commands_protocol.h"
#include "shell/commands_settings.h"
#include "shell/commands_time.h"
#include "shell/uci_commands.h"
