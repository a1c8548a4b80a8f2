# Completion of quillmark for bash.

_quillmark_words() { mapfile -t COMPREPLY < <(compgen -W "$1" -- "$2"); }

_quillmark_files() {
  compopt -o filenames
  mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

_quillmark() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
  local commands="identify same find catalogue compare why split styles classify read resources version help"
  local fields="path face postScriptName family fullName displayName windowsFullName styles class foundry kind version
    platform checksum legacyChecksum kerningChecksum outlineFileSize printerFont printerFontExists fondID style variable"
  local parts="update list changes info verify merge"
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    _quillmark_words "$commands --help --version" "$current"
    return
  fi

  if [ "$command" = catalogue ] || [ "$command" = catalog ]; then
    if [ "$COMP_CWORD" -eq 2 ]; then
      _quillmark_words "$parts --help" "$current"
      return
    fi
    command="catalogue ${COMP_WORDS[2]}"
  fi

  # "--format=json" comes as three words.
  if [ "$current" = = ]; then
    current=
  elif [ "$previous" = = ]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  case $previous in
    --format)
      case $command in
        identify | read | "catalogue list") _quillmark_words "table json jsonl tsv xml plist" "$current" ;;
        find) _quillmark_words "table json jsonl" "$current" ;;
        same) _quillmark_words "table json tsv" "$current" ;;
        compare | resources) _quillmark_words "table json" "$current" ;;
        styles | classify | version | why | "catalogue changes" | "catalogue info") _quillmark_words "text json" "$current" ;;
      esac
      return ;;
    --fields | --without)
      local names=$fields
      [ "$previous" = --without ] && names="copies conflicts formats versions near"
      # The names that stand before the last comma stay.
      local before=
      case $current in *,*) before=${current%,*}, ;; esac
      compopt -o nospace
      mapfile -t COMPREPLY < <(compgen -P "$before" -W "$names" -- "${current##*,}")
      return ;;
    --sort) _quillmark_words "$fields" "$current"; return ;;
    --progress) _quillmark_words "auto always never" "$current"; return ;;
    -o | --output)
      compopt -o filenames
      mapfile -t COMPREPLY < <(compgen -d -- "$current")
      return ;;
    --files-from | --name | --names-from | --catalogue | --in) _quillmark_files "$current"; return ;;
    -j | --jobs | --max-bytes | --since | --sample) return ;;
  esac

  local options=--help walk=" --no-recurse --follow --files-from --null --jobs --progress --quiet"
  case $command in
    identify) options+=" --format --fields --wide --sort --name --why$walk" ;;
    same) options+=" --format --near --without --catalogue$walk" ;;
    find) options+=" --catalogue --in --names-from --null --like --format --jobs --progress --quiet" ;;
    why) options+=" --format --name$walk" ;;
    compare | resources | styles | classify | version) options+=" --format" ;;
    read | "catalogue list") options+=" --format --fields --wide" ;;
    "catalogue update") options+=" --ignore-ctime --ignore-inode --accept-unmounted --jobs --progress --quiet" ;;
    "catalogue verify") options+=" --sample --jobs --progress --quiet" ;;
    "catalogue changes") options+=" --since --format" ;;
    "catalogue info") options+=" --format" ;;
    split) options+=" --output --max-bytes" ;;
  esac
  case $current in
    -*) _quillmark_words "$options" "$current" ;;
    *)
      case $command in
        find) ;;
        help) _quillmark_words "$commands" "$current" ;;
        styles | classify | version) ;;
        *) _quillmark_files "$current" ;;
      esac ;;
  esac
}

complete -F _quillmark quillmark
