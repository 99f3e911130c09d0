// LegacyStringLoader.h: the process-wide loader of module strings that the control
// library injects; until then it returns empty texts.
#pragma once

#include <framework/QanCtlDependency.h>

namespace Framework::Internal {

using LegacyStringLoaderFn = std::function<QanStringT<wchar_t>(HINSTANCE, std::uint32_t)>;

// Created on first use holding a do-nothing loader.
LegacyStringLoaderFn& LegacyStringLoader();
// Loads through the current loader; an emptied loader gives an empty text.
QanStringT<wchar_t> LoadLegacyString(HINSTANCE module, std::uint32_t id);

} // namespace Framework::Internal
