# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Drives the real program on a desktop of its own, as a person and a screen reader do."""
