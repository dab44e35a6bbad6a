#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Prints CHANGELOG.md in the form that a package wants it in."""

import argparse
import datetime
import email.utils
import pathlib
import re
import sys
import textwrap
from xml.sax.saxutils import escape

CHANGELOG = pathlib.Path(__file__).resolve().parent.parent / "CHANGELOG.md"
_HEADING = re.compile(r"## (\d+(?:\.\d+)*) \((\d{4}-\d{2}-\d{2})\)")


class Release:
    """One version: its number, its day, and its points without mark-up."""

    def __init__(self, version, day):
        self.version = version
        self.day = datetime.date.fromisoformat(day)
        self.points = []


def releases(text):
    """The versions of a changelog, in its order. Raises ValueError for a line that is none."""
    found = []
    for number, line in enumerate(text.splitlines(), start=1):
        heading = _HEADING.fullmatch(line)
        if heading:
            found.append(Release(*heading.groups()))
        elif line.startswith("#") and number > 1:
            raise ValueError(f"line {number}: {line!r} is no '## VERSION (YYYY-MM-DD)'")
        elif found and line.startswith("- "):
            found[-1].points.append(line[2:].replace("`", ""))
        elif found and line.startswith("  "):
            found[-1].points[-1] += " " + line.strip().replace("`", "")
        elif found and line:
            raise ValueError(f"line {number}: {line!r} is no point of a version")
    if not found:
        raise ValueError("there is no version")
    for release in found:
        if not release.points:
            raise ValueError(f"{release.version} says nothing")
    return found


def debian(found, revision, maintainer):
    """As deb-changelog(5) has it."""
    parts = []
    for release in found:
        noon = datetime.datetime.combine(release.day, datetime.time(12), datetime.timezone.utc)
        points = "\n".join(textwrap.fill(point, 76, initial_indent="  * ",
                                         subsequent_indent="    ") for point in release.points)
        parts.append(f"quillmark ({release.version}-{revision}) bookworm; urgency=medium\n\n"
                     f"{points}\n\n -- {maintainer}  {email.utils.format_datetime(noon)}\n")
    return "\n".join(parts)


def metainfo(found):
    """As the element of AppStream's metainfo has it."""
    lines = ["<releases>"]
    for release in found:
        lines.append(f'    <release version="{release.version}" date="{release.day}">')
        lines.append("      <description>")
        lines.append("        <ul>")
        lines += [f"          <li>{escape(point)}</li>" for point in release.points]
        lines.append("        </ul>")
        lines.append("      </description>")
        lines.append("    </release>")
    lines.append("  </releases>")
    return "\n".join(lines)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("form", choices=["version", "debian", "metainfo"],
                        help="the newest version's number, a package's changelog, or the list "
                             "of versions of the metainfo")
    parser.add_argument("--revision", default="1", help="the package's, after the version")
    parser.add_argument("--maintainer", help="name and address; needed for debian")
    arguments = parser.parse_args()
    try:
        found = releases(CHANGELOG.read_text(encoding="utf-8"))
    except ValueError as error:
        sys.exit(f"{CHANGELOG.name}: {error}")
    if arguments.form == "version":
        print(found[0].version)
    elif arguments.form == "metainfo":
        print(metainfo(found))
    elif arguments.maintainer is None:
        parser.error("debian needs --maintainer")
    else:
        print(debian(found, arguments.revision, arguments.maintainer), end="")


if __name__ == "__main__":
    main()
