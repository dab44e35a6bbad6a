# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Where things are."""

import os
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get("QUILLMARK_BUILD_DIR", ROOT / "build" / "dev"))
VERSION = os.environ.get("QUILLMARK_VERSION", "")
APP_ID = "co.larkhollow.quillmark"
ICON_SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)

sys.path.insert(0, str(ROOT / "packaging"))
