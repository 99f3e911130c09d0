// StringResourceLoadException.h: the failure type of the string loaders. Only the guard
// around the override merge handles it, and swallows it.
#pragma once

#include <exception>

namespace Framework::Internal {

class StringResourceLoadException : public std::exception {
public:
    const char* what() const noexcept override { return "string resources could not be loaded"; }
};

} // namespace Framework::Internal
