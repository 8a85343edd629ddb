// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/OpenProgram.h>

#include <KWToolkit/platform/foundation/NSPathUtilities.h>
#include <backends/linux/posix/AtomicFile.h>
#include <backends/linux/posix/FileDescriptor.h>
#include <backends/linux/xdg/BaseFolders.h>

#include <sys/stat.h>
#include <unistd.h>

#include <string_view>

namespace kw {

namespace {

// For any POSIX shell.
constexpr std::string_view script = R"script(#!/bin/sh
# open PATH: starts the application at the path.
[ $# -eq 1 ] || { echo 'Usage: open PATH' >&2; exit 2; }
unset APPIMAGE APPDIR ARGV0 OWD KWTOOLKIT_LOGIN_ITEM
PATH=${PATH#"${0%/*}:"} # the application is to find other programs

item=$1
case $item in
    /*) ;;
    *) item=./$item ;;
esac

# Where every file may be executed, as on many a stick, a text is none the more a program.
start_file() {
    [ -f "$1" ] && [ -r "$1" ] && [ -x "$1" ] || return
    case $(head -c 4 "$1" | tr -d '\0\177') in
        'ELF' | '#!'*) exec "$1" ;;
    esac
}

# start_program NAME: starts it from where the folder may have it.
start_program() {
    for place in "$item" "$item/bin" "$item/usr/bin"; do
        start_file "$place/$1"
    done
}

# start_entry FILE: starts the program that the desktop entry names.
start_entry() {
    [ -f "$1" ] && [ -r "$1" ] || return
    group= program=
    while IFS= read -r line || [ -n "$line" ]; do
        line=${line%"${line##*[![:space:]]}"} # no blanks at the end
        case $line in
            '['*) group=$line ;;
            Exec=* | 'Exec '*=*) [ "$group" = '[Desktop Entry]' ] && program=${line#*=} ;;
        esac
    done <"$1"
    program=${program#"${program%%[! ]*}"}
    case ${program%% *} in
        env | */env) # what it starts counts
            while [ "$program" != "${program#* }" ]; do
                program=${program#* }
                case ${program%% *} in *=*) ;; *) break ;; esac
            done
            ;;
    esac
    case $program in
        '"'*) program=${program#'"'} program=${program%%'"'*} ;;
        *) program=${program%%[ %]*} ;;
    esac
    program=${program##*/}
    [ -n "$program" ] && start_program "$program"
}

name=${item%"${item##*[!/]}"} # no slashes at the end
name=${name##*/}
if [ -d "$item" ] && [ "$name" != "${name%.app}" ]; then
    start_program AppRun
    start_program "${name%.app}"
    for entry in "$item"/*.desktop "$item"/bin/*.desktop "$item"/usr/bin/*.desktop; do
        start_entry "$entry"
    done
elif [ ! -d "$item" ]; then
    start_file "$item"
fi
[ -e "$item" ] || item=$1 # it may be more than a path
exec xdg-open "$item"
)script";

bool isReady(const std::string& path) {
    std::string text;
    return !readFile(path, text) && text == script && ::access(path.c_str(), X_OK) == 0;
}

} // namespace

std::string folderWithOpenProgram(std::error_code& error, const Environment& environment) {
    error.clear();
    const auto cacheHome = baseFolders(environment).cacheHome;
    if (!cacheHome) {
        error = std::make_error_code(std::errc::no_such_file_or_directory);
        return {};
    }
    std::string folder = stringByAppendingPathComponent(*cacheHome, "kwtoolkit/bin");
    const std::string path = folder + "/open";
    if (isReady(path))
        return folder;
    error = createFolders(folder);
    if (!error)
        error = replaceFile(path, script, 0755);
    // The former file's mode has stayed.
    if (!error && ::chmod(path.c_str(), 0755) != 0)
        error = lastError();
    return folder;
}

} // namespace kw
