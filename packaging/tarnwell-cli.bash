# Completion of tarnwell-cli for bash.

# The kernel's I2C buses by node and by name, as they are typed.
_tarnwell_cli_buses() {
    local bus
    for bus in "${TARNWELL_SYS:-/sys}"/bus/i2c/devices/i2c-*/name; do
        [[ -r $bus ]] && printf '%q\n' "/dev/$(basename "${bus%/name}")" "$(<"$bus")"
    done
}

_tarnwell_cli() {
    local commands='check read write verify info get set peek poke compare backups restore'
    local options='--device= --port= --address= --pins= --wait= --trace= --real-time --no-television
        --image= --output= --raw --force --differences --passes= --yes --trust-device --dry-run --json --quiet --progress= --help --version'
    local by_format='R-YR R-YB G-YR G-YB CR02 CB02 SHRP SSH1 SHF1 PROV LT1 DCOL CTIL DPIC DTC'
    local settings='TINT SHPM OT1 IT2 CN0 CN1 CN2 BR0 BR1 BR2 CLP CLP.480i CLP.1080i'
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local word words='' command=''
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
    for word in "${COMP_WORDS[@]:1:COMP_CWORD - 1}"; do
        [[ -z $command && " $commands " == *" $word "* ]] && command=$word
    done
    COMPREPLY=()
    case $previous in
        --device) words='primary secondary' ;;
        --port)
            words='auto ppdev devport simulated i2c:'
            [[ -n $current && i2c: == "$current"* ]] && compopt -o nospace
            ;;
        --address) words='378 278 3BC' ;;
        --progress) words='auto always never' ;;
        --pins | --wait | --passes) return ;;
        --trace | --image | --output)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
            ;;
    esac
    if [[ -z $words && $current == -* ]]; then
        words=$options
        compopt -o nospace
    elif [[ -z $words && -z $command ]]; then
        words=$commands
    elif [[ -z $words ]]; then
        case $command in
            read | write | verify | info | compare | restore)
                compopt -o filenames
                mapfile -t COMPREPLY < <(compgen -f -- "$current")
                return
                ;;
            get | set)
                [[ $command == get ]] || compopt -o nospace
                words=$settings
                for word in $by_format; do
                    words+=" $word $word.480i $word.480p $word.1080i $word.VGA"
                done
                ;;
        esac
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -F _tarnwell_cli tarnwell-cli
