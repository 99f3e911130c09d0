// XmlEntities.h: reverses the entity escaping of stored texts: the five predefined
// entities and decimal or hexadecimal character references.
#pragma once

#include <framework/QanString.h>

namespace Framework::Internal {

// Decodes in place, in one left-to-right pass (so "&amp;lt;" gives "&lt;"). References to
// surrogates or values above U+10FFFF, unknown names and malformed references stay as
// written. A value above U+FFFF becomes a surrogate pair where wchar_t is 16 bits wide.
void UnReplaceXmlEntities(QanStringT<wchar_t>& text);

} // namespace Framework::Internal
