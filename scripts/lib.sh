# shellcheck shell=bash
# Common parts of the scripts; sourced, not run.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root" || exit 1

say() { printf '%s: %s\n' "${script:-tockwise}" "$*"; }
die() {
  printf '%s: %s\n' "${script:-tockwise}" "$*" >&2
  exit 1
}

# packages LIST...: the packages named by scripts/packages/LIST.txt, without comments.
packages() {
  local list
  for list in "$@"; do
    sed -e 's/#.*//' -e '/^[[:space:]]*$/d' -e 's/[[:space:]]//g' "scripts/packages/$list.txt"
  done
}

# missing_packages LIST...: those of them that are not installed.
missing_packages() {
  local wanted installed
  mapfile -t wanted < <(packages "$@")
  installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null |
    sed -n 's/^installed //p')
  printf '%s\n' "${wanted[@]}" | grep -vxF -f <(printf '%s\n' "$installed") || true
}

# install_packages LIST...: installs what is missing, and says so first.
install_packages() {
  if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    say "this is not a Debian system: scripts/packages/ lists what must be installed by hand"
    return
  fi
  local missing as_root=() command
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -gt 0 ] || return 0
  command="apt-get install --yes --no-install-recommends ${missing[*]}"
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || die "these packages are missing, and there is no sudo to install
them with. As root, run:
  apt-get update
  $command
and then this script again."
    as_root=(sudo)
    say "missing packages are installed now (sudo may ask for your password):"
  else
    say "missing packages are installed now:"
  fi
  printf '  %s\n' "${missing[*]}" | fold -s -w 100
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq ||
    say "apt-get update failed; trying with the package lists as they are"
  # shellcheck disable=SC2086 # the words of the command
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive $command -qq ||
    die "the packages could not be installed; see above"
}

# build PRESET [TARGET...]: configures when that was not done yet, and builds.
build() {
  local preset=$1
  shift
  local tree=build/$preset targets=()
  if [ -f "$tree/CMakeCache.txt" ] &&
    ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$tree/CMakeCache.txt"; then
    say "$tree was made for another folder: starting afresh"
    rm -rf "$tree"
  fi
  if [ ! -f "$tree/build.ninja" ]; then
    mkdir -p "$tree"
    cmake --preset "$preset" >"$tree/configure.log" 2>&1 || {
      cat "$tree/configure.log" >&2
      die "configuring the preset $preset failed; see above"
    }
  fi
  [ $# -eq 0 ] || targets=(--target "$@")
  cmake --build --preset "$preset" "${targets[@]}" || die "building the preset $preset failed; see above"
}

# phase NAME COMMAND...: runs the command in a subshell, and keeps its time for print_phases.
phase_lines=()
failed_phases=()
phase() {
  local name=$1 start=$EPOCHREALTIME status=0
  shift
  printf '\n== %s\n' "$name"
  ("$@") || status=$?
  local elapsed=$((${EPOCHREALTIME/./} - ${start/./}))
  [ "$status" -eq 0 ] || failed_phases+=("$name")
  phase_lines+=("$(printf '%-24s %6d.%01d s  %s' "$name" $((elapsed / 1000000)) \
    $((elapsed / 100000 % 10)) "$([ "$status" -eq 0 ] && echo passed || echo FAILED)")")
}

print_phases() {
  printf '\n'
  printf '%s\n' "${phase_lines[@]}"
  [ ${#failed_phases[@]} -eq 0 ]
}
