# For scripts to source: a Wine of its own with the fonts of the recordings alone, whatever else is
# installed, and none of the user's settings. $work is a folder that goes with it.
work=$(mktemp -d)
export WINEPREFIX=$work/prefix
finish() {
    # Ends the Wine of this prefix and no other.
    wineserver -k -w 2>/dev/null || true
    rm -rf "$work"
}
trap finish EXIT

fonts=/usr/share/fonts/truetype
mkdir "$work/home"
cat >"$work/fonts.conf" <<END
<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
  <dir>$fonts/liberation</dir>
  <dir>$fonts/dejavu</dir>
  <cachedir>$work/cache</cachedir>
</fontconfig>
END
export HOME=$work/home FONTCONFIG_FILE=$work/fonts.conf LC_ALL=C.UTF-8
export WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
unset DISPLAY WAYLAND_DISPLAY

wine wineboot --init >"$work/boot.log" 2>&1 || {
    cat "$work/boot.log" >&2
    exit 2
}
wine --version
