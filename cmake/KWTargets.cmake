# SPDX-FileCopyrightText: 2026 The KWToolkit authors
# SPDX-License-Identifier: MIT
#
# How every target of the project is compiled.

# kw_compile_options(<target>): the language, the warnings and the sanitizers.
function(kw_compile_options target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    # What is rounded to single precision on the way is behaviour, also where products and sums could
    # be one instruction.
    target_compile_options(${target} PRIVATE -ffp-contract=off)
    # Designated initializers name what they set and leave the rest to its default on purpose.
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
        -Woverloaded-virtual -Wno-missing-field-initializers $<$<BOOL:${KW_WERROR}>:-Werror>
        # g++ 12 sees overlapping copies in the assignment of any string literal (GCC bug 105329).
        $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-restrict>)
    if(KW_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${KW_SANITIZE} -fno-omit-frame-pointer
            -fno-sanitize-recover=all)
        target_link_options(${target} PRIVATE -fsanitize=${KW_SANITIZE})
    endif()
endfunction()

# kw_library(<target>): a shared library with a versioned name.
function(kw_library target)
    add_library(${target} SHARED)
    kw_compile_options(${target})
    set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
    if(NOT KW_SANITIZE) # whose runtime may be in the program alone
        target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
endfunction()
