#include <framework/StripMenuText.h>

// Placeholder until menu text stripping lands.
void StripMenuText(QanStringT<wchar_t>&, unsigned) {}
