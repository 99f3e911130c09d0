# bash completion for qanres: commands, options, and directories or files where they go.
_qanres() {
    local cur prev words cword
    _init_completion || return

    local commands="string caption tooltip-header tooltip-body icon cursor icon-path
        image-path legacy-guid legacy-string strip-menu report lint fmt stats compare cursor-table
        export import pseudo"
    local options="--master-strings --resources --icons --base --icon-subdir --app --escape
        --help --version"

    case $prev in
    --master-strings | --resources | --icons | --base)
        _filedir -d
        return
        ;;
    --icon-subdir | --app | --source-lang | --target-lang | --expand)
        return
        ;;
    --format)
        local formats="po xliff"
        [[ " ${words[*]} " == *" report "* ]] && formats="text json"
        COMPREPLY=($(compgen -W "$formats" -- "$cur"))
        return
        ;;
    -o | --output)
        _filedir
        return
        ;;
    esac

    # The command is the first word that is neither an option nor an option's value.
    local i command=""
    for ((i = 1; i < cword; i++)); do
        case ${words[i]} in
        --master-strings | --resources | --icons | --base | --icon-subdir | --app) ((i++)) ;;
        -*) ;;
        *)
            command=${words[i]}
            break
            ;;
        esac
    done

    case $command in
    "")
        COMPREPLY=($(compgen -W "$commands $options" -- "$cur"))
        ;;
    lint)
        if [[ $prev == --format ]]; then
            COMPREPLY=($(compgen -W "text json" -- "$cur"))
        elif [[ $cur == -* ]]; then
            COMPREPLY=($(compgen -W "--werror --format" -- "$cur"))
        else
            _filedir -d
        fi
        ;;
    report)
        COMPREPLY=($(compgen -W "--format" -- "$cur"))
        ;;
    stats | compare)
        if [[ $prev == --format ]]; then
            COMPREPLY=($(compgen -W "text json" -- "$cur"))
        elif [[ $cur == -* ]]; then
            COMPREPLY=($(compgen -W "--format" -- "$cur"))
        else
            _filedir -d
        fi
        ;;
    fmt)
        if [[ $cur == -* ]]; then
            COMPREPLY=($(compgen -W "--check" -- "$cur"))
        else
            _filedir -d
        fi
        ;;
    export | pseudo)
        if [[ $cur == -* ]]; then
            local more="--force"
            [[ $command == export ]] && more+=" --format -o --output --source-lang --target-lang"
            [[ $command == pseudo ]] && more+=" --expand"
            COMPREPLY=($(compgen -W "$more" -- "$cur"))
        else
            _filedir -d
        fi
        ;;
    import)
        if [[ $cur == -* ]]; then
            COMPREPLY=($(compgen -W "--format --force --keep-fuzzy --skip-untranslated" -- "$cur"))
        else
            _filedir
        fi
        ;;
    cursor-table)
        if [[ $prev == cursor-table ]]; then
            COMPREPLY=($(compgen -W "write dump" -- "$cur"))
        elif [[ $cur == -* ]]; then
            COMPREPLY=($(compgen -W "--force" -- "$cur"))
        else
            _filedir
        fi
        ;;
    *)
        COMPREPLY=($(compgen -W "$options" -- "$cur"))
        ;;
    esac
}
complete -F _qanres qanres
