"""Joins the pictures of a folder to one that moves: film.py FOLDER FILM.

A picture is called film-NUMBER-MILLISECONDS.png. Python 3 with its imaging library,
which Debian has as python3-pil.
"""

import pathlib
import sys

from PIL import Image

LARGEST = 1_000_000  # bytes; it stands at the top of README.md


def main(folder, film):
    paths = sorted(pathlib.Path(folder).glob("film-*.png"))
    frames = [Image.open(path).convert("RGB") for path in paths]
    times = [int(path.stem.split("-")[2]) for path in paths]
    if not frames:
        sys.exit("film.py: there are no pictures in " + folder)
    frames[0].save(film, save_all=True, append_images=frames[1:], duration=times, loop=0,
                   lossless=True, quality=90, method=4, minimize_size=True)
    size = pathlib.Path(film).stat().st_size
    if size > LARGEST:
        sys.exit(f"film.py: {film} has {size} bytes, more than {LARGEST}")
    print(f"{film}: {len(frames)} pictures, {sum(times) / 1000:.1f} seconds, {size} bytes")


if __name__ == "__main__":
    main(*sys.argv[1:])
