#!/usr/bin/env python3
"""Generates a home folder for timing the storage walk: code projects with node_modules trees
hard-linked from a pnpm store, caches, app settings, photos, downloads and a Trash.

    bench/make-storage-tree.py DIR [FILES]

FILES (default 500000) is the number of files to make, roughly. The tree is made afresh."""
import os
import shutil
import sys

root = sys.argv[1] if len(sys.argv) > 1 else "/var/tmp/sorrelin-storage-bench"
target = int(sys.argv[2]) if len(sys.argv) > 2 else 500_000

if os.path.exists(root):
    shutil.rmtree(root)
os.makedirs(root)

made = 0
chunk = b"x" * 8192


def write(path, size):
    global made
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as f:
        left = size
        while left > 0:
            n = min(left, len(chunk))
            f.write(chunk[:n])
            left -= n
    made += 1


def link(existing, path):
    global made
    os.makedirs(os.path.dirname(path), exist_ok=True)
    os.link(existing, path)
    made += 1


def spread(base, count, size, per_folder=200):
    for i in range(count):
        write(f"{base}/d{i // per_folder:04d}/f{i % per_folder:03d}.js", size + (i % 7) * 300)


# Shares of the whole, by kind of place.
projects = int(target * 0.55)
store = int(target * 0.15)
caches = int(target * 0.12)
config = int(target * 0.06)
pictures = int(target * 0.06)
rest = target - projects - store - caches - config - pictures

# A pnpm store, and projects whose node_modules are hard links of it (a third of them) or
# their own copies.
store_dir = f"{root}/.local/share/pnpm/store/v3/files"
spread(store_dir, store, 900)
store_files = [os.path.join(d, f) for d, _, fs in os.walk(store_dir) for f in fs]
project_count = 25
per_project = projects // project_count
for p in range(project_count):
    base = f"{root}/Documents/code/app{p:02d}"
    write(f"{base}/package.json", 400)
    os.makedirs(f"{base}/.git", exist_ok=True)
    source = per_project // 10
    spread(f"{base}/src", source, 2500, 50)
    modules = per_project - source
    if p % 3 == 0:
        for i in range(min(modules, len(store_files))):
            link(store_files[(i + p * 997) % len(store_files)], f"{base}/node_modules/pkg{i // 100:04d}/f{i % 100:03d}.js")
    else:
        spread(f"{base}/node_modules", modules, 1500, 100)
    spread(f"{base}/dist", 40, 20000, 40)

spread(f"{root}/.cache/google-chrome/Default/Cache", caches // 2, 6000)
spread(f"{root}/.cache/pip/wheels", caches - caches // 2, 3000)
spread(f"{root}/.config/Code/User/History", config, 1200)
for i in range(pictures):
    write(f"{root}/Pictures/{2000 + i // 5000}/img{i:06d}.jpg", 12000)
for i in range(rest - 60):
    write(f"{root}/.local/share/Trash/files/old{i // 500:03d}/f{i:06d}", 700)
for i in range(40):
    write(f"{root}/Downloads/file{i:02d}.zip", 2_000_000)
for i in range(20):
    write(f"{root}/Videos/clip{i:02d}.mp4", 5_000_000)

print(f"{made} files in {root}")
