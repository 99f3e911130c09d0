#include "base/Settings.h"

namespace Framework::Internal {

namespace {
// Built when the library loads, before any setter can run.
Settings settings;
} // namespace

Settings& ProcessSettings() {
    return settings;
}

} // namespace Framework::Internal
