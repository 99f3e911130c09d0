#!/bin/sh
# demo.sh: a short tour of the qanres tool on the Daubery example resources.
# Usage: scripts/demo.sh [BUILD_DIR]   (default build/default; run from anywhere)
set -eu

here=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-build/default}
case $build in /*) ;; *) build=$here/$build ;; esac
qanres=$build/bin/qanres
if [ ! -x "$qanres" ]; then
    echo "demo: $qanres not found; build the qanres target first" >&2
    exit 1
fi

ex=$here/examples
res=$ex/resources
brush=54b35f3f-c7bc-5c6d-bbd5-6fed7ef6d902
pencil=ff96f8c6-d924-56e7-9ed9-02fb51a99859
icons=$build/examples/icon-library

# Shows a command with the example directories abbreviated, then runs it. A look-up that
# finds nothing exits 1; the demo shows that status and goes on.
run() {
    printf '\n$ qanres'
    for arg in "$@"; do
        printf ' %s' "$(printf '%s' "$arg" | sed "s|$here/||g")"
    done
    printf '\n'
    status=0
    "$qanres" "$@" || status=$?
    [ "$status" -eq 0 ] || echo "(exit $status)"
}

set -- --master-strings "$res" --resources "$res" --icons "$ex/icons" --icon-subdir Toolbar \
    --base "$ex/base"

run "$@" string Daubery.AppTitle
run "$@" string --escape Daubery.UnsavedChanges
run "$@" string Daubery.Greeting
run "$@" caption "$brush"
run "$@" tooltip-header "$brush"
run "$@" tooltip-body --escape 8cd7249b-2f23-56a8-a2af-ca42e9dfb0fd
run "$@" legacy-string --escape "$brush"
run "$@" icon "$pencil"
run "$@" icon-path "guid://$brush"
run "$@" image-path ext://tools/brush.png
run "$@" string Daubery.NoSuchKey
run strip-menu 3 "$(printf '&Save As...\tCtrl+Shift+S')"
if [ -f "$icons/QanIcons.dll" ]; then
    LD_LIBRARY_PATH=$icons${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
    export LD_LIBRARY_PATH
    run cursor Daubery.Cursor.Pencil
    run cursor-table dump "$icons/QanIcons.dll"
else
    echo
    echo "(the example QanIcons.dll was not built: the cursor look-ups are skipped)"
fi

printf '\n$ qanres lint examples/resources\n'
"$qanres" lint "$res"
echo "(clean)"
