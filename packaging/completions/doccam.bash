# Completion of doccam for bash.
_doccam() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command='' i
    # bash treats an equals sign as a separate word. --virtual and --crop take a value only after one.
    if [ "$before" = = ]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}=
    fi
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        --camera | --config | --profile | =) [ "${COMP_WORDS[i + 1]}" = = ] || ((++i)) ;;
        -*) ;;
        *)
            command=${COMP_WORDS[i]}
            break
            ;;
        esac
    done

    local commands='list sizes calibrate capture scan spool read controls focus pdf clean serve doctor'
    local global='--verbose --json --quiet --camera --virtual --no-confinement --config --no-config --profile --help -h'
    local document='--ocr --upright --compact --title --author --language --date'
    local options='' choices=''
    case $command in
    '') options='--version' ;;
    calibrate) options='--size --format --list --forget' choices='a3 a4 a5 letter legal id1' ;;
    capture) options='--dpi --paper --count --delay --type --size --format --crop --look --rotate --colour --color --clean-edges --clean-background --quality --force' ;;
    scan) options="--dpi --paper $document --auto --pages --crop --whole-frame --look --resume --no-spool --size --format --rotate --colour --color --clean-edges --clean-background --quality --force" ;;
    spool) options="--as --force --all $document" choices='list show resume clear' ;;
    read) options='--kind --wait --watch --size --format' ;;
    controls) options='--reset' choices='brightness contrast saturation hue gain gamma' ;;
    focus) options='--switch' ;;
    pdf) options="--dpi --paper $document --append --skip-bad --force" ;;
    clean) options='--dpi --paper --crop --each --look --colour --color --edges --background --bright-sheet --into --force --in-place --quality' ;;
    serve) options='--listen --port --no-spool --size --format' ;;
    doctor) options='--add' ;;
    esac

    compopt -o default
    case ${before%=} in
    --format) choices='mjpeg yuyv' ;;
    --colour | --color) choices='colour grey gray bw' ;;
    --look) choices='photo paper' ;;
    --paper) choices='a3 a4 a5 letter legal id1' ;;
    --rotate) choices='0 90 180 270' ;;
    --type) choices='jpg png tif bmp pdf' ;;
    --kind)
        choices='qr bar matrix any ean-13 ean-8 upc-a upc-e databar databar-expanded code-128 code-93 code-39 codabar itf qr-code micro-qr-code data-matrix aztec pdf417 maxicode'
        # The last of several.
        if [[ $word == *,* ]]; then
            mapfile -t COMPREPLY < <(compgen -P "${word%,*}," -W "$choices" -- "${word##*,}")
            return
        fi
        ;;
    --size) choices='640x480 1280x960 1600x1200 2048x1536 3264x2448' ;;
    --camera) choices="0 1 2 3 4 5 6 7 8 $(compgen -f -- /dev/video)" ;;
    --config | --into | --as) return ;;
    --author | --date | --dpi | --forget | --language | --ocr | --title | --quality | --pages | --count | --delay | --wait | --listen | --port | --profile)
        compopt +o default
        return
        ;;
    *) [ -n "$command" ] || choices=$commands ;;
    esac
    case $before in
    --virtual=) return ;;
    --crop=) choices='sheet rectangle' ;;
    esac
    [[ $word == -* ]] && choices="$options $global"
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$word")
}
complete -F _doccam doccam
