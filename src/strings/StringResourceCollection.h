// StringResourceCollection.h: answers the four kinds of string look-up from the string
// text files and key tables, reading the full text file lazily at the first miss.
#pragma once

#include "base/Collections.h"

#include <memory>

namespace Framework::Internal {

class LoadRecorder;

class StringResourceCollection final : public StringCollection {
public:
    // Reads the start-up texts, the overrides and the four key tables from the
    // directories set at this moment. A recorder, when given, receives a record of each
    // file, and later of the full text file; it must outlive the collection.
    explicit StringResourceCollection(LoadRecorder* recorder = nullptr);
    ~StringResourceCollection() override;

    std::optional<QanStringT<wchar_t>> GetResource(const QanStringT<wchar_t>& key,
                                                   StringKind kind) const override;

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace Framework::Internal
