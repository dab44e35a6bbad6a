# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Measures several things in turns, so that all of them meet the same moods of the machine."""


def in_turns(rounds, works):
    """Lists of what each of the named works gave, round after round.

    Every other round goes backwards, so that each comes before each other equally often; the
    number of rounds is even.
    """
    results = {name: [] for name in works}
    for number in range(rounds):
        for name in reversed(works) if number % 2 else works:
            results[name].append(works[name]())
    return results
