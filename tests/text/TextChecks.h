// TextChecks.h: the table checks of the text functions, each run once by its own test and
// all of them from eight threads at once by the concurrency test.
#pragma once

namespace TextChecks {

void Getters(); // every getter on every text of its table
void Combine(); // CombineString's untagged and tagged merges
void Strip();   // StripMenuText's decorations and all sixteen flag values

} // namespace TextChecks
