#!/bin/sh
# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT

# Starts Quillmark from the folder that this file stands in.
here=$(dirname -- "$(readlink -f -- "$0")")

# Qt would not find itself: it reads paths as text, and only as UTF-8.
if command -v iconv >/dev/null && ! printf %s "$here" | iconv -f UTF-8 -t UTF-8 >/dev/null 2>&1
then
    printf '%s %s: %s\n' "Quillmark cannot start in a folder whose path is not valid UTF-8;" \
        "rename it, or move this folder elsewhere" "$here" >&2
    exit 1
fi

# Plugins and modules of another Qt do not fit the one in here.
unset QT_PLUGIN_PATH QT_QPA_PLATFORM_PLUGIN_PATH QML_IMPORT_PATH QML2_IMPORT_PATH

if [ ! -e /etc/fonts/fonts.conf ]; then
    export FONTCONFIG_FILE="$here/etc/fonts/fonts.conf"
fi
if [ ! -e /usr/share/X11/xkb ]; then
    export XKB_CONFIG_ROOT="$here/etc/xkb"
    export QT_XKB_CONFIG_ROOT="$here/etc/xkb"
fi
if [ ! -e /usr/share/X11/locale ]; then
    export XLOCALEDIR="$here/etc/locale"
fi
exec "$here/bin/quillmark" "$@"
