#!/usr/bin/env bash
# Checks that the completions of all three shells offer exactly what the program has:
# completions.sh PROGRAM FOLDER
set -euo pipefail
program=$1 folder=$2
failed=0

differ() { # differ WHAT EXPECTED FOUND
    if ! diff <(echo "$2") <(echo "$3") >/dev/null; then
        echo "$1: left: the program; right: the completion" >&2
        diff <(echo "$2") <(echo "$3") >&2 || true
        failed=1
    fi
}
sorted() { tr ' ' '\n' | grep -v '^$' | LC_ALL=C sort -u; }

words_of_help() { # the options at the start of a help text's lines
    sed -nE '/^Options:/,/^$/p' | grep -oE '^ +(-h,)?--[a-z-]+(,--[a-z-]+)*' | tr ',' ' ' | sorted
}
commands=$("$program" --help | sed -nE '/^Subcommands:/,/^$/s/^  ([a-z]+) .*/\1/p' | sorted)
global=$("$program" --help | words_of_help)
options_of() { # of a command, including the common ones
    { echo "$global" | grep -v -- --version; "$program" "$1" --help | words_of_help; } | sorted
}

bash_offers() { # what bash completes after the words
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    COMPREPLY=()
    _doccam
    printf '%s\n' "${COMPREPLY[@]}" | sorted
}
compopt() { :; } # no completion is running
source "$folder/doccam.bash"
differ 'bash, commands' "$commands" "$(bash_offers doccam '')"
differ 'bash, global options' "$global" "$(bash_offers doccam -)"
for command in $commands; do
    differ "bash, $command" "$(options_of "$command")" "$(bash_offers doccam --json "$command" -)"
done
# What follows a global option, whose value may be a word of its own.
for words in --virtual '--virtual = a.jpg' '--config a.toml' '--profile = letters' '--camera 1'; do
    # shellcheck disable=SC2086
    differ "bash, $words" "$commands" "$(bash_offers doccam $words '')"
    # shellcheck disable=SC2086
    differ "bash, scan after $words" "$(options_of scan)" "$(bash_offers doccam $words scan -)"
done
differ 'bash, a choice' 'gray grey' "$(bash_offers doccam --virtual scan --colour gr | tr '\n' ' ' | sed 's/ $//')"

if command -v fish >/dev/null; then
    fish_offers() {
        HOME=$(mktemp -d) fish --no-config -c "source $folder/doccam.fish; complete -C '$1'" | cut -f1 | sorted
    }
    differ 'fish, commands' "$commands" "$(fish_offers 'doccam ')"
    differ 'fish, global options' "$global" "$({ fish_offers 'doccam --'; echo -h; } | sorted)"
    for command in $commands; do
        differ "fish, $command" "$(options_of "$command")" \
            "$({ fish_offers "doccam $command --"; echo -h; } | sorted)"
    done
    differ 'fish, commands after --virtual' "$commands" "$(fish_offers 'doccam --virtual ')"
    differ 'fish, scan after --virtual' "$(options_of scan)" \
        "$({ fish_offers 'doccam --virtual scan --'; echo -h; } | sorted)"
fi

# The data of zsh's completion, without running it: each array and each command's line.
zsh_array() { sed -n "/local -a $1=(/,/^    )/p" "$folder/_doccam"; }
zsh_words() { grep -oE "(-h,)?--[a-z-]+(,--[a-z-]+)*[]=}'\[]" | tr -d "]='}[" | tr ',' ' ' | sorted; }
differ 'zsh, commands' "$commands" "$(zsh_array commands | sed -nE "s/^ *'([a-z]+):.*/\1/p" | sorted)"
differ 'zsh, global options' "$(echo "$global" | grep -v -- --version)" "$(zsh_array everywhere | zsh_words)"
for command in $commands; do
    line=$(awk -v label="^        ([a-z]+ [|] )?$command( [|] [a-z]+)?[)]" \
        '$0 ~ label { on = 1 } on { print } /;;/ { on = 0 }' "$folder/_doccam")
    offered=$({
        zsh_array everywhere
        for part in still page document; do
            [[ $line == *\$$part* ]] && zsh_array "$part"
        done
        [[ $line == *\$force* ]] && echo "'--force[x]'"
        echo "$line"
    } | zsh_words)
    differ "zsh, $command" "$(options_of "$command")" "$offered"
done
if command -v zsh >/dev/null; then
    zsh -n "$folder/_doccam" || failed=1
fi
exit $failed
