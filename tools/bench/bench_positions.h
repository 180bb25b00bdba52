// The positions of the benchmark: openings, middle games and endings of many kinds, so that every
// part of the search and the evaluation gets its share.
#pragma once

#include <array>

namespace BenchPositions {
inline constexpr std::array<const char*, 36> FENS = {
    // Openings.
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2",
    "r1bqkbnr/pppp1ppp/2n5/1B2p3/4P3/5N2/PPPP1PPP/RNBQK2R b KQkq - 3 3",
    "rnbqkb1r/pp2pppp/3p1n2/8/3NP3/8/PPP2PPP/RNBQKB1R w KQkq - 1 5",
    "rnbqkb1r/ppp1pppp/5n2/3p4/2PP4/8/PP2PPPP/RNBQKBNR w KQkq - 1 3",
    "r1bqk2r/pppp1ppp/2n2n2/2b1p3/2B1P3/3P1N2/PPP2PPP/RNBQK2R w KQkq - 1 5",
    "rnbqk2r/ppp1ppbp/3p1np1/8/2PPP3/2N5/PP3PPP/R1BQKBNR w KQkq - 0 5",
    "rnbqkbnr/pp2pppp/2p5/3p4/3PP3/8/PPP2PPP/RNBQKBNR w KQkq - 0 3",
    // Middle games.
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
    "r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N1PN2/PP2BPPP/R2QKB1R w KQ - 0 8",
    "r2q1rk1/pp1bbppp/2nppn2/8/3NP3/2N1B3/PPPQBPPP/R3K2R w KQ - 4 9",
    "2rq1rk1/pp1bppbp/3p1np1/4n3/3NP3/1BN1BP2/PPPQ2PP/2KR3R w - - 9 12",
    "r1b2rk1/2q1bppp/p2p1n2/np2p3/3PP3/5N1P/PPBN1PP1/R1BQR1K1 w - - 1 13",
    "r2qr1k1/1b1nbppp/p2p1n2/1pp1p3/4P3/2PP1NN1/PPB2PPP/R1BQR1K1 w - - 2 13",
    "3r1rk1/p1q2ppp/1pn1p3/2p1P3/2P2P2/P1PB4/4Q1PP/R4RK1 w - - 1 18",
    "r1bqr1k1/ppp2ppp/2np1n2/2b1p3/2B1P3/2PP1N2/PP1N1PPP/R1BQR1K1 w - - 5 8",
    "2r2rk1/1bqnbppp/pp1ppn2/8/2PNP3/1PN1BB2/P2Q1PPP/2RR2K1 w - - 4 15",
    "r4rk1/pp1n1ppp/2p1pq2/3p4/2PP4/P1Q1PN2/1P3PPP/R3KB1R w KQ - 1 12",
    "1k1r3r/pp2qpp1/2p1bn1p/4p3/4P3/2NQ1N1P/PPP2PP1/2KR3R w - - 2 16",
    // Tactics: checks, sacrifices, mates.
    "r1bqkbnr/pppp1ppp/2n5/4p3/2B1P3/5Q2/PPPP1PPP/RNB1K1NR w KQkq - 2 3",
    "6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1",
    "r5rk/5p1p/5R2/4B3/8/8/7P/7K w - - 0 1",
    "2kr3r/ppp2ppp/2n5/2b1q3/4P1b1/2NP4/PPP1BPPP/R1BQ1RK1 b - - 0 10",
    // Endings.
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "8/8/8/4k3/8/8/4P3/4K3 w - - 0 1",
    "8/5pk1/6p1/8/4P3/5PK1/8/8 w - - 0 1",
    "8/8/1p4k1/p1p4p/P1P2K1P/1P6/8/8 w - - 0 1",
    "4k3/8/8/8/8/8/R7/4K3 w - - 0 1",
    "8/8/4k3/8/2R5/4K3/3r4/8 w - - 0 1",
    "6k1/5p2/6p1/8/7P/5QP1/5PK1/3q4 b - - 0 40",
    "8/3k4/8/2B5/8/8/2P1K3/3b4 w - - 0 1",
    "8/5k2/8/3N4/8/2n2K2/6P1/8 w - - 0 1",
    "4k3/4p3/8/8/8/8/3R4/4K3 w - - 0 1",
    "8/8/2kr4/8/8/3QK3/8/8 w - - 0 1",
    "8/pp3k2/2p5/5p2/5P2/2P4P/PP4K1/8 b - - 0 30",
};
}  // namespace BenchPositions
