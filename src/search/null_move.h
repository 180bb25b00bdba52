// The null move: let the opponent move twice, at a reduced distance. If the side on move still
// reaches beta, the node cuts off; if not, a short search in the same position asks whether the
// opponent, left alone, mates.
#pragma once

struct NodeState;

// True when the null move proved the node's beta; may set MATE_THREAT in the node flags.
bool NullMoveCutsOff(NodeState& node);
