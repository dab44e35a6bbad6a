# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""What rolls are made of and told apart by, for tests with and without a desktop."""

import hashlib

# What the slates say, in the letters and signs of several languages.
PAYLOAD = {
    "version": 2,
    "session_id": "7c9e6679-7425-40de-944b-e07fc1f90ae7",
    "camera_make": "Kestrel",
    "camera_model": "K2",
    "film_brand": "Vela",
    "film_stock": "Nova 400",
    "iso": 400,
    "lens_make": "Optar",
    "lens_model": "50mm f/2",
    "focal_length": 50,
    "push_pull": 1,
    "location": "Grünerløkka",
    "project": "夜明け",
    "notes": "Fog; \"first light\" = 5:40",
    "date": "2026-05-01",
    "roll_name": "Roll 12",
    "artist": "Zoë Ångström",
    "copyright": "© 2026 Zoë Ångström",
    "app_version": "slate-web@1.4.2",
}


def checksum(file):
    """What is in a file."""
    with open(file, "rb") as content:
        return hashlib.sha256(content.read()).hexdigest()
