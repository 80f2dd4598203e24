#!/usr/bin/env bash
# Fails when a program folder other than platform/ includes a header of Qt's widgets: the
# window system's classes stay behind the platform library.
set -euo pipefail
cd "$(dirname "$0")/.."
qt=$(pkg-config --variable=includedir Qt6Widgets)
found=0
while IFS=: read -r file line header; do
  name=${header#*<}
  name=${name%%>*}
  name=${name#*/}
  if [ -e "$qt/QtWidgets/$name" ] || [ -e "$qt/QtOpenGLWidgets/$name" ] ||
    [ "$name" = QtWidgets ] || [ "$name" = QtOpenGLWidgets ]; then
    echo "$file:$line: Qt widgets header <$name> outside platform/" >&2
    found=1
  fi
done < <(grep -rnE '^\s*#\s*include\s*<Q' toolkit controls services player engine tools \
  --include='*.h' --include='*.cpp' || true)
if [ "$found" -ne 0 ]; then
  exit 1
fi
echo "Qt widgets headers: platform/ only"
