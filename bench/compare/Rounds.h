// Rounds.h: paired rounds: in each round every figure measures our side and each peer
// back to back; the table gives medians and the median of the per-round ratios.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Compare {

enum class Unit { NanosecondsPerOp, Milliseconds, HitsPerSecond, BytesPerRow };

// One measurement: runs the whole key sequence (or one load) and returns its value.
struct Side {
    std::string name;
    std::function<double()> sample;
};

struct Figure {
    std::string name;
    Unit unit;
    Side ours;
    std::vector<Side> peers; // peers or floors; ratio = ours / peer
};

// One warm-up round, then `rounds` measured ones (order flipped every other round);
// prints the table to standard output.
void RunRoundsAndPrint(const std::vector<Figure>& figures, int rounds);

} // namespace Compare
