// The statistics of a finished search: time and speed, hash table hit ratios, cutoffs.
#pragma once

class SerialSearch;

// Writes the three lines through the output channel as its switches stand.
void WriteSearchStatistics(const SerialSearch& search);
