#include "chess/board_tables.h"

const BoardTablesType BoardTables;

BoardTablesType::BoardTablesType() {}
