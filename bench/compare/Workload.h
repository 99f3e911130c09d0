// Workload.h: what every side must answer (hash maps that double as the floors), the
// shuffled key sequences that every side times, and the check of every answer.
#pragma once

#include "Corpus.h"
#include "Library.h"
#include "Peers.h"

#include <framework/Resources.h>

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Compare {

// A shuffled key sequence, in both forms: wide for the library, narrow for the peers.
struct Keys {
    std::vector<std::string> narrow;
    std::vector<std::wstring> wide;
    std::size_t size() const { return narrow.size(); }
};

struct PairHash {
    std::size_t operator()(const std::pair<std::string, int>& p) const {
        return std::hash<std::string>{}(p.first) ^
               (static_cast<std::size_t>(p.second) * 0x9E3779B97F4A7C15ull);
    }
};

using TextMap = std::unordered_map<std::string, std::wstring>;
using WideTextMap = std::unordered_map<std::wstring, std::wstring>;
using IdMap = std::unordered_map<std::wstring, Framework::Resources::ResourceID>;
using GuidMap = std::unordered_map<std::pair<std::string, int>, std::wstring, PairHash>;

struct Workload {
    TextMap texts;        // key -> string text
    TextMap kindTexts[3]; // key -> caption, tooltip header, tooltip body
    IdMap icons, cursors;
    GuidMap guids;           // (component, id) -> GUID key
    WideTextMap legacyTexts; // GUID key -> legacy text
    std::string fullOnlyKey; // a key whose text is not in the start-up file

    Keys hits;        // every key once
    Keys startupHits; // keys of start-up texts
    Keys coldMisses;  // never asked twice: a fresh slice of kColdSlice keys for every sample
    Keys misses, dangling, kindHits, iconHits, cursorHits, plainLegacy, composedLegacy;
    std::vector<std::pair<std::string, int>> guidSequence;
    bool legacy = false; // the legacy GUID table was readable
};

constexpr std::size_t kColdSlice = 4096;

// coldSlices slices of cold misses are made. Sequences other than `hits` are cycled to `length`
// look-ups. Asks the configured service for the handle of its cursor module.
Workload BuildWorkload(const Corpus& corpus, std::size_t length, std::size_t coldSlices);

// Asks every side for every key of every sequence; exits with a message at the first
// answer that is not the expected one. The start-up collection must not read the full file,
// as its recorder tells.
void VerifyAll(const Workload& work, const GettextPeer& gettext, const IcuPeer& icu,
               const StringCollection& startupOnly, const LoadRecorder& startupRecord);

// Prints the message, removes the folder given to RemoveOnFailure (the corpus) and exits
// with status 1.
[[noreturn]] void Fail(const std::string& message);
void RemoveOnFailure(const std::filesystem::path& folder);

} // namespace Compare
