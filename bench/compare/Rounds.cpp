// Rounds.cpp: runs the paired rounds and prints one table row per figure and peer.
#include "Rounds.h"

#include <algorithm>
#include <cstdio>

namespace Compare {
namespace {

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

std::string Format(double value, Unit unit) {
    char text[64];
    switch (unit) {
    case Unit::NanosecondsPerOp:
        std::snprintf(text, sizeof text, "%.1f ns", value);
        break;
    case Unit::Milliseconds:
        std::snprintf(text, sizeof text, "%.2f ms", value);
        break;
    case Unit::HitsPerSecond:
        std::snprintf(text, sizeof text, "%.2f M/s", value / 1e6);
        break;
    case Unit::BytesPerRow:
        std::snprintf(text, sizeof text, "%.1f B/row", value);
        break;
    }
    return text;
}

} // namespace

void RunRoundsAndPrint(const std::vector<Figure>& figures, int rounds) {
    // samples[f][0] are ours, samples[f][1 + p] peer p's.
    std::vector<std::vector<std::vector<double>>> samples(figures.size());
    for (std::size_t f = 0; f < figures.size(); ++f)
        samples[f].resize(1 + figures[f].peers.size());

    for (int round = -1; round < rounds; ++round) {
        for (std::size_t f = 0; f < figures.size(); ++f) {
            const Figure& figure = figures[f];
            std::vector<double> values(1 + figure.peers.size());
            const bool oursFirst = round % 2 == 0;
            if (oursFirst)
                values[0] = figure.ours.sample();
            for (std::size_t p = 0; p < figure.peers.size(); ++p)
                values[1 + p] = figure.peers[p].sample();
            if (!oursFirst)
                values[0] = figure.ours.sample();
            if (round < 0)
                continue; // warm-up
            for (std::size_t s = 0; s < values.size(); ++s)
                samples[f][s].push_back(values[s]);
        }
        std::fprintf(stderr, "\rround %d of %d done", round + 1, rounds);
    }
    std::fprintf(stderr, "\n");

    std::printf("%-48s %12s  %-46s %12s  %7s\n", "figure", "ours", "peer / floor", "", "ratio");
    std::printf("%s\n", std::string(131, '-').c_str());
    for (std::size_t f = 0; f < figures.size(); ++f) {
        const Figure& figure = figures[f];
        const double ours = Median(samples[f][0]);
        for (std::size_t p = 0; p < figure.peers.size(); ++p) {
            std::vector<double> ratios;
            for (int r = 0; r < rounds; ++r)
                ratios.push_back(samples[f][0][static_cast<std::size_t>(r)] /
                                 samples[f][1 + p][static_cast<std::size_t>(r)]);
            std::printf("%-48s %12s  %-46s %12s  %7.2f\n", p ? "" : figure.name.c_str(),
                        p ? "" : Format(ours, figure.unit).c_str(), figure.peers[p].name.c_str(),
                        Format(Median(samples[f][1 + p]), figure.unit).c_str(), Median(ratios));
        }
    }
}

} // namespace Compare
