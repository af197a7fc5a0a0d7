#!/usr/bin/env bash
# Builds the site in dist/site: the playground, the reference with a picture for each function, and the guides.
#   ./site.sh       builds it, and prints the file to open
#   ./site.sh test  also tests it: in Node.js, in a browser, and beside the library for this machine
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/setup.sh
need_packages "${build_packages[@]}" "${wasm_packages[@]}" "${site_packages[@]}"
need_site_modules
build wasm-simd nuvimgsdk_web
module=build/wasm-simd/bindings/web/nuvimgsdk.wasm

# newer RESULT SOURCE...: whether the result is newer than all sources.
newer() {
  [ -e "$1" ] && [ -z "$(find "${@:2}" -newer "$1" -print -quit)" ]
}

reference=dist/site/index.html
newer $reference "$module" site/model site/reference site/guides docs include boundary bindings/web README.md ||
  node site/reference/build.mjs "$module" dist/site
playground=dist/site/playground.html
newer $playground "$module" site/model site/playground boundary bindings/web examples/data ||
  node site/playground/build.mjs "$module" $playground

if [ "${1:-}" = test ]; then
  need_packages "${test_packages[@]}" chromium
  build release NuvImgSDK2014DLL nuvimgsdk_c
  node --test tests/site/*_test.mjs
fi
echo "Open file://$PWD/$reference"
