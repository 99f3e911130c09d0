// Collections.h: the interfaces through which the service asks each source of resources.
// A present optional is a hit; an absent one lets the service ask the next source.
#pragma once

#include <framework/Resources.h>

#include <optional>

namespace Framework::Internal {

// String texts, asked for with the kind of text wanted (string, caption, tooltip header
// or body). Look-ups may run on any thread.
class StringCollection {
public:
    virtual ~StringCollection() = default;
    virtual std::optional<QanStringT<wchar_t>> GetResource(const QanStringT<wchar_t>& key,
                                                           StringKind kind) const = 0;
};

// Icons and cursors: a key to a module and resource id, or to file paths.
class IdCollection {
public:
    virtual ~IdCollection() = default;
    virtual std::optional<Resources::ResourceID>
    GetResource(const QanStringT<wchar_t>& key) const = 0;
};

// Legacy components' registrar tables: keys to (module, id) by resource type, filled by
// the hosts' registrations. Hosts register while other threads look up: implementations
// let a look-up see each registration whole or not at all, and serialise registrations.
class LegacyCollection {
public:
    virtual ~LegacyCollection() = default;
    virtual std::optional<Resources::ResourceID>
    GetResource(const QanStringT<wchar_t>& key, Resources::ResourceType type) const = 0;
    virtual void AddResources(const wchar_t* component, const Resources::RegistrarMapEntry* entries,
                              int count, Resources::ResourceType type) = 0;
    virtual void AddComponent(const wchar_t* component, HINSTANCE module) = 0;
    virtual void RemoveComponent(const wchar_t* component) = 0;
};

} // namespace Framework::Internal
