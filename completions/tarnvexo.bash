# Completion of tarnvexo for bash: source this file, or install it as
# share/bash-completion/completions/tarnvexo, where bash-completion finds it.

# Files and directories that begin with the current word; directories are gone into.
_tarnvexo_paths()
{
    compopt -o filenames 2>/dev/null # there is nothing to set when a test calls this outside a completion
    mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

_tarnvexo_words()
{
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$2")
}

# Names of rules, as the program itself lists them, each with "=" behind.
_tarnvexo_rules()
{
    compopt -o nospace 2>/dev/null
    _tarnvexo_words "$("${COMP_WORDS[0]}" check --rules 2>/dev/null |
        sed -n 's/^  [a-z][a-z]* *\([a-z][a-z-]*\) .*/\1=/p')" "$1"
}

# A list with commas: the word behind the last one; "none" stands alone.
_tarnvexo_formats()
{
    if [[ $1 == *,* ]]; then
        mapfile -t COMPREPLY < <(compgen -P "${1%,*}," -W "text vtu gltf csv json" -- "${1##*,}")
    else
        _tarnvexo_words "text vtu gltf csv json none" "$1"
    fi
}

_tarnvexo()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
    COMPREPLY=()

    # "--solver=sp" arrives as three words: "--solver" "=" "sp".
    if [[ $current == "=" ]]; then
        current=
    elif [[ $previous == "=" ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    # "--rule warping=no" arrives as four.
    local words=" ${COMP_WORDS[*]:0:COMP_CWORD + 1}"
    if [[ $words =~ \ --rule\ [a-z-]+\ =(\ [a-z]*)?$ ]]; then
        _tarnvexo_words "off note warning error" "$current"
        return
    fi

    if ((COMP_CWORD == 1)); then
        _tarnvexo_words "solve info check refine renumber view picture help --help -h --version" "$current"
        return
    fi
    if [[ $command == help ]]; then
        _tarnvexo_words "solve info check refine renumber view picture" "$current"
        return
    fi
    case $previous in
        --solver) _tarnvexo_words "auto sparse cholmod skyline" "$current"; return ;;
        --factor) _tarnvexo_words "auto memory disk" "$current"; return ;;
        --balance) _tarnvexo_words "exact classic" "$current"; return ;;
        --displacements) _tarnvexo_words "mass-orthogonal held" "$current"; return ;;
        --units) _tarnvexo_words "SI mm-t-s" "$current"; return ;;
        --format) _tarnvexo_formats "$current"; return ;;
        --threads) _tarnvexo_words "1 2 4 8 16" "$current"; return ;;
        --rule) _tarnvexo_rules "$current"; return ;;
        -k) _tarnvexo_words "2 3 4" "$current"; return ;;
        --field)
            _tarnvexo_words "SX SY SZ TXY TXZ TYZ SE S1 S2 S3 U DX DY DZ R RX RY RZ thickness section material side
                none" "$current"
            return
            ;;
        --face) _tarnvexo_words "positive negative larger viewed" "$current"; return ;;
        --view)
            if [[ $command == picture ]]; then
                _tarnvexo_words "iso front back left right top bottom" "$current"
            fi
            return
            ;;
        --deformed) _tarnvexo_words "5% true off" "$current"; return ;;
        --size) _tarnvexo_words "1600x1000 800x500 3200x2000" "$current"; return ;;
        --state) return ;;
        -o | --output | --json | --report | --out | --model) _tarnvexo_paths "$current"; return ;;
    esac
    if [[ $current != -* ]]; then
        _tarnvexo_paths "$current"
        return
    fi
    case $command in
        solve)
            _tarnvexo_words "-o --output --format --balance --displacements --solver --factor --threads --rule --rules --units
                --report --json -q --quiet -h --help" "$current"
            ;;
        check)
            _tarnvexo_words "--rule --rules -v --verbose --units --json -q --quiet -h --help" "$current"
            ;;
        info) _tarnvexo_words "--rule --rules --units --json -q --quiet -h --help" "$current" ;;
        refine) _tarnvexo_words "-k -o --output --no-renumber -h --help" "$current" ;;
        view) _tarnvexo_words "--model --out --no-open --view -q --quiet -h --help" "$current" ;;
        picture)
            _tarnvexo_words "--model --out --field --face --view --deformed --size --dark --state -q --quiet
                -h --help" "$current"
            ;;
        renumber) _tarnvexo_words "-o --output -h --help" "$current" ;;
    esac
}

complete -F _tarnvexo tarnvexo
