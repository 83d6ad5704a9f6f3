# Sourced by run-demo and run-tests: what Kelvane needs from Debian, and installing what is missing.

build_packages=(g++ cmake ninja-build ccache pkg-config
  libsdl2-dev libsdl2-image-dev libepoxy-dev glslang-dev glslang-tools spirv-tools libspirv-cross-c-shared-dev libfreetype-dev
  libfontconfig-dev fonts-liberation libbz2-dev libdw-dev libasio-dev libtinyobjloader-dev libgl1-mesa-dri)
test_packages=(libgtest-dev libgmock-dev)
screen_packages=(xvfb xdotool x11-utils imagemagick)
bench_packages=(libbenchmark-dev libtiff-dev libpixman-1-dev libmeshoptimizer-dev libassimp-dev)
fuzz_packages=(clang libclang-rt-14-dev)

# Installs those of the named packages that are missing; ends the script with one line when that cannot be.
need_packages() {
  local missing=() name
  for name in "$@"; do
    dpkg-query -W -f='${db:Status-Status}\n' "$name" 2>/dev/null | grep -qx installed || missing+=("$name")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "installing: ${missing[*]}"
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "error: these packages are missing and there is no sudo: ${missing[*]}" >&2; exit 1; }
    as_root=(sudo)
  fi
  local log; log=$(mktemp)
  { "${as_root[@]}" apt-get -o DPkg::Lock::Timeout=300 -qq update &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300 install -y --no-install-recommends \
      "${missing[@]}"; } >"$log" 2>&1 ||
    { tail -5 "$log" >&2; echo "error: could not install ${missing[*]}" >&2; exit 1; }
  rm -f "$log"
}

# Configures a preset once and builds the named targets (all without names); quiet unless it fails.
build_preset() {
  local preset=$1; shift
  local log=build/$preset.log
  mkdir -p build
  echo "building: $preset"
  if [ ! -f "build/$preset/build.ninja" ]; then
    cmake --preset "$preset" >"$log" 2>&1 || { tail -30 "$log"; echo "error: could not configure the $preset build" >&2; exit 1; }
  fi
  ninja -C "build/$preset" "$@" >"$log" 2>&1 ||
    { grep -E 'error|FAILED|warning' "$log" | head -30; echo "error: the $preset build failed; all of it: $log" >&2; exit 1; }
}

# Starts a display of its own in $DISPLAY and $xvfb_pid; the size is given.
start_xvfb() {
  local size=${1:-1024x768} numbers; numbers=$(mktemp)
  Xvfb -displayfd 3 -screen 0 "${size}x24" -nolisten tcp 3>"$numbers" >/dev/null 2>&1 &
  xvfb_pid=$!
  for _ in $(seq 100); do [ -s "$numbers" ] && break; kill -0 "$xvfb_pid" 2>/dev/null || break; sleep 0.1; done
  [ -s "$numbers" ] || { echo "error: Xvfb did not start" >&2; exit 1; }
  export DISPLAY=:$(cat "$numbers")
  rm -f "$numbers"
}
