// ResourceCollection.h: the interfaces through which the service asks each source of
// resources. A present optional is a hit; an absent one lets the service ask the next.
#pragma once

#include <framework/Resources.h>

#include <optional>

namespace Framework::Internal {

template <class T>
class IResourceCollection;

// Strings are asked for with the kind of text wanted.
template <>
class IResourceCollection<QanStringT<wchar_t>> {
public:
    virtual ~IResourceCollection() = default;
    virtual std::optional<QanStringT<wchar_t>> GetResource(const QanStringT<wchar_t>& key,
                                                           StringKind kind) const = 0;
};

template <>
class IResourceCollection<Resources::ResourceID> {
public:
    virtual ~IResourceCollection() = default;
    virtual std::optional<Resources::ResourceID>
    GetResource(const QanStringT<wchar_t>& key) const = 0;
};

// Legacy components' registrar tables: keys to (module, id) by resource type.
template <class T>
class ILegacyResourceCollection {
public:
    virtual ~ILegacyResourceCollection() = default;
    virtual void GetResource(std::optional<T>& out, const QanStringT<wchar_t>& key,
                             Resources::ResourceType type) const = 0;
    virtual void AddResources(const wchar_t* component, const Resources::RegistrarMapEntry* entries,
                              int count, Resources::ResourceType type) = 0;
    virtual void AddComponent(const wchar_t* component, HINSTANCE module) = 0;
    virtual void RemoveComponent(const wchar_t* component) = 0;
};

using StringCollection = IResourceCollection<QanStringT<wchar_t>>;
using IdCollection = IResourceCollection<Resources::ResourceID>;
using LegacyCollection = ILegacyResourceCollection<Resources::ResourceID>;

} // namespace Framework::Internal
