// Peers.cpp: writes the gettext and ICU sources of the corpus, compiles them with the
// peers' own tools and opens the results for look-ups.
#include "Peers.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <fstream>
#include <libintl.h>
#include <stdexcept>
#include <vector>

namespace Compare {
namespace fs = std::filesystem;
namespace {

// Backslash, quote, line feed and tab escaped as both .po files and genrb sources want.
std::string Quote(const std::string& text) {
    std::string out = "\"";
    for (const char c : text) {
        switch (c) {
        case '\\':
            out += "\\\\";
            break;
        case '"':
            out += "\\\"";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            out += c;
        }
    }
    return out + "\"";
}

void Run(const std::string& command) {
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error("failed: " + command);
}

void Write(const fs::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary);
    out << bytes;
    if (!out)
        throw std::runtime_error("cannot write " + path.string());
}

} // namespace

GettextPeer::GettextPeer(const Corpus& corpus) {
    const fs::path dir = corpus.root / "gettext";
    const fs::path messages = dir / "C.UTF-8" / "LC_MESSAGES";
    fs::create_directories(messages);
    std::string po = "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n\n";
    for (const Entry& entry : corpus.entries)
        po += "msgid " + Quote(entry.key) + "\nmsgstr " + Quote(entry.text) + "\n\n";
    Write(dir / "texts.po", po);
    Run(std::string("'") + QANRES_MSGFMT + "' -o '" + (messages / (domain + ".mo")).string() +
        "' '" + (dir / "texts.po").string() + "'");

    // LANGUAGE would take precedence over the locale and name catalogues we do not have.
    unsetenv("LANGUAGE");
    if (!std::setlocale(LC_ALL, "C.UTF-8"))
        throw std::runtime_error("the C.UTF-8 locale is not installed");
    bindtextdomain(domain.c_str(), dir.c_str());
    bind_textdomain_codeset(domain.c_str(), "UTF-8");
}

const char* GettextPeer::Lookup(const char* key) const {
    return dgettext(domain.c_str(), key);
}

IcuPeer::IcuPeer(const Corpus& corpus) {
    const fs::path dir = corpus.root / "icu";
    fs::create_directories(dir);
    // Keys in descending order: genrb inserts each at the front of its sorted table.
    std::vector<const Entry*> entries;
    for (const Entry& entry : corpus.entries)
        entries.push_back(&entry);
    std::sort(entries.begin(), entries.end(),
              [](const Entry* a, const Entry* b) { return a->key > b->key; });
    std::string source = "root:table(nofallback) {\n";
    for (const Entry* entry : entries)
        source += "    " + Quote(entry->key) + "{" + Quote(entry->text) + "}\n";
    source += "}\n";
    Write(dir / "root.txt", source);
    Run(std::string("'") + QANRES_GENRB + "' -q -e UTF-8 -d '" + dir.string() + "' '" +
        (dir / "root.txt").string() + "'");

    UErrorCode status = U_ZERO_ERROR;
    bundle = ures_openDirect((dir.string() + "/").c_str(), "root", &status);
    if (U_FAILURE(status))
        throw std::runtime_error(std::string("ICU cannot open the bundle: ") + u_errorName(status));
}

IcuPeer::~IcuPeer() {
    ures_close(bundle);
}

const UChar* IcuPeer::Lookup(const char* key, int32_t& length) const {
    UErrorCode status = U_ZERO_ERROR;
    const UChar* text = ures_getStringByKey(bundle, key, &length, &status);
    return U_SUCCESS(status) ? text : nullptr;
}

} // namespace Compare
