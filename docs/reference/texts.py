#!/usr/bin/env python3
"""Prints what the search of the reference looks through, as a script that search.js reads: each task, section of a
guide, header, class and member, with its address and what it is. Argument: the folder of Doxygen's XML."""
import json
import pathlib
import re
import sys
from xml.etree import ElementTree

KINDS = {"page": "guide", "file": "header", "namespace": "namespace", "class": "class", "struct": "class",
         "concept": "concept"}
SECTIONS = ("sect1", "sect2", "sect3")
entries = {}
members = set()


def words(element):
    for piece in element.iter():
        if piece.tag in ("sp", "para", "title", "entry", "codeline", "name"):
            piece.tail = " " + (piece.tail or "")
    return " ".join("".join(element.itertext()).split())


def add(page, anchor, kind, title, *described):
    """What `described` has but for sections of its own. The overloads of a function are one entry."""
    title = re.sub(r"\b(Tarn|DataStructures|uuids)::", "", title)
    parts = (words(part) for parent in described for part in parent if part.tag not in (*SECTIONS, "title"))
    text = " ".join(filter(None, parts))
    if text:
        entry = entries.setdefault((page, title), [page + ".html" + ("#" + anchor if anchor else ""), kind, title, ""])
        if text not in entry[3]:
            entry[3] = f"{entry[3]} {text}".strip()


def addPage(compound):
    page, kind, name = compound.get("id"), KINDS.get(compound.get("kind")), compound.findtext("compoundname")
    if kind is None or name == "std" or compound.get("prot") == "private" or name.endswith(".md"):
        return
    title = compound.findtext("title") or name
    if page != "indexpage":
        add(page, "", kind, title, compound.find("briefdescription"), compound.find("detaileddescription"),
            *compound.iterfind("sectiondef/description"))
    for section in (piece for piece in compound.iter() if piece.tag in SECTIONS):
        file, _, anchor = section.get("id").rpartition("_1")
        add(file, anchor, "task" if page == "indexpage" else title, section.findtext("title"), section)
    for member in sorted(compound.iter("memberdef"), key=lambda member: int(member.find("location").get("line"))):
        if member.get("prot") != "private" and member.get("id") not in members:
            members.add(member.get("id"))
            file, _, anchor = member.get("id").rpartition("_1")
            own = member.findtext("name")
            isConstructor = own == name.rpartition("::")[2]  # Told with the class.
            scope = name + "::" if kind in ("class", "namespace") else ""
            add(file, anchor, member.get("kind"), name if isConstructor else scope + own,
                member.find("briefdescription"), member.find("detaileddescription"), *member.iter("enumvalue"))


for path in sorted(pathlib.Path(sys.argv[1]).glob("*.xml")):
    for compound in ElementTree.parse(path).getroot().iter("compounddef"):
        addPage(compound)
print("const texts =", json.dumps(list(entries.values()), ensure_ascii=False, indent=0) + ";")
