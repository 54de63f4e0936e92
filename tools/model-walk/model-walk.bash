# bash completion for model-walk
_model_walk() {
    local word="${COMP_WORDS[COMP_CWORD]}" before="${COMP_WORDS[COMP_CWORD - 1]}"
    local question="${COMP_WORDS[1]}" options=""
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        COMPREPLY=($(compgen -W "info find contents depends incoming path near impact walk why why-not explain check resolve findings help --help --version" -- "$word"))
        return
    fi
    if [[ $question == help ]]; then
        COMPREPLY=($(compgen -W "info find contents depends incoming path near impact walk why why-not explain check resolve findings help loading answers rules" -- "$word"))
        return
    fi
    case "$before" in
        -m|--metamodel) compopt -o filenames; COMPREPLY=($(compgen -f -- "${word#*=}")); return ;;
        --root) compopt -o filenames; COMPREPLY=($(compgen -f -- "${word#*=}")); return ;;
        --roots) compopt -o filenames; COMPREPLY=($(compgen -f -- "${word#*=}")); return ;;
        --prefix) :; return ;;
        --namespace) :; return ;;
        --load) COMPREPLY=($(compgen -W "reachable given folder" -- "$word")); return ;;
        --model) compopt -o filenames; COMPREPLY=($(compgen -f -- "${word#*=}")); return ;;
        --expect-unresolved) :; return ;;
        --limit) :; return ;;
        --threads) :; return ;;
        -f|--format) COMPREPLY=($(compgen -W "text tree tsv json dot count" -- "$word")); return ;;
        -a|--attributes) :; return ;;
        --color) COMPREPLY=($(compgen -W "auto always never" -- "$word")); return ;;
        --progress) COMPREPLY=($(compgen -W "auto on off" -- "$word")); return ;;
        -k|--kind) COMPREPLY=($(compgen -W "composition additive subtractive" -- "$word")); return ;;
        -t|--traverse) :; return ;;
        -p|--prune) :; return ;;
        --policy) :; return ;;
        -o|--order) COMPREPLY=($(compgen -W "pre post breadth" -- "$word")); return ;;
        --unique) COMPREPLY=($(compgen -W "links elements" -- "$word")); return ;;
        --pseudo-links) COMPREPLY=($(compgen -W "on off" -- "$word")); return ;;
        --up-to) :; return ;;
        --nodes) :; return ;;
        -c|--class) :; return ;;
        -n|--name) :; return ;;
        -w|--where) :; return ;;
        --within) :; return ;;
        --property) :; return ;;
        -s|--steps) :; return ;;
        --from) compopt -o filenames; COMPREPLY=($(compgen -f -- "${word#*=}")); return ;;
        --reason) :; return ;;
    esac
    if [[ $word == -* ]]; then
        case "$question" in
            info) options="-m --metamodel --root --roots --prefix --namespace --load --model --expect-unresolved --skip-cross-file --limit --threads -f --format -a --attributes --findings --color --progress -q --quiet --nodes --clusters --no-merge -h --help" ;;
            find) options="-m --metamodel --root --roots --prefix --namespace --load --model --expect-unresolved --skip-cross-file --limit --threads -f --format -a --attributes --findings --color --progress -q --quiet --nodes --clusters --no-merge -c --class --exactly -n --name -w --where -h --help" ;;
            contents) options="-m --metamodel --root --roots --prefix --namespace --load --model --expect-unresolved --skip-cross-file --limit --threads -f --format -a --attributes --findings --color --progress -q --quiet --nodes --clusters --no-merge -h --help" ;;
            depends) options="-m --metamodel --root --roots --prefix --namespace --load --model --expect-unresolved --skip-cross-file --limit --threads -f --format -a --attributes --findings --color --progress -q --quiet --nodes --clusters --no-merge --within --outside -h --help" ;;
            incoming) options="-m --metamodel --root --roots --prefix --namespace --load --model --expect-unresolved --skip-cross-file --limit --threads -f --format -a --attributes --findings --color --progress -q --quiet --nodes --clusters --no-merge --inside --property -h --help" ;;
            path) options="-m --metamodel --root --roots --prefix --namespace --load --model --expect-unresolved --skip-cross-file --limit --threads -f --format -a --attributes --findings --color --progress -q --quiet --nodes --clusters --no-merge --undirected -h --help" ;;
            near) options="-m --metamodel --root --roots --prefix --namespace --load --model --expect-unresolved --skip-cross-file --limit --threads -f --format -a --attributes --findings --color --progress -q --quiet --nodes --clusters --no-merge --undirected -s --steps -h --help" ;;
            impact) options="-m --metamodel --root --roots --prefix --namespace --load --model --expect-unresolved --skip-cross-file --limit --threads -f --format -a --attributes --findings --color --progress -q --quiet --nodes --clusters --no-merge -h --help" ;;
            walk) options="-m --metamodel --root --roots --prefix --namespace --load --model --expect-unresolved --skip-cross-file --limit --threads -f --format -a --attributes --findings --color --progress -q --quiet -k --kind -t --traverse -p --prune --policy --from -o --order --unique --pseudo-links --up-to --nodes --clusters --no-merge -h --help" ;;
            why) options="-m --metamodel --root --roots --prefix --namespace --load --model --expect-unresolved --skip-cross-file --limit --threads -f --format -a --attributes --findings --color --progress -q --quiet -k --kind -t --traverse -p --prune --policy --from -o --order --unique --pseudo-links --up-to --nodes --clusters --no-merge -h --help" ;;
            why-not) options="-m --metamodel --root --roots --prefix --namespace --load --model --expect-unresolved --skip-cross-file --limit --threads -f --format -a --attributes --findings --color --progress -q --quiet -k --kind -t --traverse -p --prune --policy --from -o --order --unique --pseudo-links --up-to --nodes --clusters --no-merge -h --help" ;;
            explain) options="-m --metamodel --root --roots --prefix --namespace --load --model --expect-unresolved --skip-cross-file --limit --threads -f --format -a --attributes --findings --color --progress -q --quiet -k --kind -t --traverse -p --prune --policy --from -o --order --unique --pseudo-links --up-to --nodes --clusters --no-merge -h --help" ;;
            check) options="-m --metamodel --root --roots --prefix --namespace --load --model --expect-unresolved --skip-cross-file --limit --threads -f --format -a --attributes --findings --color --progress -q --quiet -k --kind -t --traverse -p --prune --policy --from -o --order --unique --pseudo-links --up-to --nodes --clusters --no-merge -h --help" ;;
            resolve) options="-m --metamodel --root --roots --prefix --namespace --load --model --expect-unresolved --skip-cross-file --limit --threads -f --format -a --attributes --findings --color --progress -q --quiet --nodes --clusters --no-merge --from -h --help" ;;
            findings) options="-m --metamodel --root --roots --prefix --namespace --load --model --expect-unresolved --skip-cross-file --limit --threads -f --format -a --attributes --findings --color --progress -q --quiet --nodes --clusters --no-merge --reason -h --help" ;;
        esac
        COMPREPLY=($(compgen -W "$options" -- "$word"))
        return
    fi
    compopt -o filenames
    COMPREPLY=($(compgen -f -- "$word"))
}
complete -F _model_walk model-walk
