#!/usr/bin/env bash
# Makes a developer's home folder for timing the cleaning scan:
#   bench/make-home.sh DIR [FILES]
# DIR gets app caches (~/.cache, ~/.config Chromium and Electron trees, a Flatpak app), tool
# caches (npm, npx, pip, a model folder), three nvm versions with a default, projects with
# build folders of every kind, ordinary documents, and about FILES small files (default
# 200000) spread over node_modules-style trees in many repositories. Bulk files hold a few
# bytes; a handful of big files (fallocate) give the rows their sizes.
set -euo pipefail
dir=${1:?usage: make-home.sh DIR [FILES]}
files=${2:-200000}
mkdir -p "$dir"
cd "$dir"

big() { mkdir -p "$(dirname "$1")"; fallocate -l "$2" "$1"; }
old() { touch -d "$2 days ago" "$1"; }

# App caches.
big .cache/google-chrome/Default/Cache/Cache_Data/data_1 15M
mkdir -p ".config/google-chrome/Default"
echo '{}' > ".config/google-chrome/Local State"
echo '{}' > ".config/google-chrome/Default/Preferences"
big ".config/google-chrome/Default/Code Cache/js/index" 4M
big ".config/google-chrome/Default/History" 30M
big .config/google-chrome/OptGuideOnDeviceModel/2025.1/weights.bin 150M
big .cache/mozilla/firefox/abc.default/cache2/entries/x 12M
mkdir -p .config/Code && echo '{}' > ".config/Code/Local State"
big .config/Code/CachedData/1.90/x 12M
big .config/Code/User/workspaceStorage/big.db 40M
mkdir -p .var/app/com.slack.Slack/config/Slack && echo '{}' > .var/app/com.slack.Slack/config/Slack/Preferences
big .var/app/com.slack.Slack/config/Slack/Cache/Cache_Data/x 8M
big .var/app/com.slack.Slack/cache/tmp/y 4M
big .cache/pip/http-v2/x 20M
big .cache/huggingface/hub/model.safetensors 120M

# Tools.
for t in aaa111 bbb222 ccc333; do big ".npm/_npx/$t/node_modules/x" 12M; done
big .npm/_cacache/content-v2/sha512/x 30M
for v in v16.20.2 v18.20.4 v20.11.1; do big ".nvm/versions/node/$v/lib/libnode.so" 25M; done
mkdir -p .nvm/alias && echo 18 > .nvm/alias/default

# Projects with each kind of build folder.
mkdir -p code/web/.git code/rust code/py code/fresh code/notes/target
echo '{}' > code/web/package.json
big code/web/node_modules/next/dist/x 30M
big code/web/.next/cache/webpack/x 5M
old code/web/package.json 30; old code/web/.git 30; old code/web/.next/cache 30
echo '[package]' > code/rust/Cargo.toml
big code/rust/target/debug/app 40M
big code/notes/target/big.pdf 40M
echo '[project]' > code/py/pyproject.toml
big code/py/.venv/lib/x 30M
old code/rust/Cargo.toml 20; old code/py/pyproject.toml 20
echo '{}' > code/fresh/package.json
big code/fresh/node_modules/x 25M
big Downloads/ubuntu-24.04.iso 120M

# Ordinary documents: folders the walk must enter.
for a in $(seq 1 40); do
  for b in $(seq 1 25); do
    d="Documents/area$a/topic$b"
    mkdir -p "$d"
    for f in 1 2 3 4 5; do printf 'note %s\n' "$f" > "$d/note$f.txt"; done
  done
done

# Bulk: repositories with node_modules trees of packages (dist/, lib/, src/ and a nested
# node_modules), 40 files a package.
perPackage=40
packages=$(( files / perPackage ))
perRepo=250
repos=$(( (packages + perRepo - 1) / perRepo ))
made=0
for r in $(seq 1 "$repos"); do
  repo="repos/group$(( r % 7 ))/project$r"
  mkdir -p "$repo/.git" "$repo/src"
  printf '{"name":"p%s"}\n' "$r" > "$repo/package.json"
  printf 'ref: refs/heads/main\n' > "$repo/.git/HEAD"
  for p in $(seq 1 "$perRepo"); do
    [ "$made" -ge "$packages" ] && break
    pkg="$repo/node_modules/pkg$p"
    mkdir -p "$pkg/dist" "$pkg/lib" "$pkg/src" "$pkg/node_modules/dep/lib"
    for f in $(seq 1 10); do
      printf 'x' > "$pkg/dist/f$f.js"; printf 'x' > "$pkg/lib/f$f.js"; printf 'x' > "$pkg/src/f$f.ts"
      printf 'x' > "$pkg/node_modules/dep/lib/f$f.js"
    done
    made=$(( made + 1 ))
  done
  old "$repo/package.json" 10; old "$repo/src" 10; old "$repo/.git/HEAD" 10; old "$repo/.git" 10
done
echo "made $dir: $(( made * perPackage )) files in $made packages of $repos repositories"
