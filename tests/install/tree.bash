# tree.bash FUNCTION: a check of the installed tree; CMakeLists.txt says in the environment where everything is.
set -euo pipefail

moved=$SCRATCH/moved
recording=$SOURCE/examples/recordings/feeder_earth_fault.cfg

fail() {
    echo "$*" >&2
    exit 1
}
same() { # same WHAT EXPECTED FOUND
    diff -u --label expected --label found <(printf '%s\n' "$2") <(printf '%s\n' "$3") || fail "$1: not as expected"
}
files_of() {
    [ -d "$1" ] || return 0
    (cd "$1" && find . ! -type d | sed 's|^\./||' | LC_ALL=C sort)
}

stage_and_move() {
    rm -rf "$SCRATCH"
    "$CMAKE" --install "$BUILD" --prefix "$SCRATCH/staged" >/dev/null
    mv "$SCRATCH/staged" "$moved"
}

holds_what_it_should() {
    local file
    for file in bin/orvcomtrade share/man/man1/orvcomtrade.1 share/bash-completion/completions/orvcomtrade \
        "$ZSHDIR/_orvcomtrade" share/fish/vendor_completions.d/orvcomtrade.fish "$LIBDIR/libOrvComtradeLib.so.1" \
        "$LIBDIR/libOrvCommon.so.1" "$LIBDIR/pkgconfig/OrvComtradeLib.pc" include/OrvComtradeLib/Comtrade.h \
        "$DOCDIR"/{README.md,CHANGELOG.md,docs/format.md,docs/deliberate.md,examples/quick_start.cpp} \
        "$DOCDIR"/examples/recordings/feeder_earth_fault.{cfg,dat}; do
        [ -s "$moved/$file" ] || fail "not installed, or empty: $file"
    done
    grep -q "^\.TH ORVCOMTRADE 1 .*\"orvcomtrade $VERSION\"" "$moved/share/man/man1/orvcomtrade.1" ||
        fail "the manual page does not name version $VERSION"
}

links_hold() {
    local document link count=0
    while read -r document; do
        while read -r link; do
            count=$((count + 1))
            [ -e "$(dirname "$document")/$link" ] || fail "$document: there is no $link"
        done < <(sed '/^```/,/^```/d' "$document" | grep -oE '\]\([^)# ]+' | sed 's/^](//' | grep -v '://')
    done < <(find "$moved/$DOCDIR" -name '*.md')
    [ "$count" -gt 0 ] || fail "no link found"
}

moved_program_runs() {
    local program=$moved/bin/orvcomtrade
    cd /
    same "version" "orvcomtrade $VERSION" "$("$program" --version)"
    same "first line of info" "Station         Ozernaya 35/10 kV" "$("$program" info "$recording" | head -n 1)"
    same "info" "$("$BUILD/bin/orvcomtrade" info "$recording")" "$("$program" info "$recording")"
    same "library of the program" "$moved/$LIBDIR/libOrvComtradeLib.so.$VERSION" \
        "$(readlink -f "$(ldd "$program" | sed -n 's/.*libOrvComtradeLib.* => \(.*\) (.*/\1/p')")"
}

names_no_build_folder() {
    local options=-rlF found
    [ "$CHECKED_FILES" = all ] && options=-rlaF || options=-rlIF
    found=$(grep "$options" -e "$SOURCE/" -e "$BUILD/" "$moved" || true)
    same "files that name a folder of the build machine" "" "$found"
}

components_make_the_whole() {
    local component all=
    for component in Runtime Development Program; do
        "$CMAKE" --install "$BUILD" --prefix "$SCRATCH/$component" --component "$component" >/dev/null
        all+=$(files_of "$SCRATCH/$component")$'\n'
    done
    same "all components together" "$(files_of "$moved")" "$(printf '%s' "$all" | LC_ALL=C sort)"
    same "component Runtime" "$LIBDIR/libOrvCommon.so.1
$LIBDIR/libOrvCommon.so.$VERSION
$LIBDIR/libOrvComtradeLib.so.1
$LIBDIR/libOrvComtradeLib.so.$VERSION" "$(files_of "$SCRATCH/Runtime")"
    same "component Program" "$(printf '%s\n' bin/orvcomtrade share/bash-completion/completions/orvcomtrade \
        share/fish/vendor_completions.d/orvcomtrade.fish share/man/man1/orvcomtrade.1 "$ZSHDIR/_orvcomtrade" |
        LC_ALL=C sort)" "$(files_of "$SCRATCH/Program")"
}

# Configuring is enough: the component holds no file that could be missing.
program_not_built() {
    local build=$SCRATCH/without-program
    "$CMAKE" -S "$SOURCE" -B "$build/top" -G "$GENERATOR" -DCMAKE_CXX_COMPILER="$CXX" -DBUILD_TESTING=OFF >/dev/null
    "$CMAKE" -S "$SOURCE/tests/consumer" -B "$build/sub" -G "$GENERATOR" -DCMAKE_CXX_COMPILER="$CXX" \
        -DORVCOMTRADE_SOURCE_DIR="$SOURCE" -DORVCOMTRADE_INSTALL=ON >/dev/null
    local kind
    for kind in top sub; do
        "$CMAKE" --install "$build/$kind" --prefix "$build/tree-$kind" --component Program >/dev/null
        same "component Program, $kind" "" "$(files_of "$build/tree-$kind")"
    done
    ! grep -rq orvcomtrade.1 "$build/top/cmake_install.cmake" "$build/sub/cmake_install.cmake" ||
        fail "the manual page is installed in some component"
}

"$1"
