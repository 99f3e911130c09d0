// Stats.cpp: counting over the key tables and comparing texts feature by feature.
#include "Stats.h"

#include "Json.h"
#include "StringDirectory.h"
#include "TextFeatures.h"

#include <iomanip>

namespace QanTool {
namespace {

const std::string* TextOf(const Language& language, const std::string& id) {
    const auto it = language.texts.find(id);
    return it == language.texts.end() ? nullptr : &it->second;
}

std::string JsonList(const std::vector<std::string>& items) {
    std::string out = "[";
    for (std::size_t i = 0; i < items.size(); ++i)
        out += (i ? "," : "") + JsonString(items[i]);
    return out + "]";
}

} // namespace

KeyTables ReadKeyTables(const std::filesystem::path& resourceDirectory) {
    KeyTables tables;
    for (const auto& [id, references] : ReadKeyReferences(resourceDirectory))
        for (const KeyReference& reference : references)
            for (int kind = 0; kind < 4; ++kind)
                if (reference.kind == kKindNames[kind])
                    tables.kinds[kind].push_back({reference.key, id});
    return tables;
}

Language ReadLanguage(const std::filesystem::path& masterStringDirectory, std::string name) {
    Language language{std::move(name), {}};
    for (const DirectoryString& string : ReadMasterStrings(masterStringDirectory).strings)
        language.texts.emplace(string.id, string.text);
    return language;
}

std::vector<LanguageStats> ComputeStats(const KeyTables& keys,
                                        const std::vector<Language>& languages) {
    std::vector<LanguageStats> all;
    for (std::size_t l = 0; l < languages.size(); ++l) {
        const Language& language = languages[l];
        LanguageStats stats{language.name, language.texts.size(), {}};
        for (int kind = 0; kind < 4; ++kind) {
            KindStats& k = stats.kinds[kind];
            for (const KeyRow& row : keys.kinds[kind]) {
                ++k.keys;
                const std::string* text = TextOf(language, row.id);
                if (!text) {
                    ++k.missing;
                    continue;
                }
                ++k.answered;
                const std::string* source = l > 0 ? TextOf(languages[0], row.id) : nullptr;
                if (source && *source == *text)
                    ++k.identical;
            }
        }
        all.push_back(std::move(stats));
    }
    return all;
}

void PrintStats(const std::vector<LanguageStats>& stats, bool json, std::ostream& out) {
    if (json) {
        out << "{\"languages\":[";
        for (std::size_t l = 0; l < stats.size(); ++l) {
            const auto& s = stats[l];
            out << (l ? "," : "") << "{\"name\":" << JsonString(s.name)
                << ",\"source\":" << (l == 0 ? "true" : "false") << ",\"texts\":" << s.texts
                << ",\"kinds\":{";
            for (int kind = 0; kind < 4; ++kind) {
                const KindStats& k = s.kinds[kind];
                out << (kind ? "," : "") << JsonString(kKindNames[kind]) << ":{\"keys\":" << k.keys
                    << ",\"answered\":" << k.answered << ",\"missing\":" << k.missing
                    << ",\"identical\":";
                if (l == 0)
                    out << "null";
                else
                    out << k.identical;
                out << "}";
            }
            out << "}}";
        }
        out << "]}\n";
        return;
    }
    out << std::left << std::setw(16) << "kind" << std::right << std::setw(8) << "keys"
        << std::setw(10) << "answered" << std::setw(9) << "missing" << std::setw(11) << "identical"
        << '\n';
    for (std::size_t l = 0; l < stats.size(); ++l) {
        const auto& s = stats[l];
        out << s.name << (l == 0 ? " (source)" : "") << ": " << s.texts << " texts\n";
        for (int kind = 0; kind < 4; ++kind) {
            const KindStats& k = s.kinds[kind];
            out << std::left << std::setw(16) << kKindNames[kind] << std::right << std::setw(8)
                << k.keys << std::setw(10) << k.answered << std::setw(9) << k.missing
                << std::setw(11) << (l == 0 ? std::string("-") : std::to_string(k.identical))
                << '\n';
        }
    }
}

Comparison Compare(const Language& source, const Language& target) {
    Comparison c{source.name, target.name, {}, {}, {}, {}};
    for (const auto& [id, text] : source.texts) {
        const std::string* translated = TextOf(target, id);
        if (!translated) {
            c.missing.push_back(id);
            continue;
        }
        if (!text.empty() && *translated == text)
            c.identical.push_back(id);
        auto differences = FeatureDifferences(Features(text), Features(*translated));
        if (!differences.empty())
            c.differing.emplace_back(id, std::move(differences));
    }
    for (const auto& [id, text] : target.texts)
        if (!TextOf(source, id))
            c.extra.push_back(id);
    return c;
}

int PrintComparison(const Comparison& c, bool json, std::ostream& out) {
    const int status = c.missing.empty() && c.differing.empty() ? 0 : 1;
    if (json) {
        out << "{\"source\":" << JsonString(c.source) << ",\"target\":" << JsonString(c.target)
            << ",\"missing\":" << JsonList(c.missing) << ",\"extra\":" << JsonList(c.extra)
            << ",\"identical\":" << JsonList(c.identical) << ",\"differing\":[";
        for (std::size_t i = 0; i < c.differing.size(); ++i)
            out << (i ? "," : "") << "{\"id\":" << JsonString(c.differing[i].first)
                << ",\"differences\":" << JsonList(c.differing[i].second) << "}";
        out << "]}\n";
        return status;
    }
    for (const auto& id : c.missing)
        out << "missing " << id << '\n';
    for (const auto& id : c.extra)
        out << "extra " << id << '\n';
    for (const auto& id : c.identical)
        out << "identical " << id << '\n';
    for (const auto& [id, differences] : c.differing)
        for (const auto& difference : differences)
            out << "differs " << id << ": " << difference << '\n';
    out << c.target << " against " << c.source << ": " << c.missing.size() << " missing, "
        << c.extra.size() << " extra, " << c.identical.size() << " identical, "
        << c.differing.size() << " with differing placeholders, mnemonics, fields or escapes\n";
    return status;
}

} // namespace QanTool
