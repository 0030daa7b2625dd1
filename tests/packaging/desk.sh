# For those that use installed programs on a display (sourced): looking, clicking, waiting.
# Wants $pictures, a folder, $platform, which pictures' names begin with, and $logs, an array of files
# that tell more when something fails.
ok() { echo "ok: $1"; }
fail() {
  echo "FAIL: $1" >&2
  look failed 2>/dev/null || true
  tail -n 8 "${logs[@]}" >&2 || true
  exit 1
}
eventually() { # eventually WHAT COMMAND ...: until the command succeeds, 30 s at most
  local what=$1
  shift
  for _ in $(seq 150); do
    ! "$@" >/dev/null 2>&1 || { ok "$what"; return; }
    sleep 0.2
  done
  fail "$what: not seen"
}
look() { import -silent -window root "$pictures/$platform-$1.png"; }
coloured() { # coloured COLOUR: the indicator's circle is on the screen in that colour
  look now
  local count
  count=$(convert "$pictures/$platform-now.png" -fill white +opaque "$1" -fill black -opaque "$1" \
    -format '%[fx:int((1-mean)*w*h+0.5)]' info:)
  rm "$pictures/$platform-now.png"
  [ "$count" -ge 200 ]
}
of_size() { # of_size WIDTHxHEIGHT: the utility's window of that size
  local window
  for window in $(xdotool search --onlyvisible --name '^Norvik.*Pelora Utility$'); do
    [ "$(xdotool getwindowgeometry "$window" | sed -nE 's/ *Geometry: //p')" != "$1" ] ||
      { echo "$window"; return; }
  done
  return 1
}
titled() { xdotool search --onlyvisible --name "^$1\$"; }
focus() { xdotool windowfocus --sync "$1"; }
click() { # click WINDOW X Y
  focus "$1"
  xdotool mousemove --window "$1" "$2" "$3" click 1
}
