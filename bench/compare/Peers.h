// Peers.h: the other ways to hold the same texts: a gettext catalogue read by glibc's
// dgettext and an ICU resource bundle built with genrb.
#pragma once

#include "Corpus.h"

#include <unicode/ures.h>

#include <string>

namespace Compare {

// A .mo catalogue compiled with msgfmt from every text under the entry keys, looked up
// with dgettext under the C.UTF-8 locale (plain "C" would never look texts up).
class GettextPeer {
public:
    explicit GettextPeer(const Corpus& corpus);

    // The text of key, or key itself when the catalogue lacks it (gettext's miss).
    const char* Lookup(const char* key) const;

private:
    std::string domain = "qanres_compare";
};

// A table resource bundle ("root") holding every text under the same ASCII keys.
class IcuPeer {
public:
    explicit IcuPeer(const Corpus& corpus);
    ~IcuPeer();
    IcuPeer(const IcuPeer&) = delete;
    IcuPeer& operator=(const IcuPeer&) = delete;

    // The text of key (UTF-16, not terminated: see length), or null on a miss.
    const UChar* Lookup(const char* key, int32_t& length) const;

private:
    UResourceBundle* bundle = nullptr;
};

} // namespace Compare
