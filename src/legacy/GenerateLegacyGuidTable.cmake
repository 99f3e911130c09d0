# GenerateLegacyGuidTable.cmake: turns data/legacy_guids.tsv into the C++ source of the
# compiled-in legacy GUID table. Run by the build as
#     cmake -DINPUT=<tsv> -DOUTPUT=<cpp> -P GenerateLegacyGuidTable.cmake
# Whole-file regular expressions rather than a loop over rows: a loop over 15,935 rows
# costs seconds in CMake, one replacement a fraction of that.

if(NOT INPUT OR NOT OUTPUT)
    message(FATAL_ERROR "GenerateLegacyGuidTable: INPUT and OUTPUT are required")
endif()

file(READ "${INPUT}" rows)
# A checkout may have turned the line ends into CR LF; the rows are the same.
string(REPLACE "\r" "" rows "${rows}")
if(NOT rows MATCHES "\n$")
    string(APPEND rows "\n")
endif()
# Texts are ASCII keys, but a backslash or quote must not end the literal early.
string(REPLACE "\\" "\\\\" rows "${rows}")
string(REPLACE "\"" "\\\"" rows "${rows}")

# Rows without a key share one empty text; the others become wide literals.
string(REGEX REPLACE "([0-9]+)\t([^\t\n]*)\t\n" "{\\1u, \"\\2\", kNoKey},\n" rows "${rows}")
string(REGEX REPLACE "([0-9]+)\t([^\t\n]*)\t([^\t\n]+)\n" "{\\1u, \"\\2\", L\"\\3\"},\n" rows
                     "${rows}")
# Anything left that is not a row would be a malformed line of the data file.
string(REGEX MATCH "\n[^{][^\n]*" stray "\n${rows}")
if(stray)
    message(FATAL_ERROR "GenerateLegacyGuidTable: malformed row in ${INPUT}:${stray}")
endif()

file(WRITE "${OUTPUT}.tmp"
"// Generated from legacy_guids.tsv by GenerateLegacyGuidTable.cmake; do not edit.
#include \"legacy/LegacyGuidTable.h\"

namespace Framework::Internal {
namespace {
constexpr wchar_t kNoKey[] = L\"\";
} // namespace

extern const LegacyGuidEntry kLegacyGuidTable[] = {
${rows}};
extern const std::size_t kLegacyGuidTableSize = sizeof(kLegacyGuidTable) / sizeof(kLegacyGuidTable[0]);

} // namespace Framework::Internal
")
# Only a changed table recompiles its object.
file(COPY_FILE "${OUTPUT}.tmp" "${OUTPUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${OUTPUT}.tmp")
