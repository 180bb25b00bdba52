// Two detectors that follow the current line ply by ply: a run of queen checks that may end in a
// perpetual, and a pin that has just arisen or tightened. They only mark the node (node flags);
// the node then gets an extension and takes no selective short cut.
#pragma once

#include <cstdint>

#include "search/threat_records.h"

class Board;
class SearchBoard;
struct NodeState;

// Answers of UpdatePin.
constexpr int PIN_NEW = 1;
constexpr int PIN_TIGHTENED = 2;
constexpr int PIN_STANDS = 0;
constexpr int PIN_PIECE_CAPTURED = -1;
constexpr int PIN_ENDED = -2;
constexpr int PIN_NONE = -3;

// Fills the record of the board's ply from the one before it; true when the checking side has
// given enough queen checks in a row, for what the checked side has won meanwhile, to believe in
// a perpetual.
bool TestPerpetualCheck(PerpetualRecord* records, const Board& board);

// Follows the pin of the line over the last two moves into the record of the board's ply.
int UpdatePin(PinRecord* records, Move last_move, Move previous_move, const Board& board);

// Whether the pinned piece is really held: a pin counts only when the pinned piece cannot simply
// take the pinner along the line.
bool IsEffectivePin(int pinner, int pinned, const Board& board, int pinning_side);

// Whether the pin of the record of the board's ply threatens material.
bool IsPinThreat(const PinRecord* records, const Board& board, int pin_state);

// The node's pin test: may set PIN_THREAT and switch pruning off around the node.
void DetectPinThreat(NodeState& node);
// The node's perpetual check test, for a node in check.
void DetectPerpetualCheck(NodeState& node);
