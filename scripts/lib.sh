# scripts/lib.sh — what the scripts share: installing Debian packages that are missing, configuring, building.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# Installs those of the named packages that are not installed; silent when there is nothing to do.
install_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "installing ${missing[*]}"
  local log
  log=$(mktemp)
  if ! { as_root apt-get update -q &&
         as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    cat "$log" >&2
    echo "cannot install ${missing[*]}" >&2
    return 1
  fi
  rm -f "$log"
}

BUILD_PACKAGES=(g++ cmake ninja-build pkg-config ccache libicu-dev libexpat1-dev libpugixml-dev nlohmann-json3-dev
                libplist-dev libfmt-dev libcli11-dev libsqlite3-dev libpq-dev libmariadb-dev)
TEST_PACKAGES=(libgtest-dev libgmock-dev python3 git postgresql mariadb-server-core mariadb-client-core)

# configure FOLDER [OPTIONS...]: quiet unless it fails.
configure() {
  local folder=$1 log
  shift
  log=$(mktemp)
  if ! cmake -S . -B "$folder" -G Ninja -DCMAKE_CXX_COMPILER_LAUNCHER=ccache "$@" >"$log" 2>&1; then
    cat "$log" >&2
    return 1
  fi
  rm -f "$log"
}
