# Sourced by ./run and ./test: brings in Debian packages that are not there yet.

# as_root COMMAND…: through sudo where somebody else is at work.
as_root() { if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi; }

# install_packages LIST…: the packages named in the files, one a line, # for comments. Nothing is
# fetched, nobody asked, when all of them are installed.
install_packages() {
  local wanted missing
  wanted="$(sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "$@" | sort -u)"
  missing="$(comm -23 <(echo "$wanted") \
    <(dpkg-query -W -f '${db:Status-Abbrev} ${Package}\n' 2>/dev/null | sed -n 's/^ii  *//p' | sort -u))"
  [ -z "$missing" ] && return 0
  if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
    echo "These packages are missing: ${missing//$'\n'/ }. Install them as root: apt-get install ${missing//$'\n'/ }" >&2
    return 1
  fi
  echo "Installing ${missing//$'\n'/ }" >&2
  local apt=(as_root env DEBIAN_FRONTEND=noninteractive apt-get)
  # shellcheck disable=SC2086 # one word a package
  "${apt[@]}" install -y -q --no-install-recommends $missing >&2 2>/dev/null ||
    { "${apt[@]}" update -q >&2 && "${apt[@]}" install -y -q --no-install-recommends $missing >&2; }
}
