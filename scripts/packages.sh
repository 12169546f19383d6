# Debian packages the build, the tests and the program need; installed when missing.
KW_PACKAGES=(cmake ninja-build g++ qt6-base-dev qt6-serialport-dev libqt6sql6-sqlite libqt6opengl6-dev sqlite3
             fonts-liberation poppler-utils)

ensure_packages() {
  local missing=()
  for p in "${KW_PACKAGES[@]}" "$@"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  local sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >/dev/null
}
