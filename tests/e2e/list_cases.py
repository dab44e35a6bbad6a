# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Prints the name of every end-to-end test, one a line, as unittest takes them."""

import ast
import pathlib

HERE = pathlib.Path(__file__).resolve().parent


def cases(file):
    """The tests of a file; read, not imported, since that takes what only running them takes."""
    for node in ast.parse(file.read_text(encoding="utf-8")).body:
        if isinstance(node, ast.ClassDef):
            for member in node.body:
                if isinstance(member, ast.FunctionDef) and member.name.startswith("test_"):
                    yield f"{file.stem}.{node.name}.{member.name}"


if __name__ == "__main__":
    print("\n".join(case for file in sorted(HERE.glob("test_*.py")) for case in cases(file)))
