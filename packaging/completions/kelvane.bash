# bash completion for kelvane
_kelvane() {
    local cur prev words cword
    _init_completion 2>/dev/null || {
        cur=${COMP_WORDS[COMP_CWORD]}
        prev=${COMP_WORDS[COMP_CWORD-1]}
        words=("${COMP_WORDS[@]}")
        cword=$COMP_CWORD
    }
    local command="" i
    for ((i = 1; i < cword; i++)); do
        case ${words[i]} in
        scan | inspect | checks | explain) command=${words[i]}; break ;;
        esac
    done

    case $prev in
    --format)
        case $command in
        scan) COMPREPLY=($(compgen -W "text json sarif junit github xcode" -- "$cur")) ;;
        *) COMPREPLY=($(compgen -W "text json" -- "$cur")) ;;
        esac
        return ;;
    --fail-on) COMPREPLY=($(compgen -W "error warning never" -- "$cur")); return ;;
    --color) COMPREPLY=($(compgen -W "auto always never" -- "$cur")); return ;;
    --output) COMPREPLY=($(compgen -f -- "$cur")); return ;;
    --configuration) COMPREPLY=($(compgen -W "Debug Release" -- "$cur")); return ;;
    esac

    case $command in
    "")
        COMPREPLY=($(compgen -W "scan inspect checks explain --help --version" -- "$cur")) ;;
    scan)
        if [[ $cur == -* ]]; then
            COMPREPLY=($(compgen -W "--format --fail-on --output --color --no-pace --as-built
                --configuration --all --skip --only --baseline --write-baseline --help" -- "$cur"))
        else
            compopt -o filenames 2>/dev/null
            COMPREPLY=($(compgen -d -- "$cur"))
        fi ;;
    inspect)
        if [[ $cur == -* ]]; then
            COMPREPLY=($(compgen -W "--format --as-built --configuration --help" -- "$cur"))
        else
            compopt -o filenames 2>/dev/null
            COMPREPLY=($(compgen -d -- "$cur"))
        fi ;;
    checks) COMPREPLY=($(compgen -W "--format --help" -- "$cur")) ;;
    explain)
        COMPREPLY=($(compgen -W "$(kelvane checks 2>/dev/null | cut -d' ' -f1) --help" -- "$cur")) ;;
    esac
}
complete -F _kelvane kelvane
