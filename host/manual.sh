#!/bin/sh
# Writes the manual page of a program, compressed: what its --help and that of each of its commands say, set out as a
# page. Usage: manual.sh PROGRAM OUTPUT.gz
set -eu
program=$1
output=$2

# Help as text, made into paragraphs for `man`. An item is "  NAMES VALUE   what it means", the meaning on the next line
# where the names are long.
set_out() {
    awk '
        function quote(text) {
            gsub(/\\/, "\\e", text)
            gsub(/-/, "\\-", text)
            return text
        }
        function names(item,    value) {
            sub(/ REQUIRED/, " (required)", item)
            if (match(item, / Needs: .*/)) item = substr(item, 1, RSTART) "(needs" substr(item, RSTART + 7) ")"
            sub(/:NONNEGATIVE/, "", item)
            sub(/[A-Z]+:/, "", item)
            if (match(item, /=[0-9]+/)) {
                item = substr(item, 1, RSTART - 1) " (default " substr(item, RSTART + 1, RLENGTH - 1) ")" \
                    substr(item, RSTART + RLENGTH)
            }
            if (!match(item, / /)) return "\\fB" quote(item) "\\fR"
            value = substr(item, RSTART)
            item = substr(item, 1, RSTART - 1)
            if (item !~ /^-/) sub(/^ TEXT/, "", value)
            gsub(/,/, ", ", item)
            return "\\fB" quote(item) "\\fR" quote(value)
        }
        /^ *-h,--help / || /^[A-Z][a-z]+:$/ || /^Usage:/ { next }
        /^  [^ ]/ {
            item = substr($0, 3)
            meaning = ""
            if (match(item, /   */)) {
                meaning = substr(item, RSTART + RLENGTH)
                item = substr(item, 1, RSTART - 1)
            }
            print ".TP\n" names(item)
            if (meaning != "") print "\\&" quote(meaning)
            next
        }
        /^   / { sub(/^ */, ""); print "\\&" quote($0); next }
        NF { print ".PP\n\\&" quote($0) }'
}

usage() { sed -n 's/^Usage: //p' | sed 's/-/\\-/g'; }

page() {
    commands=$("$program" --help | awk '/^Subcommands:/ { listed = 1; next } listed && NF { print $1 }')
    echo ".TH ORVANE 1 \"\" \"orvane $("$program" --version)\" \"User Commands\""
    echo .SH NAME
    echo "orvane \\- $("$program" --help | head -n 1 | sed 's/-/\\-/g')"
    echo .SH SYNOPSIS
    echo .nf
    for command in $commands; do "$program" "$command" --help | usage; done
    echo .fi
    echo .SH COMMANDS
    for command in $commands; do
        echo ".SS $command"
        "$program" "$command" --help | set_out
    done
    echo .SH OPTIONS
    printf '.TP\n\\fB\\-h, \\-\\-help\\fR\nPrint what the program or, after its name, a command does and takes, and exit\n'
    "$program" --help | sed '/^Subcommands:/,$d; 1d' | set_out
    cat <<'STATUS'
.SH EXIT STATUS
0 on success, 1 when a file was refused, 2 when the command line was wrong.
STATUS
}

page >"$output.page"
gzip -9nc "$output.page" >"$output"
rm "$output.page"
