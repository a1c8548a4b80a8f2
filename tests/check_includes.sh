#!/bin/sh
# Fails on an include that points against the arrows: api -> analysis, knowledge, resources -> support -> platform.
# analysis also reads resources and knowledge; nothing includes api.
set -u
cd "$1" || exit 1
status=0
allow() {
  room=$1
  shift
  for file in src/"$room"/*.h src/"$room"/*.cc; do
    for seen in $(sed -n 's|^#include "\([a-z_]*\)/.*|\1|p' "$file" | sort -u); do
      case " $room $* " in
        *" $seen "*) ;;
        *) echo "$file includes $seen/, which $room does not rest on"; status=1 ;;
      esac
    done
  done
}
allow platform
allow support platform
allow resources support platform
allow knowledge support platform
allow analysis resources knowledge support platform
allow api analysis knowledge resources support platform quillmark
exit $status
