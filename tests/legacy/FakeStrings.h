// FakeStrings.h: a string collection over an in-memory map of (key, kind) to text, for
// tests of the service's legacy paths.
#pragma once

#include "service/ResourceCollection.h"

#include <map>
#include <utility>

namespace QanTest {

class FakeStrings final : public Framework::Internal::StringCollection {
public:
    using Map = std::map<std::pair<std::wstring, std::uint32_t>, std::wstring>;
    explicit FakeStrings(Map texts) : texts(std::move(texts)) {}

    std::optional<QanStringT<wchar_t>>
    GetResource(const QanStringT<wchar_t>& key,
                Framework::Internal::StringKind kind) const override {
        const auto it = texts.find({key, kind});
        if (it == texts.end())
            return std::nullopt;
        return it->second;
    }

private:
    Map texts;
};

} // namespace QanTest
