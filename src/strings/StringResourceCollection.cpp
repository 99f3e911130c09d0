#include "strings/StringResourceCollection.h"

// Placeholder until the string tables land: the collection knows no key.
namespace Framework::Internal {

struct StringResourceCollection::State {};

StringResourceCollection::StringResourceCollection() : state(std::make_unique<State>()) {}
StringResourceCollection::~StringResourceCollection() = default;

std::optional<QanStringT<wchar_t>> StringResourceCollection::GetResource(const QanStringT<wchar_t>&,
                                                                         StringKind) const {
    return std::nullopt;
}

} // namespace Framework::Internal
