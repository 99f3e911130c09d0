// Catalogue.h: the strings of a language pair as exchanged with translators, independent
// of the file format (PO or XLIFF) that carries them.
#pragma once

#include <string>
#include <vector>

namespace QanTool {

struct CatalogueEntry {
    std::string id;
    std::string source;             // the source language's text, as handed out
    std::string target;             // the target language's text, as handed out
    bool hasTarget = false;         // false: untranslated (no target text at all)
    std::vector<std::string> notes; // "caption: KEY" for every key that reaches the id
};

struct Catalogue {
    std::string sourceLanguage; // empty when unknown
    std::string targetLanguage; // empty when unknown
    std::vector<CatalogueEntry> entries;
};

} // namespace QanTool
