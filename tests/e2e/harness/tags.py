# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""What the real exiftool finds in files, and what a payload should have left there."""

import json
import subprocess

GENERATOR = "quillmark-macos@0.0.0"


def read_tags(files):
    """Every tag of each file, by its group and name, as exiftool's own JSON gives them."""
    answer = subprocess.run(
        ["/usr/bin/exiftool", "-j", "-n", "-G1", "-charset", "iptc=UTF8",
         "-charset", "filename=UTF8", *files],
        check=True, capture_output=True, timeout=120,
    )
    return json.loads(answer.stdout)


def expected_tags(payload, generator=GENERATOR):
    """The tags that a slate's payload ends up as, by group and name."""
    tags = {
        "IFD0:Make": payload["camera_make"],
        "XMP-tiff:Make": payload["camera_make"],
        "IFD0:Model": payload["camera_model"],
        "XMP-tiff:Model": payload["camera_model"],
        "ExifIFD:ISO": payload["iso"],
        # exiftool reads the property ISOSpeedRatings under this name.
        "XMP-exif:ISO": payload["iso"],
        "XMP-quillmark:GeneratorVersion": generator,
    }
    for key, names in _OPTIONAL.items():
        if key in payload:
            tags.update({name: payload[key] for name in names})
    if "date" in payload:
        noon = payload["date"].replace("-", ":") + " 12:00:00"
        tags["ExifIFD:DateTimeOriginal"] = tags["ExifIFD:CreateDate"] = noon
        tags["XMP-xmp:CreateDate"] = payload["date"].replace("-", ":")
    for key, value in payload.items():
        tags["XMP-quillmark:" + "".join(part.title() for part in key.split("_"))] = value
    tags["IPTC:Keywords"] = tags["XMP-dc:Subject"] = _keywords(payload)
    return tags


_OPTIONAL = {
    "lens_make": ["ExifIFD:LensMake", "XMP-aux:LensMake"],
    "lens_model": ["ExifIFD:LensModel", "XMP-aux:Lens"],
    "focal_length": ["ExifIFD:FocalLength", "ExifIFD:FocalLengthIn35mmFormat"],
    "location": ["IPTC:City", "IPTC:Sub-location", "XMP-iptcCore:Location"],
    "project": ["IPTC:OriginalTransmissionReference", "XMP-photoshop:TransmissionReference"],
    "notes": ["IPTC:Caption-Abstract", "XMP-dc:Description"],
    "artist": ["IFD0:Artist", "XMP-dc:Creator", "IPTC:By-line"],
    "copyright": ["IFD0:Copyright", "XMP-dc:Rights", "IPTC:CopyrightNotice"],
}


def _keywords(payload):
    film = f"{payload['film_brand']} {payload['film_stock']}"
    words = [f"Brand: {payload['film_brand']}", f"Film: {film}",
             f"Film Stock: {payload['film_stock']}", f"ISO {payload['iso']}"]
    push = payload.get("push_pull", 0)
    if push:
        words.append(f"Push +{push}" if push > 0 else f"Pull {push}")
    for key, form in (("project", "Project: {}"), ("roll_name", "Roll: {}"),
                      ("focal_length", "{}mm")):
        if key in payload:
            words.append(form.format(payload[key]))
    return words
