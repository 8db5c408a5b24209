# Completion of tarnwell-cli for bash. What there is to complete it reads in the program's help.

# The kernel's I2C buses by node and by name, as they are typed.
_tarnwell_cli_buses() {
    local bus
    for bus in "${TARNWELL_SYS:-/sys}"/bus/i2c/devices/i2c-*/name; do
        [[ -r $bus ]] && printf '%q\n' "/dev/$(basename "${bus%/name}")" "$(<"$bus")"
    done
}

# Sets options, those with a value with a sign behind them, and commands, both between blanks, and
# for the option whose value is completed its form and what is said of it.
_tarnwell_cli_read_help() {
    local line
    while IFS= read -r line; do
        if [[ $line =~ ^\ \ (-.,)?(--[a-z-]+)(\ ([^ ]+))?(\ \ +(.*))?$ ]]; then
            options+="${BASH_REMATCH[2]}${BASH_REMATCH[4]:+=} "
            [[ ${BASH_REMATCH[2]} == "$1" ]] && form=${BASH_REMATCH[4]} text=${BASH_REMATCH[6]}
        elif [[ $line =~ ^\ \ ([a-z][a-z-]*)\ \ + ]]; then
            commands+="${BASH_REMATCH[1]} "
        fi
    done < <("${COMP_WORDS[0]}" --help 2>/dev/null)
}

_tarnwell_cli() {
    local options=' ' commands=' ' form='' text='' command='' files='' words='' word option='' given=()
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    [[ $current == '=' ]] && current=
    [[ $previous == '=' ]] && previous=${COMP_WORDS[COMP_CWORD - 2]}
    # The shell ends a word before and behind each colon.
    if [[ $previous == i2c && $current == : ]] || [[ ${COMP_WORDS[COMP_CWORD - 2]} == i2c && $previous == : ]]; then
        [[ $current == : ]] && current=
        mapfile -t COMPREPLY < <(_tarnwell_cli_buses | while read -r word; do
            [[ $word == "$current"* ]] && printf '%s\n' "$word"
        done)
        return
    fi
    _tarnwell_cli_read_help "$previous"
    for word in "${COMP_WORDS[@]:1:COMP_CWORD - 1}"; do
        [[ $option == --names || $option == --set ]] && [[ $word != '=' ]] && given+=("$option=$word")
        [[ $word == '=' ]] || option=$word
        [[ -z $command && $commands == *" $word "* ]] && command=$word
    done
    case $form in
        FILE*) files=yes ;;
        *'|'*) words=${form//|/ } ;;
        KIND) # "auto, ppdev or i2c:BUS"
            words=${text//,/}
            words=${words/ or / }
            words=${words/BUS/}
            [[ -n $current && i2c: == "$current"* ]] && compopt -o nospace
            ;;
        '')
            if [[ $current == -* ]]; then
                words=$options
                compopt -o nospace
            elif [[ -z $command ]]; then
                words=$commands
            else
                text=$("${COMP_WORDS[0]}" "${given[@]}" "$command" --help 2>/dev/null)
                [[ $text == *FILE* ]] && files=yes
                [[ $text == *Names:* ]] && words=${text#*Names:} words=${words%%$'\n\n'*}
                [[ $text == *=VALUE* ]] && compopt -o nospace
            fi
            ;;
    esac
    [[ -n $files ]] && compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current"; [[ -z $files ]] || compgen -f -- "$current")
}
complete -F _tarnwell_cli tarnwell-cli
