#!/bin/sh
# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT

# Starts Quillmark from the folder that this file stands in.
here=$(dirname -- "$(readlink -f -- "$0")")
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
