// Pseudo.cpp: works on the handed-out text, never on the stored form, so entities and
// escapes cannot be broken; the result is stored with the same encoder as an import.
#include "Pseudo.h"

#include "Placeholders.h"

#include "Files.h"
#include "Lint.h"
#include "StoredText.h"
#include "StringDirectory.h"
#include "StringFileWriter.h"

#include "base/Unicode.h"
#include "text/TaggedText.h"

#include <algorithm>

namespace QanTool {
namespace {

constexpr auto kFieldMarker = static_cast<char32_t>(Framework::Internal::kFieldMarker);
constexpr char32_t kPad = U'~';

char32_t Accented(char32_t c) {
    static constexpr char32_t lower[] = U"áƀçðéƒĝĥíĵķĺɱñöþǫŕšţüṽŵẋýž";
    static constexpr char32_t upper[] = U"ÅƁÇÐÉƑĜĤÎĴĶĹṀÑÖÞǪŔŠŢÜṼŴẊÝŽ";
    if (c >= U'a' && c <= U'z')
        return lower[c - U'a'];
    if (c >= U'A' && c <= U'Z')
        return upper[c - U'A'];
    return c;
}

// The letters of a field, accented, with everything the library or a host interprets kept.
std::u32string AccentField(std::u32string_view s) {
    std::u32string out;
    for (std::size_t i = 0; i < s.size();) {
        const char32_t c = s[i];
        if (c == U'%' || c == U'{') {
            if (const std::size_t n = PlaceholderLength(s, i)) {
                out.append(s.substr(i, n));
                i += n;
                continue;
            }
        }
        if (c == U'&' && i + 1 < s.size() && s[i + 1] != U' ' && s[i + 1] != U'%' &&
            s[i + 1] != U'{') {
            // "&&" is a literal ampersand; "&x" marks x as the mnemonic: both kept as they
            // are. Before a placeholder the "&" stands alone, so the placeholder stays whole.
            out.append(s.substr(i, 2));
            i += 2;
            continue;
        }
        out += Accented(c);
        ++i;
    }
    return out;
}

struct Field {
    std::size_t begin, end; // the part to localise
    std::size_t tail;       // end of the part kept as it is (accelerator after a tab)
};

} // namespace

std::string PseudoLocalise(std::string_view utf8, int percent) {
    const std::u32string text = Framework::Unicode::DecodeScalars(utf8);
    std::u32string_view s(text);
    // Split into fields and the separators between them.
    std::vector<Field> fields;
    std::vector<std::pair<std::size_t, std::size_t>> separators; // before each field, and last
    std::size_t i = 0;
    while (true) {
        const std::size_t sepBegin = i;
        while (i < s.size()) {
            if (s[i] == U'\n' || s[i] == U'\r') {
                ++i;
            } else if (s[i] == kFieldMarker) {
                // Marker, two tag characters and "=": exactly as they stand.
                i = std::min(s.size(), i + 3);
                if (i < s.size() && s[i] == U'=')
                    ++i;
            } else {
                break;
            }
        }
        separators.emplace_back(sepBegin, i);
        if (i == s.size())
            break;
        Field f{i, i, i};
        while (f.tail < s.size() && s[f.tail] != U'\n' && s[f.tail] != U'\r' &&
               s[f.tail] != kFieldMarker)
            ++f.tail;
        const std::size_t tab = s.substr(f.begin, f.tail - f.begin).find(U'\t');
        f.end = tab == std::u32string_view::npos ? f.tail : f.begin + tab;
        fields.push_back(f);
        i = f.tail;
    }
    if (fields.empty())
        return std::string(utf8);

    // Each field grows by percent of its own length (brackets included); the last one
    // takes what rounding leaves, so the whole text grows by at least percent.
    const auto grow = [&](std::size_t n) {
        return (n * static_cast<std::size_t>(percent) + 99) / 100;
    };
    const std::size_t needed = grow(s.size());
    std::size_t added = 0;
    std::u32string out;
    for (std::size_t f = 0; f < fields.size(); ++f) {
        const auto [sb, se] = separators[f];
        out.append(s.substr(sb, se - sb));
        const Field& field = fields[f];
        const std::u32string accented = AccentField(s.substr(field.begin, field.end - field.begin));
        std::size_t pad = grow(field.tail - field.begin);
        pad = pad > 2 ? pad - 2 : 0;
        if (f + 1 == fields.size() && added + pad + 2 < needed)
            pad = needed - added - 2;
        added += pad + 2;
        out += U'[';
        out += accented;
        out.append(pad, kPad);
        out += U']';
        out.append(s.substr(field.end, field.tail - field.end));
    }
    const auto [sb, se] = separators.back();
    out.append(s.substr(sb, se - sb));
    std::string utf8Out;
    for (const char32_t c : out)
        Framework::Unicode::AppendUtf8(c, utf8Out);
    return utf8Out;
}

std::string PseudoDirectory(const std::filesystem::path& source, const std::filesystem::path& out,
                            int percent, bool force, std::ostream& notes) {
    std::error_code ec;
    if (!std::filesystem::is_directory(source, ec))
        return source.string() + " is not a directory";
    if (!std::filesystem::is_directory(out, ec) && !std::filesystem::create_directories(out, ec))
        return "cannot create " + out.string();
    if (std::filesystem::equivalent(source, out, ec))
        return "the output directory is the source directory";
    const MasterStrings strings = ReadMasterStrings(source);
    std::vector<StoredString> full, startup;
    for (const auto& s : strings.strings) {
        auto stored = EncodeStoredText(PseudoLocalise(s.text, percent));
        if (!stored)
            return "the text of " + s.id + " cannot be stored";
        if (std::binary_search(strings.startupIds.begin(), strings.startupIds.end(), s.id))
            startup.push_back({s.id, *stored});
        full.push_back({s.id, std::move(*stored)});
    }
    std::vector<NewFile> files{{kFullStrings, CanonicalStringFile(std::move(full))}};
    // A start-up file already in OUT_DIR is rewritten too, so that no stale start-up text
    // contradicts the new strings.xml.
    if (!strings.startupIds.empty() || ReadWholeFile(out / kStartupStrings))
        files.push_back({kStartupStrings, CanonicalStringFile(std::move(startup))});
    for (const auto& file : files) {
        const auto old = ReadWholeFile(out / file.name);
        if (old && !old->empty() && *old != file.bytes && !force)
            return (out / file.name).string() + " exists (use --force to replace it)";
    }
    if (auto error = WriteFilesSafely(out, files); !error.empty())
        return error;
    notes << "qanres: pseudo: " << strings.strings.size() << " strings written to " << out.string()
          << '\n';
    return {};
}

} // namespace QanTool
