#include "chess/board.h"
