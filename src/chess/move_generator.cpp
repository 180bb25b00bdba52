#include "chess/move_generator.h"
