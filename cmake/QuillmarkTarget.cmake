# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT

# quillmark_target(<target>): the language level, warnings, sanitizers and Qt
# strictness that every target of this project is built with.
function(quillmark_target target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES
        AUTOMOC ON
        CXX_EXTENSIONS "${QUILLMARK_GNU_CXX}"
        POSITION_INDEPENDENT_CODE ON)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion
        $<$<BOOL:${QUILLMARK_WERROR}>:-Werror>)
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII
        QT_NO_CAST_TO_ASCII
        QT_NO_FOREACH
        QT_NO_KEYWORDS
        QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
        QT_NO_URL_CAST_FROM_STRING)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 15)
        # It compiles coroutines but does not yet announce them.
        target_compile_definitions(${target} PUBLIC __cpp_impl_coroutine=201902L)
    endif()
    if(QUILLMARK_SANITIZERS)
        set(exceptions "")
        if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
            set(exceptions -fno-sanitize-recover=all)
        endif()
        target_compile_options(${target} PUBLIC
            -fsanitize=${QUILLMARK_SANITIZERS} ${exceptions} -fno-omit-frame-pointer)
        if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
            # Before version 17 it cannot check calls through pointers to coroutines.
            target_compile_options(${target} PUBLIC -fno-sanitize=function)
        endif()
        target_link_options(${target} PUBLIC -fsanitize=${QUILLMARK_SANITIZERS})
    endif()
endfunction()
