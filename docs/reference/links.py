#!/usr/bin/env python3
"""Prints the links of the reference that lead to no file, or to no such place in it. Argument: the folder of the pages.
"""
import json
import pathlib
import sys
from html.parser import HTMLParser
from urllib.parse import unquote, urlsplit


class Page(HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.places, self.links = set(), []
        self.feed(path.read_text())

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("id", "name"):
                self.places.add(value)
            elif name in ("href", "src"):
                self.links.append((f"line {self.getpos()[0]}", value))


folder = pathlib.Path(sys.argv[1])
pages = {path.name: Page(path) for path in folder.glob("*.html")}
links = [(name, *link) for name, page in pages.items() for link in page.links]
found = (folder / "texts.js").read_text().partition("=")[2].rstrip(";\n")
links += [("texts.js", title, url) for url, _, title, _ in json.loads(found)]
dead = 0
for name, where, link in links:
    parts = urlsplit(link)
    file = unquote(parts.path) or name
    if parts.scheme or parts.netloc:
        continue
    if not (folder / file).is_file() or parts.fragment and unquote(parts.fragment) not in pages[file].places:
        dead += 1
        print(f"{name}: {where}: {link} leads nowhere")
print(f"{len(links) - dead} links lead somewhere, {dead} nowhere")
sys.exit(dead > 0)
