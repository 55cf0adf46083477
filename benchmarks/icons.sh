# The images that benchmarks publish: the PNGs of Debian's oxygen-icon-theme package. To be sourced after scripts/common.sh.

icons="$root/.cache/oxygen/icons"

# fetch_icons: fetches them with apt into .cache/ once.
fetch_icons() {
    [ -d "$icons" ] && return
    local cache="$root/.cache/oxygen" file
    mkdir -p "$cache"
    (cd "$cache" && apt-get download -qq oxygen-icon-theme && dpkg-deb -x oxygen-icon-theme_*.deb unpacked)
    # Links are the theme's own duplicates; files alone, under names that can't clash.
    mkdir -p "$icons"
    (cd "$cache/unpacked/usr/share/icons/oxygen" && find . -name '*.png' -type f | sort | while read -r file; do
        cp "$file" "$icons/$(tr / _ <<<"${file#./}")"
    done)
    rm -rf "$cache/unpacked"
}

# take_icons COUNT FOLDER: so many, evenly from the whole set, so that all sizes are there.
take_icons() {
    local total file
    mkdir -p "$2"
    total=$(ls "$icons" | wc -l)
    ls "$icons" | awk -v n="$1" -v t="$total" 'int(NR*n/t) != int((NR-1)*n/t)' |
        while read -r file; do ln "$icons/$file" "$2/$file" 2>/dev/null || cp "$icons/$file" "$2/"; done
}
