#!/usr/bin/env bash
# make-corpus.sh: rebuilds the seed corpora under fuzz/corpus/<target>/ from the example
# resources, the tool's test data and the icon test fixture, plus a few hostile inputs
# written here. The seeds are checked in; run this again when those files change.
# Needs the mingw resource compiler and linker for the cursor-table seed (as the icon
# tests do) and iconv for the wide-text seeds.
set -euo pipefail
cd "$(dirname "$0")/.."

corpus=fuzz/corpus
rm -rf "$corpus"
mkdir -p "$corpus"
seed() { # seed <target> <name>: stdin becomes the seed
    mkdir -p "$corpus/$1"
    cat >"$corpus/$1/$2"
}

# A resource directory as one input: its files in the order fuzz/support/SplitInput.h
# gives them out, cut by its marker line; a missing file ends the input early.
marker=$'\n--8<--\n'
directory_seed() { # directory_seed <dir>
    local dir=$1 out="" file
    local files=(startupstrings.xml strings.xml override/strings.xml string.csv caption.csv
                 tooltipHeader.csv tooltipBody.csv icons.map.xml)
    local last=-1 i
    for i in "${!files[@]}"; do
        [ -f "$dir/${files[$i]}" ] && last=$i
    done
    for ((i = 0; i <= last; i++)); do
        [ "$i" -gt 0 ] && out+=$marker
        [ -f "$dir/${files[$i]}" ] && out+=$(cat "$dir/${files[$i]}"; printf x) && out=${out%x}
    done
    printf '%s' "$out"
}

sources=(examples/resources tests/qanres/data/messy tests/qanres/data/faulty
         tests/qanres/data/refused tests/qanres/data/translate)
for dir in "${sources[@]}"; do
    name=$(echo "$dir" | tr / -)
    for target in string_collection_fuzz lint_fmt_fuzz lint_lookup_fuzz; do
        directory_seed "$dir" | seed "$target" "$name"
    done
    for file in "$dir"/*.xml "$dir"/override/*.xml; do
        [ -f "$file" ] || continue
        case "$file" in
        *icons.map.xml) seed icon_map_fuzz "$name-$(basename "$file")" <"$file" ;;
        *) seed strings_fuzz "$name-$(basename "$file")" <"$file" ;;
        esac
    done
    for file in "$dir"/*.csv; do
        [ -f "$file" ] || continue
        seed key_table_fuzz "$name-$(basename "$file")" <"$file"
        seed strings_fuzz "$name-$(basename "$file")" <"$file"
    done
done

# A small directory whose string file holds ids the start-up file lacks, so that the
# lazy load happens, with an override and each key table.
for target in string_collection_fuzz lint_fmt_fuzz lint_lookup_fuzz; do
    printf '%s' "<?xml version=\"1.0\"?>
<t>
<s id=\"a\">A</s>
</t>$marker<?xml version=\"1.0\"?>
<t>
<s id=\"a\">A</s>
<s id=\"b\">B\\n&amp;&#x41;</s>
</t>$marker<?xml version=\"1.0\"?>
<t>
<s id=\"b\">O</s>
</t>${marker}k,a
l,b
${marker}k,b
${marker}k,a
${marker}k,c
" | seed "$target" small-lazy-load
done

# Key tables the scanner reads in its own way: a line without a comma, a carriage return,
# no final line feed, a byte-order mark.
printf 'a,1\nno comma\nb,2\r\nc,3,4\nd,5' | seed key_table_fuzz odd-lines
printf '\xEF\xBB\xBFa,1\n\n,\n' | seed key_table_fuzz bom-blank

# Hostile icon maps: entity expansion, external entities, deep nesting, bad UTF-8,
# CDATA and entities in a name, nested and attribute-less maps.
seed icon_map_fuzz laughs <<'XML'
<?xml version="1.0"?>
<!DOCTYPE r [<!ENTITY a "aaaaaaaaaa"><!ENTITY b "&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;">
<!ENTITY c "&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;">]>
<r><map guid="x">&c;</map></r>
XML
seed icon_map_fuzz external <<'XML'
<?xml version="1.0"?>
<!DOCTYPE r SYSTEM "http://example.invalid/r.dtd" [<!ENTITY e SYSTEM "/etc/passwd">]>
<r><map guid="x">&e;</map></r>
XML
printf '<r>%.0s' {1..40} | seed icon_map_fuzz deep
printf '<r><map guid="\xC3">a\xFF.ico</map></r>' | seed icon_map_fuzz bad-utf8
printf '<r><map guid="&amp;\xC3\xBC">x<i/>y<![CDATA[<z>]]>\xF0\x9F\x96\xB1&lt;</map></r>' |
    seed icon_map_fuzz cdata-entities
printf '<r><map guid="a">a</map><map guid="b"><map guid="c">c</map>b</map><map id="d">d</map></r>' |
    seed icon_map_fuzz nested

# The cursor table: the first byte 1 gives a whole PE module (the icon test fixture,
# linked without a C runtime to keep it small), 0 the table's bytes alone.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
x86_64-w64-mingw32-windres tests/icons/fixtures/QanIcons.rc -O coff -o "$work/res.o"
x86_64-w64-mingw32-gcc -shared -nostdlib -s -Wl,--entry=0,--no-insert-timestamp,--image-base=0x180000000 -o "$work/QanIcons.dll" "$work/res.o"
{ printf '\x01'; cat "$work/QanIcons.dll"; } | seed pe_cursor_table_fuzz fixture-module
# count 2: "Arrow" id 7, "Hand" id 9 (UTF-16 little endian)
printf '\x00\x02\x00\x00\x00\x05\x00\x00\x00A\0r\0r\0o\0w\0\x07\x00\x00\x00\x04\x00\x00\x00H\0a\0n\0d\0\x09\x00\x00\x00' |
    seed pe_cursor_table_fuzz table
printf '\x00\xff\xff\xff\xff' | seed pe_cursor_table_fuzz negative-count

# Wide texts: two option bytes (menu-strip flags, null mask), then wchar_t units with
# U+0000 between the arguments.
wide() { printf '%s' "$1" | iconv -f UTF-8 -t UTF-32LE; }
{ printf '\x0f\x00'; wide $'\x01CT=&Open...\x01TT=Opens a file\x01TH=Open'; } |
    seed text_fuzz tagged
{ printf '\x03\x00'; wide $'&File\\tCtrl+F (&F)...'; printf '\0\0\0\0'; wide 'TT'; } |
    seed text_fuzz menu
{ printf '\x00\x40'; wide $'a\\/\\/b'; printf '\0\0\0\0'; wide $'\x01NV=2.0'; } |
    seed text_fuzz slashes

# Registrations: any bytes drive them; two seeds that add, register and remove.
printf '\x00\x02\x01\x03\x00\x05\x00\x01\x02\x00\x02\x01\x02\x02\x00\x01' |
    seed legacy_registrar_fuzz add-remove
printf '\x00\x04\x00\x02\x04\x00\x00\x00\x00\x06\x01\x04\x02' | seed legacy_registrar_fuzz workspace

find "$corpus" -type f | wc -l | xargs echo "seeds written:"
