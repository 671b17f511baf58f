# Completion of tvk-map for bash.

_tvk_map_modules() {
  local folder file program
  local -a folders
  IFS=: read -r -a folders <<<"${TVK_MAP_MODULE_PATH-}"
  program=$(command -v -- "${COMP_WORDS[0]}") && program=$(readlink -f -- "$program") &&
    folders+=("${program%/*}"/../lib/tvk-map "${program%/*}"/../lib/*/tvk-map)
  for folder in "${folders[@]}"; do
    for file in "$folder"/*.so; do
      [ -e "$file" ] && basename "$file" .so
    done
  done
}

# What begins with the current word: of a list of words, or of the files and folders. Words may be names of files, so
# they are not given to compgen, which would run what they say.
_tvk_map_words() {
  local word
  while read -r word; do
    [[ $word == "$current"* ]] && COMPREPLY+=("$(printf '%q' "$word")")
  done < <(printf '%s\n' "$@")
}
_tvk_map_files() {
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -d -- "$current"; compgen -f -X "!*.$1" -- "$current")
}

_tvk_map() {
  local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]} modules
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    _tvk_map_words edit get apply print --help --version
    return
  fi
  # Bash makes three words of --option=value.
  if [ "$current" = = ]; then
    current=
  elif [ "$before" = = ]; then
    before=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  case $before in
    --mapping)
      case $current in
        */*) _tvk_map_files so ;;
        *)
          mapfile -t modules < <(_tvk_map_modules)
          _tvk_map_words "${modules[@]}"
          ;;
      esac
      return
      ;;
    --phase)
      _tvk_map_words mark container
      return
      ;;
    --with-defaults)
      _tvk_map_words report-all report-all-tagged trim explicit
      return
      ;;
  esac
  case $command:$current in
    edit:-?*) _tvk_map_words --mapping --into --apply --changes --tree --trace --help ;;
    get:-?*) _tvk_map_words --mapping --native --config --phase --with-defaults --tree --trace --help ;;
    apply:-?*) _tvk_map_words --mapping --list --changes --tree --help ;;
    print:-?*) _tvk_map_words --namespaces --help ;;
    *) _tvk_map_files xml ;;
  esac
}

complete -F _tvk_map tvk-map
