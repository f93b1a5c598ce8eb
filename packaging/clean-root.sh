#!/usr/bin/env bash
# Proves in a bare Debian 12 that nothing was forgotten. Needs root and a network; takes minutes.
#   packaging/clean-root.sh                 installs build/labelcut_….deb (tools/package makes it), uses it
#   packaging/clean-root.sh --from-source   clones the last commit, and starts ./run there
#   packaging/clean-root.sh --from-source --test   and ./test after it
# The root comes from the package sources of this machine and is removed at the end; KEEP=1 keeps it.
set -euo pipefail
here="$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)"

way=package tests=no
for argument in "$@"; do
  case "$argument" in
    --from-source) way=source ;;
    --test) tests=yes ;;
    *)
      echo "clean-root.sh knows --from-source and --test, not \"$argument\"." >&2
      exit 2
      ;;
  esac
done
if [ "$tests" = yes ] && [ "$way" = package ]; then
  echo "--test goes with --from-source." >&2
  exit 2
fi
if [ "$(id -u)" -ne 0 ]; then
  echo "A root is made by root only: sudo $0 $*" >&2
  exit 1
fi
# shellcheck source=packaging/packages-install.sh
source "$here/packaging/packages-install.sh"
install_packages <(echo mmdebstrap)

step() { printf '\n== %s (%d s so far)\n' "$1" "$SECONDS" >&2; }

root="$(mktemp -d "${TMPDIR:-/var/tmp}/labelcut-root.XXXXXX")"
chmod 755 "$root"
clean_up() {
  local folder
  for folder in proc dev; do
    # Something that was interrupted may still be at work there.
    ! mountpoint -q "$root/$folder" || umount -R "$root/$folder" 2>/dev/null ||
      umount -R -l "$root/$folder"
  done
  # Never into what is still mounted.
  if [ -z "${KEEP:-}" ]; then
    rm -rf --one-file-system "$root"
  else
    echo "The root is kept in $root." >&2
  fi
}
trap clean_up EXIT

# in_root COMMAND…: as on a machine of its own, with nothing of this one's environment but a proxy.
in_root() {
  local passed=() name
  for name in http_proxy https_proxy no_proxy; do
    [ -z "${!name:-}" ] || passed+=("$name=${!name}")
  done
  chroot "$root" /usr/bin/env -i "${passed[@]}" HOME=/root LC_ALL=C.UTF-8 \
    PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
    DEBIAN_FRONTEND=noninteractive "$@"
}

step "a bare Debian 12"
include=()
[ "$way" = package ] || include=("--include=git ca-certificates")
sources=()
for file in /etc/apt/sources.list /etc/apt/sources.list.d/debian.sources; do
  [ ! -s "$file" ] || sources+=("$file")
done
mmdebstrap --quiet --variant=minbase "${include[@]}" bookworm "$root" "${sources[@]}"
cp -L /etc/resolv.conf "$root/etc/resolv.conf"
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"
mount --make-rslave "$root/dev"
in_root apt-get update -q >&2

if [ "$way" = source ]; then
  step "git clone"
  git clone --quiet --no-hardlinks "$here" "$root/root/labelcut"
  in_root git -C /root/labelcut log -1 --oneline
  step "./run"
  in_root /root/labelcut/run
  in_root /root/labelcut/run --version
  in_root /root/labelcut/run options --ppd /root/labelcut/samples/tape.ppd
  grep -q '%%BeginFeature: \*KvHalfCut ON' "$root/root/labelcut/build/sample-label.ps"
  if [ "$tests" = yes ]; then
    step "./test"
    in_root /root/labelcut/test
  fi
  step "done"
  exit 0
fi

packages=("$here"/build/labelcut_*.deb)
if [ "${#packages[@]}" -ne 1 ] || [ ! -f "${packages[0]}" ]; then
  echo "There is no build/labelcut_….deb, or more than one; tools/package makes it." >&2
  exit 1
fi
step "apt-get install ./$(basename "${packages[0]}")"
cp "${packages[0]}" "$root/root/labelcut.deb"
in_root apt-get install -y -q --no-install-recommends /root/labelcut.deb >&2

step "the installed program"
samples=/usr/share/labelcut/samples
in_root labelcut --version
in_root labelcut options --ppd $samples/tape.ppd
[ "$(in_root labelcut options --ppd $samples/tape.ppd | grep -c '^Kv')" -eq 6 ]
in_root labelcut print $samples/labels.pdf --ppd $samples/tape.ppd --set KvHalfCut=ON -o /root/job.ps
grep -q '%%BeginFeature: \*KvHalfCut ON' "$root/root/job.ps"
# Ghostscript carries it out: every page comes, and the choice is set.
in_root sh -c "printf '%%!\nuserdict /LabelcutHalfCut get ==\n' | cat /root/job.ps - |
  gs -q -sDEVICE=nullpage -dBATCH -" | tee "$root/root/said" >&2
grep -qx true "$root/root/said"
in_root labelcut snapshot --ppd $samples/tape.ppd -o /root/panel.png
[ "$(head -c 4 "$root/root/panel.png" | tail -c 3)" = PNG ]
answer="$(echo "{\"do\":\"open\",\"ppd\":\"$samples/tape.ppd\"}" | in_root labelcut panel-script)"
echo "${answer:0:200}"
[[ $answer == *'"ok":true'* ]]
# The window itself, as far as it goes without a display: open until it is told to go.
status=0
in_root env QT_QPA_PLATFORM=offscreen timeout --preserve-status --signal=TERM 5 \
  labelcut dialog --ppd $samples/tape.ppd $samples/labels.pdf || status=$?
[ "$status" -eq 143 ]
in_root sh -c "ldd /usr/bin/labelcut /usr/lib/*/labelcut/plugins/cut_options.so" >"$root/root/said"
grep -q libQt6Widgets "$root/root/said"
if grep "not found" "$root/root/said"; then
  exit 1
fi
# Nothing is left after removal.
in_root apt-get remove -y -q labelcut >&2
[ -z "$(find "$root/usr" -iname '*labelcut*' -print -quit)" ]
step "done"
