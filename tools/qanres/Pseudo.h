// Pseudo.h: pseudo-localisation of handed-out texts, to see untranslated strings, cut
// texts and layouts that cannot grow, before any translation exists.
#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <string_view>

namespace QanTool {

// Each field of the text (a line, or the value of a tagged field) becomes "[" + its
// letters as accented look-alikes + "~" padding + "]"; the text grows by at least percent
// of its length in characters (when it has a field). Kept exactly: tagged-field heads
// (U+0001, the tag, "="), line feeds and carriage returns, the accelerator after a tab,
// "&" with the mnemonic letter after it and "&&", printf placeholders ("%s", "%1$s",
// "%-5.2f", "%ls", "%%") and "%1"-style and "{0}" placeholders.
std::string PseudoLocalise(std::string_view text, int percent);

// Writes OUT/strings.xml (every id of the source directory, as handed out, pseudo-
// localised) and OUT/startupstrings.xml (the source's start-up ids) in the canonical
// form. Refuses to replace non-empty files unless force. Returns "" or an error.
std::string PseudoDirectory(const std::filesystem::path& source, const std::filesystem::path& out,
                            int percent, bool force, std::ostream& notes);

} // namespace QanTool
