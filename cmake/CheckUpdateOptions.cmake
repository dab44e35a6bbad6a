# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT

# Ends the configuration unless the options of a build that looks for updates
# are ones that the program takes: with others it would quietly look for nothing.

string(LENGTH "${QUILLMARK_UPDATE_KEY}" key_length)
if(NOT key_length EQUAL 44 OR NOT QUILLMARK_UPDATE_KEY MATCHES "^[A-Za-z0-9+/]+=$")
    message(FATAL_ERROR "QUILLMARK_UPDATE_KEY is not the base64 of 32 bytes")
endif()

# They are written into JSON as they are.
if(QUILLMARK_UPDATE_FEED MATCHES "[\"\\ \t\r\n;]")
    message(FATAL_ERROR "QUILLMARK_UPDATE_FEED has characters that no address has")
endif()
set(loopback "(localhost|127\\.[0-9]+\\.[0-9]+\\.[0-9]+|\\[::1\\])")
if(NOT QUILLMARK_UPDATE_FEED MATCHES "^https://[^/@]+/[^@]*$"
   AND NOT QUILLMARK_UPDATE_FEED MATCHES "^http://${loopback}(:[0-9]+)?/")
    message(FATAL_ERROR "QUILLMARK_UPDATE_FEED is not an HTTPS address, nor HTTP on this machine")
endif()

if(NOT QUILLMARK_UPDATE_INTERVAL MATCHES "^(0|[1-9][0-9]*)$")
    message(FATAL_ERROR "QUILLMARK_UPDATE_INTERVAL is not a number of seconds")
endif()
